// The exported operations on any images and regions, in every variant. The oracle tests the region and calls
// the definition of the entry on a copy of the pixels: it predicts each pixel, each number that is returned,
// and the text of each exception. Pixels are plain numbers; the kernels have fuzzers of their own.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tests/fuzz/facades/FacadeLists.h"

namespace Zorvan::Test {
namespace {

/// Inputs of the corpus name a call by its place.
std::vector<Run> allCalls() {
  std::vector<Run> all;
  for (const auto& calls : {initializerCalls(), arithmeticCalls(), logicalCalls(), statisticCalls(),
                            morphologyCalls(), filteringCalls(), computervisionCalls()}) {
    all.insert(all.end(), calls.begin(), calls.end());
  }
  return all;
}

}  // namespace
}  // namespace Zorvan::Test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto calls = Zorvan::Test::allCalls();
  FuzzedDataProvider input(data, size);
  calls[input.ConsumeIntegralInRange<std::size_t>(0, calls.size() - 1)](input);
  return 0;
}
