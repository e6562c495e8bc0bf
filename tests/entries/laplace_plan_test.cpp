#include "zorvan/primitives/kernels/filtering/laplace_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "zorvan/primitives/frame/LaplaceSizes.h"
#include "zorvan/primitives/kernels/neighbourhood/border_word.h"

namespace Zorvan::Primitives::Laplace {
namespace {

TEST(LaplacePlan, KnowsTheCodes) {
  EXPECT_EQ(extentOfMask(33), 3);
  EXPECT_EQ(extentOfMask(55), 5);
  EXPECT_EQ(extentOfMask(35), 0);
  EXPECT_EQ(bytesOfType(1), 1);
  EXPECT_EQ(bytesOfType(7), 2);
  EXPECT_EQ(bytesOfType(13), 4);
  EXPECT_EQ(bytesOfType(5), 0);
}

TEST(LaplacePlan, ARowOfSumsHasTwoMoreColumnsForTheSmallKernel) {
  EXPECT_EQ(sumRowBytes(14, 3, 1), 32u);
  EXPECT_EQ(sumRowBytes(15, 3, 1), 64u);
  EXPECT_EQ(sumRowBytes(16, 5, 1), 32u);
  EXPECT_EQ(sumRowBytes(17, 5, 1), 64u);
  EXPECT_EQ(sumRowBytes(8, 5, 2), 32u);
  EXPECT_EQ(sumRowBytes(8, 5, 4), 32u);
}

TEST(LaplacePlan, BuildsASmallRegionAsAWhole) {
  EXPECT_EQ(expansionBytes({3, 100}, 3, 1), 5u * 102 + 2);  // 510, aligned
  EXPECT_EQ(expansionBytes({4, 100}, 3, 1), 320u);          // 102 * 3
  EXPECT_EQ(expansionBytes({5, 3000}, 5, 1), 9u * 3004 + 4);
  EXPECT_EQ(expansionBytes({6, 3000}, 5, 1), 6u * 3004 + 24);
}

TEST(LaplacePlan, TheReportedSizeWrapsAt32Bits) {
  EXPECT_EQ(reportedWorkBytes({640, 480}, 3, 1, 1), 1952 + 1312 + 32);
  EXPECT_EQ(reportedWorkBytes({0x7FFFFFFF, 6}, 3, 1, 1),
            static_cast<std::int32_t>(
                static_cast<std::uint32_t>((0x80000001ull * 3 + 29) + (0x80000001ull * 2 + 30) + 32)));
  EXPECT_EQ(workBytes({5, 477'218'600}, 5, 1), 0x1'0000'0000ull + 160 + 12 * 32 + 32);
  EXPECT_EQ(reportedWorkBytes({5, 477'218'600}, 5, 1, 1), 160 + 12 * 32 + 32);
}

TEST(LaplacePlan, SmallRegionsHaveAllSidesMadeOrNone) {
  EXPECT_EQ((BorderWord{0x71}.of({4, 4}, {3, 3})).bits, 0x71);
  EXPECT_EQ((BorderWord{0x71}.of({3, 4}, {3, 3})).bits, 1);
  EXPECT_EQ((BorderWord{0x76}.of({4, 3}, {3, 3})).bits, 6);
  EXPECT_EQ((BorderWord{0xF1}.of({3, 3}, {3, 3})).bits, 0xF1);
  EXPECT_EQ((BorderWord{0x11}.of({5, 6}, {5, 5})).bits, 1);
  EXPECT_EQ((BorderWord{0x11}.of({6, 6}, {5, 5})).bits, 0x11);
}

TEST(LaplacePlan, VectorsAtBothEndsNeedTheReachBetweenThem) {
  EXPECT_FALSE(vectorsFit(16, 15, 1, 1));
  EXPECT_TRUE(vectorsFit(16, 16, 1, 1));
  EXPECT_TRUE(vectorsFit(16, 17, 1, 1));
  EXPECT_TRUE(vectorsFit(16, 16, 2, 1));
  EXPECT_FALSE(vectorsFit(16, 17, 2, 1));
  EXPECT_TRUE(vectorsFit(16, 18, 2, 1));
  EXPECT_FALSE(vectorsFit(64, 33, 2, 2));
  EXPECT_TRUE(vectorsFit(64, 34, 2, 2));
  EXPECT_FALSE(vectorsFit(32, 9, 2, 4));
  EXPECT_TRUE(vectorsFit(32, 10, 2, 4));
}

/// Marks the bytes of a row that a vector makes; false where its neighbours are not in the row.
bool covers(std::vector<bool>& made, std::int64_t at, std::int64_t reach, std::int64_t vector) {
  const auto end = static_cast<std::int64_t>(made.size());
  if (at - reach < 0 || at + vector + reach > end) return false;
  std::fill_n(made.begin() + at, vector, true);
  return true;
}

TEST(LaplacePlan, VectorsInsideARowHaveTheirNeighboursInItAndLeaveNothingOut) {
  for (const int vector : {16, 32, 64}) {
    for (const int pixel : {1, 2, 4}) {
      for (const int reachPixels : {1, 2}) {
        const int reach = reachPixels * pixel;
        for (int row = vector + reach; row <= 4 * vector; row += pixel) {
          for (int peel = 0; peel < vector; peel += peel == 0 ? reach : pixel) {
            SCOPED_TRACE(testing::Message() << "row of " << row << " bytes, reach " << reach << ", " << peel
                                            << " in front of the first vector of " << vector);
            const VectorsInside inside = planInside(row, reach, peel, vector);
            std::vector<bool> made(static_cast<std::size_t>(row));
            std::fill_n(made.begin(), vector, true);
            std::fill_n(made.end() - vector, vector, true);
            for (std::int64_t i = 0; i < inside.count; ++i) {
              ASSERT_TRUE(covers(made, inside.first + i * vector, reach, vector));
            }
            if (inside.overlaps) {
              ASSERT_TRUE(covers(made, row - vector - reach, reach, vector));
            }
            ASSERT_EQ(std::count(made.begin(), made.end(), false), 0);
          }
        }
      }
    }
  }
}

TEST(LaplacePlan, BandsHaveMoreRowsInTheNearestCache) {
  EXPECT_EQ(planBandRows(1, false), 64);
  EXPECT_EQ(planBandRows(32768, false), 64);
  EXPECT_EQ(planBandRows(32769, false), 8);
  EXPECT_EQ(planBandRows(std::int64_t{1} << 40, false), 8);
}

TEST(LaplacePlan, BandsHaveFewRowsWhereTheseCollide) {
  EXPECT_EQ(planBandRows(1, true), 4);
  EXPECT_EQ(planBandRows(std::int64_t{1} << 40, true), 4);
  EXPECT_TRUE(planColliding(4096, 4096, false));
  EXPECT_TRUE(planColliding(8192, 3 * 4096, false));
  EXPECT_FALSE(planColliding(4096, 4096, true));
  EXPECT_FALSE(planColliding(4096, 4096 + 64, false));
  EXPECT_FALSE(planColliding(2048, 4096, false));
}

TEST(LaplacePlan, TheSumsOfAllColumnsOfABandFitTheirRoom) {
  EXPECT_EQ(planColumns(256), 128);
  EXPECT_EQ(planColumns(96), 341);
}

TEST(LaplacePlan, StreamsLargeRegionsWithRowsInStep) {
  EXPECT_FALSE(planStreaming({4096, 1023}, 1, 4096, 63, 1, 64));
  EXPECT_TRUE(planStreaming({4096, 1024}, 1, 4096, 63, 1, 64));
  EXPECT_TRUE(planStreaming({1024, 1025}, 4, 4096, 60, 1, 64));
  EXPECT_FALSE(planStreaming({1024, 1025}, 4, 4096, 61, 1, 64));
  EXPECT_FALSE(planStreaming({4096, 1024}, 1, 4128, 63, 1, 64));
  for (const int vectorBytes : {16, 32}) {
    EXPECT_FALSE(planStreaming({4096, 1791}, 1, 4096, 15, 1, vectorBytes));
    EXPECT_TRUE(planStreaming({4096, 1792}, 1, 4096, 15, 1, vectorBytes));
    EXPECT_FALSE(planStreaming({4096, 1792}, 1, 4128, 15, 1, vectorBytes));
  }
}

TEST(LaplacePlan, PrefetchesLargeRegionsInsideTheirRows) {
  EXPECT_FALSE(planPrefetch({4096, 1023}, 1));
  EXPECT_TRUE(planPrefetch({4096, 1024}, 1));
  EXPECT_FALSE(planPrefetch({1023, 1025}, 4));
  EXPECT_TRUE(planPrefetch({1024, 1024}, 4));
  EXPECT_EQ(planPrefetchedColumns(511, 20, 32), 0);
  EXPECT_EQ(planPrefetchedColumns(512, 20, 32), 1);
  EXPECT_EQ(planPrefetchedColumns(512 + 31, 20, 32), 1);
  EXPECT_EQ(planPrefetchedColumns(512 + 32, 20, 32), 2);
  EXPECT_EQ(planPrefetchedColumns(5000, 20, 32), 20);
}

TEST(LaplacePlan, StreamedVectorsBeginAtTheEndOfTheRowOrHaveTheirNeighbours) {
  EXPECT_TRUE(planStreaming({4096, 1024}, 1, 4096, 0, 2, 64));
  EXPECT_FALSE(planStreaming({4096, 1024}, 1, 4096, 1, 2, 64));
  EXPECT_TRUE(planStreaming({4096, 1024}, 1, 4096, 2, 2, 64));
  EXPECT_FALSE(planStreaming({4096, 1024}, 4, 16384, 4, 2, 64));
  EXPECT_TRUE(planStreaming({4096, 1024}, 4, 16384, 8, 2, 64));
}

}  // namespace
}  // namespace Zorvan::Primitives::Laplace
