#include "zorvan/primitives/kernels/filtering/LaplacePlan.h"

#include <gtest/gtest.h>

namespace Zorvan::Primitives {
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
  EXPECT_EQ(laplaceBufferBytes({640, 480}, 3, 1, 1), 1952 + 1312 + 32);
  EXPECT_EQ(laplaceBufferBytes({0x7FFFFFFF, 6}, 3, 1, 1),
            static_cast<std::int32_t>(
                static_cast<std::uint32_t>((0x80000001ull * 3 + 29) + (0x80000001ull * 2 + 30) + 32)));
  EXPECT_EQ(laplaceWorkBytes({5, 477'218'600}, 5, 1), 0x1'0000'0000ull + 160 + 12 * 32 + 32);
  EXPECT_EQ(laplaceBufferBytes({5, 477'218'600}, 5, 1, 1), 160 + 12 * 32 + 32);
}

TEST(LaplacePlan, TilesHaveTheSameBytesOfSumsForAllPixels) {
  EXPECT_EQ(tilePixels(3, 1), 8192);
  EXPECT_EQ(tilePixels(3, 2), 4096);
  EXPECT_EQ(tilePixels(3, 4), 4096);
  EXPECT_EQ(tilePixels(5, 1), 1024);
  EXPECT_EQ(tilePixels(5, 2), 512);
  EXPECT_EQ(tilePixels(5, 4), 512);
}

TEST(LaplacePlan, StreamsLargeTilesWithRowsInStep) {
  EXPECT_FALSE(planLaplaceStreaming({4096, 1023}, 1, 4096, 63, 64));
  EXPECT_TRUE(planLaplaceStreaming({4096, 1024}, 1, 4096, 63, 64));
  EXPECT_TRUE(planLaplaceStreaming({1024, 1025}, 4, 4096, 60, 64));
  EXPECT_FALSE(planLaplaceStreaming({1024, 1025}, 4, 4096, 61, 64));
  EXPECT_FALSE(planLaplaceStreaming({4096, 1024}, 1, 4128, 63, 64));
  EXPECT_TRUE(planLaplaceStreaming({4096, 1024}, 1, 4128, 31, 32));
}

}  // namespace
}  // namespace Zorvan::Primitives
