#include "tests/support/EntryTests.h"
#include "tests/support/SameFloats.h"

namespace Zorvan::Test {
namespace {

template <class Routine>
struct AgreementOf {
  using type = SameBytes;
};
template <class... More>
struct AgreementOf<int(const float*, More...)> {
  using type = SameBytesButSignOfNaN;
};
template <class... More>
struct AgreementOf<int(float, More...)> {
  using type = SameBytesButSignOfNaN;
};

}  // namespace

void registerEntryTests() {
  CheckRules rules;
  rules.range.moreWidths = {23, 29, 31, 47};
  rules.range.heights = 5;  // the loop over rows of few vectors is unrolled by 4
  // Each scaling, its limits, and values far beyond them.
  rules.parameters = {0,
                      1,
                      2,
                      -1,
                      3,
                      -2,
                      7,
                      -7,
                      8,
                      -8,
                      9,
                      10,
                      -14,
                      15,
                      0,
                      4,
                      16,
                      17,
                      18,
                      -4,
                      -6,
                      -15,
                      30,
                      -16,
                      31,
                      -31,
                      -2147483647,
                      2147483647,
                      0,
                      5,
                      6,
                      32,
                      33,
                      -3,
                      20,
                      12,
                      -2147483647 - 1};
  // One row long enough for the sum that streams, at any alignment; rows of bytes that are prefetched.
  rules.largeRegions = {{90001, 1}, {1031, 1021}};
  rules.forcedCacheBytes = {1 << 20};
  rules.imagesMayBeOne = true;
#define CHECK(name, ...)                                                                                     \
  registerEntry<AgreementOf<Primitives::name##_Routine>::type>("Arithmetic", #name, rules, &Reference::name, \
                                                               Primitives::table.name);
#define ENTRY(...) CHECK(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Arithmetic.def"
#undef ENTRY
#undef CHECK
}

}  // namespace Zorvan::Test
