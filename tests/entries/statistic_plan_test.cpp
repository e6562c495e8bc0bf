#include <gtest/gtest.h>

#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_plan.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_sum_plan.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_plan.h"
#include "zorvan/primitives/kernels/statistic/prefetch_plan.h"

namespace Zorvan::Primitives::Statistic {
namespace {

TEST(SumPlan, BytesWithoutGapsRunAsOneRow) {
  EXPECT_EQ(planByteRows({70000, 40000}, 70000).rows, 1);
  EXPECT_EQ(planByteRows({70000, 40000}, 70000).pixels, 2800000000);
  EXPECT_EQ(planByteRows({64, 48}, 65).rows, 48);
  EXPECT_EQ(planByteRows({64, 48}, 63).rows, 48);
}

TEST(SumPlan, SmallRegionsOfSignedWordsFitOneSetOfLanes) {
  EXPECT_TRUE(regionFitsLanes({65535, 1}));
  EXPECT_FALSE(regionFitsLanes({65536, 1}));
  EXPECT_TRUE(regionFitsLanes({255, 257}));
  EXPECT_FALSE(regionFitsLanes({65536, 65536}));  // a product that wraps to zero
}

void expectTile(Size roi, int limit, Size expected) {
  const Size tile = planTile(roi, limit);
  EXPECT_EQ(tile.width, expected.width) << roi.width << " by " << roi.height;
  EXPECT_EQ(tile.height, expected.height) << roi.width << " by " << roi.height;
}

TEST(SumPlan, TilesHoldAsManyWholeRowsAsTheLimitAllows) {
  expectTile({1920, 1080}, unsignedTilePixels, {1920, 17});
  expectTile({1920, 1080}, signedTilePixels, {1920, 34});
  expectTile({100, 5}, unsignedTilePixels, {100, 5});
  expectTile({16384, 9}, unsignedTilePixels, {16384, 2});
  expectTile({16385, 9}, unsignedTilePixels, {16385, 1});
  expectTile({32767, 9}, unsignedTilePixels, {32767, 1});
  expectTile({32768, 9}, unsignedTilePixels, {32768, 1});
  expectTile({32769, 9}, unsignedTilePixels, {32768, 1});
  expectTile({65538, 9}, signedTilePixels, {65538, 1});
  expectTile({65539, 9}, signedTilePixels, {65538, 1});
  expectTile({1, 40000}, unsignedTilePixels, {1, 32768});
  expectTile({1, 70000}, signedTilePixels, {1, 65538});
}

TEST(MaskedSumPlan, SumsOfBytesAreUnrolledBelow0x800000Pixels) {
  EXPECT_TRUE(unrollsByteSum({0x7FFFFF, 1}));
  EXPECT_FALSE(unrollsByteSum({0x800000, 1}));
  EXPECT_FALSE(unrollsByteSum({4096, 2048}));
  EXPECT_TRUE(unrollsByteSum({65536, 65536}));  // the count wraps to zero
  EXPECT_TRUE(unrollsByteSum({65536, 32768}));  // and to a negative number
}

TEST(MaskedSumPlan, RowsOfWordsShareLanesThatHoldThem) {
  EXPECT_EQ(wordRowsInLanes<64>(1), 16384);
  EXPECT_EQ(wordRowsInLanes<64>(64), 16384);
  EXPECT_EQ(wordRowsInLanes<64>(65), 8192);
  EXPECT_EQ(wordRowsInLanes<64>(640), 1638);
  EXPECT_EQ(wordRowsInLanes<64>(0x80000), 2);
  EXPECT_EQ(wordRowsInLanes<64>(0x80001), 1);
  EXPECT_EQ(wordRowsInLanes<64>(0x100000), 1);
  EXPECT_EQ(wordRowsInLanes<64>(0x100001), 1);
  EXPECT_EQ(wordRowsInLanes<64>(0x7FFFFFFF), 1);
  EXPECT_EQ(wordRowsInLanes<32>(64), 8192);
  EXPECT_EQ(wordRowsInLanes<32>(65), 4096);
  EXPECT_EQ(wordRowsInLanes<32>(0x40000), 2);
  EXPECT_EQ(wordRowsInLanes<32>(0x40001), 1);
  EXPECT_EQ(wordRowsInLanes<32>(0x7FFFFFFF), 1);
}

TEST(PrefetchPlan, RegionsInTheNearCachesAreNotPrefetched) {
  EXPECT_EQ(planPrefetch({0x17FFFF, 1}, 1), 0);
  EXPECT_EQ(planPrefetch({0x180000, 1}, 1), 2048);
  EXPECT_EQ(planPrefetch({0x180001, 1}, 1), 2048);
  EXPECT_EQ(planPrefetch({1, 0x5FFFF}, 4), 0);
  EXPECT_EQ(planPrefetch({1024, 384}, 4), 2048);
}

TEST(PrefetchPlan, RegionsBeyondTheThirdCacheHaveALongerDistance) {
  EXPECT_EQ(planPrefetch({0x7FFFFF, 1}, 1), 2048);
  EXPECT_EQ(planPrefetch({0x800000, 1}, 1), 8192);
  EXPECT_EQ(planPrefetch({1, 0x1FFFFF}, 4), 2048);
  EXPECT_EQ(planPrefetch({2048, 1024}, 4), 8192);
  EXPECT_EQ(planPrefetch({65536, 65536}, 4), 8192);  // a product that wraps to zero
}

TEST(PrefetchPlan, LightLoopsDoNotPrefetchRegionsBeyondTheThirdCache) {
  EXPECT_EQ(planPrefetch({0x17FFFF, 1}, 1, lightDistances), 0);
  EXPECT_EQ(planPrefetch({0x180000, 1}, 1, lightDistances), 4096);
  EXPECT_EQ(planPrefetch({0x3FFFFF, 1}, 2, lightDistances), 4096);
  EXPECT_EQ(planPrefetch({0x400000, 1}, 2, lightDistances), 0);
  EXPECT_EQ(planPrefetch({65536, 65536}, 2, lightDistances), 0);
}

TEST(PrefetchPlan, SumsOfWordsHaveTheLongestDistanceBeyondTheThirdCache) {
  EXPECT_EQ(planPrefetch({0xBFFFF, 1}, 2, wordSumDistances), 0);
  EXPECT_EQ(planPrefetch({0xC0000, 1}, 2, wordSumDistances), 2048);
  EXPECT_EQ(planPrefetch({0x3FFFFF, 1}, 2, wordSumDistances), 2048);
  EXPECT_EQ(planPrefetch({0x400000, 1}, 2, wordSumDistances), 16384);
}

TEST(MaskedExtremePlan, BlocksHold8192PixelsOrARow) {
  EXPECT_EQ(rowsOfBlock(1), 8192);
  EXPECT_EQ(rowsOfBlock(64), 128);
  EXPECT_EQ(rowsOfBlock(640), 12);
  EXPECT_EQ(rowsOfBlock(4096), 2);
  EXPECT_EQ(rowsOfBlock(4097), 1);
  EXPECT_EQ(rowsOfBlock(8191), 1);
  EXPECT_EQ(rowsOfBlock(8192), 1);
  EXPECT_EQ(rowsOfBlock(8193), 1);
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
