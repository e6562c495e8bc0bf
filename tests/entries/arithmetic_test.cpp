#include "tests/support/EntryTests.h"

void Zorvan::Test::registerEntryTests() {
  CheckRules rules;
  rules.range.moreWidths = {23, 29, 31, 47};
  // Each way of scaling, its limits, and figures far beyond them.
  rules.parameters = {0, 1, 2,  -1, 3,  -2, 7,  -7,  8,  -8,  9,  10,  -14,         15,
                      0, 4, 16, 17, 18, -4, -6, -15, 30, -16, 31, -31, -2147483647, 2147483647,
                      0, 5, 6,  32, 33, -3, 20, 12,  -2147483647 - 1};
#define ENTRY(...) CHECK_ENTRY("Arithmetic", rules, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Arithmetic.def"
#undef ENTRY
}
