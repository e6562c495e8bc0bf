#include <gtest/gtest.h>

#include "zorvan/primitives/kernels/initializer/masked/masked_plan.h"

namespace Zorvan::Primitives::Masked {
namespace {

TEST(MaskedPlan, AStepIsTightAtTheRowsLengthOnly) {
  for (const int step : {39, 40, 41, 0, -40}) EXPECT_EQ(isTight({10, 3}, 4, step), step == 40) << step;
  EXPECT_FALSE(isTight({1 << 30, 1}, 4, 0));  // a length of 32 bits does not wrap
}

TEST(MaskedPlan, RowsApartStayApart) {
  const MaskedPlan plan = planMasked<MaskedRows::apart>({10, 3}, true);
  EXPECT_EQ(plan.rows, 3);
  EXPECT_EQ(plan.pixels, 10);
}

TEST(MaskedPlan, RowsWithGapsStayApart) {
  EXPECT_EQ(planMasked<MaskedRows::joinedIfSmall>({10, 3}, false).rows, 3);
  EXPECT_EQ(planMasked<MaskedRows::joinedUnlessOverflow>({10, 3}, false).rows, 3);
}

TEST(MaskedPlan, NeitherSideReaches32768) {
  for (const int side : {32766, 32767, 32768, 32769}) {
    const bool joined = side < 32768;
    const MaskedPlan wide = planMasked<MaskedRows::joinedIfSmall>({side, 2}, true);
    EXPECT_EQ(wide.rows, joined ? 1 : 2);
    EXPECT_EQ(wide.pixels, joined ? side * 2 : side);
    const MaskedPlan high = planMasked<MaskedRows::joinedIfSmall>({2, side}, true);
    EXPECT_EQ(high.rows, joined ? 1 : side);
    EXPECT_EQ(high.pixels, joined ? side * 2 : 2);
  }
}

TEST(MaskedPlan, ThePixelCountDoesNotOverflow) {
  EXPECT_EQ(planMasked<MaskedRows::joinedUnlessOverflow>({32768, 4}, true).rows, 1);
  const MaskedPlan last = planMasked<MaskedRows::joinedUnlessOverflow>({INT32_MAX, 1}, true);
  EXPECT_EQ(last.pixels, INT32_MAX);
  EXPECT_EQ(planMasked<MaskedRows::joinedUnlessOverflow>({(1 << 16) - 1, 1 << 15}, true).rows, 1);
  const MaskedPlan beyond = planMasked<MaskedRows::joinedUnlessOverflow>({1 << 16, 1 << 15}, true);
  EXPECT_EQ(beyond.rows, 1 << 15);
  EXPECT_EQ(beyond.pixels, 1 << 16);
}

TEST(MaskedPlan, EmptyStoresAreSkippedInLargeImages) {
  constexpr auto all = MaskedStores::all, selected = MaskedStores::selected;
  for (const std::int64_t bytes : {0x7FFF, 0x8000, 0x8001}) {
    EXPECT_EQ((planMaskedStores<1, 0>({1, bytes})), bytes > 0x8000 ? selected : all) << bytes;
  }
  EXPECT_EQ((planMaskedStores<4, 0>({1, 0x2000})), all);
  EXPECT_EQ((planMaskedStores<4, 0>({1, 0x2001})), selected);
  EXPECT_EQ((planMaskedStores<2, 0>({128, 128})), all);  // rows apart count together
  EXPECT_EQ((planMaskedStores<2, 0>({128, 129})), selected);
}

TEST(MaskedPlan, LinesOfImagesInMemoryArePrefetched) {
  constexpr auto selected = MaskedStores::selected, prefetched = MaskedStores::prefetched;
  EXPECT_EQ((planMaskedStores<1, 0>({1, 0x7FFFFF})), selected);
  EXPECT_EQ((planMaskedStores<1, 0>({1, 0x800000})), prefetched);  // the mask counts too
  EXPECT_EQ((planMaskedStores<4, 0>({1, 0x333333})), selected);
  EXPECT_EQ((planMaskedStores<4, 0>({1, 0x333334})), prefetched);
  EXPECT_EQ((planMaskedStores<2, 2>({1, 0x333333})), selected);
  EXPECT_EQ((planMaskedStores<2, 2>({1, 0x333334})), prefetched);  // and so does the source of a copy
  EXPECT_EQ((planMaskedStores<1, 0>({0x1000, 0x7FF})), selected);
  EXPECT_EQ((planMaskedStores<1, 0>({0x1000, 0x800})), prefetched);
}

TEST(MaskedRowPlan, ShortRowsGoPixelByPixel) {
  for (const int pixels : {31, 32, 33}) {
    EXPECT_EQ((planMaskedRow<4, 32>(pixels, 0).byPixels), pixels <= 32) << pixels;
  }
}

TEST(MaskedRowPlan, ThePeelEndsOnTheBoundary) {
  for (const int bytes : {0, 4, 28}) {
    const MaskedRowPlan plan = planMaskedRow<4, 7>(100, bytes);
    EXPECT_TRUE(plan.onBoundary);
    EXPECT_EQ(plan.peel, bytes / 4);
  }
}

TEST(MaskedRowPlan, PixelsAcrossTheBoundaryNeverReachIt) {
  for (const int bytes : {1, 2, 3, 5, 15}) {
    const MaskedRowPlan plan = planMaskedRow<4, 7>(100, bytes);
    EXPECT_FALSE(plan.onBoundary);
    EXPECT_EQ(plan.peel, 0);
  }
  EXPECT_FALSE((planMaskedRow<2, 15>(100, 7).onBoundary));
  EXPECT_TRUE((planMaskedRow<1, 15>(100, 7).onBoundary));
}

TEST(MaskedRowPlan, ThePeelStaysInTheRow) {
  for (const int pixels : {30, 31, 32}) {
    EXPECT_EQ((planMaskedRow<1, 15>(pixels, 31).peel), pixels < 31 ? pixels : 31) << pixels;
  }
}

}  // namespace
}  // namespace Zorvan::Primitives::Masked
