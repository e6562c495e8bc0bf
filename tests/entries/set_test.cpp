#include "tests/support/EntryTests.h"

void Zorvan::Test::registerEntryTests() {
  CheckRules rules;
  rules.range.moreWidths = {512, 1024};
  rules.largeRegions = {{1031, 509},
                        {4099, 1601}};  // above the limits of the older and of the newest variants
#define ENTRY(...) CHECK_ENTRY("Set", rules, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Set.def"
#undef ENTRY
}
