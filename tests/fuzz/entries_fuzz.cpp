// The entries of one family: the first byte of the input is the entry, the next ones draw a case, all after
// them are pixels, and every variant has to agree with the definition. Linked with the family's test program,
// whose cases these are.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

#include "tests/support/Cases.h"
#include "tests/support/EntryTests.h"
#include "zorvan/primitives/frame/Variants.h"

namespace Zorvan::Test {
namespace {

constexpr std::size_t bytesOfDraws = 48;

std::string runningCase;

/// A difference ends the program, so that the fuzzer stores the input.
class AbortOnDifference : public testing::EmptyTestEventListener {
  void OnTestPartResult(const testing::TestPartResult& result) override {
    if (!result.failed()) return;
    std::fprintf(stderr, "FINDING: %s\n", runningCase.c_str());
    std::abort();
  }
};

void prepare() {
  const char* arguments[] = {"", "--level=fuzz", "--rounds=1"};
  parseOptions(static_cast<int>(std::size(arguments)), const_cast<char**>(arguments));
  registerEntryTests();
  testing::UnitTest::GetInstance()->listeners().Append(new AbortOnDifference);
}

void run(std::span<const unsigned char> input) {
  if (input.empty()) return;
  const auto& cases = allDrawnCases();
  const DrawnCases& drawn = cases[input[0] % cases.size()];
  const auto draws = input.subspan(1);
  drawCasesFrom(draws);
  givenPixels = draws.subspan(std::min(draws.size(), bytesOfDraws));
  for (int variant = 0; variant <= highestVariant(); ++variant) {
    runningCase = drawn.name + " of " + Primitives::variantNames[variant];
    drawn.body(variant);
  }
}

}  // namespace
}  // namespace Zorvan::Test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool isPrepared = (Zorvan::Test::prepare(), true);
  static_cast<void>(isPrepared);
  Zorvan::Test::run({data, size});
  return 0;
}
