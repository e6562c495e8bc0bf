// The work memory that a filter requests from the heap.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/Heap.h"
#include "zorvan/ipp.h"
#include "zorvan/operations/filtering/FilteringMethods.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;

/// What a filter of the region at the image's origin requests.
template <class T>
std::size_t requestOfFilter(Size image, Size region, bool use3x3) {
  std::vector<T> pixels(static_cast<std::size_t>(image.width * image.height)), result(pixels.size());
  auto src = IppIMemory<T>::CreateContainer(pixels.data(), image);
  auto dst = IppIMemory<T>::CreateContainer(result.data(), image);
  const WatchedHeap heap;
  FilteringFunction::LaplaceBorder<T>(src, dst, {0, 0, region.width, region.height}, use3x3, eBorderReplicate,
                                      T(0));
  return heap.lastBytes();
}

/// What a buffer of this length requests.
std::size_t requestOfBuffer(int bytes) {
  const WatchedHeap heap;
  const IppS::IppSMemory<u8> buffer(bytes);
  return heap.lastBytes();
}

struct Bytes {
  int of8u, of16s, of32f;
};

void expectWorkMemory(Size image, Size region, bool use3x3, Bytes expected) {
  const auto where = testing::Message() << region.width << " by " << region.height << " of " << image.width;
  EXPECT_EQ(requestOfFilter<u8>(image, region, use3x3), requestOfBuffer(expected.of8u)) << where;
  EXPECT_EQ(requestOfFilter<s16>(image, region, use3x3), requestOfBuffer(expected.of16s)) << where;
  EXPECT_EQ(requestOfFilter<float>(image, region, use3x3), requestOfBuffer(expected.of32f)) << where;
}

TEST(WorkMemory, IsThatOfTheWholeImage) {
  for (const Size region : {Size{100, 40}, Size{50, 20}, Size{1, 1}}) {
    expectWorkMemory({100, 40}, region, true, {576, 1088, 1696});
    expectWorkMemory({100, 40}, region, false, {3360, 6272, 7520});
  }
}

/// A region as wide as the kernel would be copied as a whole with its border, an image one pixel wider in
/// stripes.
TEST(WorkMemory, IsThatOfARegionAsWideAsTheKernelIfItNeedsMore) {
  expectWorkMemory({4, 3000}, {3, 3000}, true, {15104, 30112, 60128});
  expectWorkMemory({6, 3000}, {5, 3000}, false, {27456, 54496, 108576});
}

/// The size of the image does not fit into 32 bits either, but what remains of it there is a valid size.
TEST(WorkMemory, OfARegionOfAnyWidthHasToFitIntoAnInt) {
  const int height = 178'956'971;
  for (int width = 1; width <= 5; ++width) {
    const Size image{6, height}, region{width, height};
    EXPECT_GT(FilteringFunctions::workBytes(image, {1, 1}, Primitives::mask5x5, Primitives::dataType32f), 0);
    EXPECT_EQ(FilteringFunctions::workBytes(image, region, Primitives::mask5x5, Primitives::dataType32f), -1)
        << width;
  }
}

}  // namespace
}  // namespace Zorvan::Test
