#include <gtest/gtest.h>

#include "zorvan/primitives/kernels/initializer/convert/convert_plan.h"

namespace Zorvan::Primitives::Convert {
namespace {

struct Answer {
  bool known;
  int bytes;
};

/// A region with rows apart, so that a row is `width` pixels.
template <int dstPixelBytes>
ConvertPlan planApart(Size roi, Answer cache, int line) {
  return planConvertImage<dstPixelBytes>(
      roi, 4 * roi.width + 4, dstPixelBytes * roi.width + 4, [&] { return cache; }, [&] { return line; });
}

template <int dstPixelBytes>
void expectFusionWithoutGaps() {
  const int srcStep = 4 * 10, dstStep = dstPixelBytes * 10;
  for (const int src : {srcStep - 1, srcStep, srcStep + 1}) {
    for (const int dst : {dstStep - 1, dstStep, dstStep + 1}) {
      const ConvertRows rows = planConvertRows<dstPixelBytes>({10, 3}, src, dst);
      const bool fused = src == srcStep && dst == dstStep;
      EXPECT_EQ(rows.rows, fused ? 1 : 3) << src << " " << dst;
      EXPECT_EQ(rows.rowPixels, fused ? 30 : 10) << src << " " << dst;
    }
  }
}

TEST(ConvertPlan, RowsFuseOnlyWithoutAGapOnBothSides) {
  expectFusionWithoutGaps<1>();
  expectFusionWithoutGaps<4>();
}

TEST(ConvertPlan, StepsWhoseMultipleWrapsDoNotFuse) {
  const int width = (1 << 30) + 1;  // four times as many bytes are 4 in 32 bits
  EXPECT_EQ(planConvertRows<1>({width, 2}, 4, width).rows, 2);
  EXPECT_EQ(planConvertRows<4>({width, 2}, 4, 4).rows, 2);
}

TEST(ConvertPlan, RegionsBeyond32BitsAreWhole) {
  const ConvertRows bytes = planConvertRows<1>({1 << 20, 1 << 13}, 1 << 22, 1 << 20);
  EXPECT_EQ(bytes.rows, 1);
  EXPECT_EQ(bytes.rowPixels, std::int64_t{1} << 33);
  EXPECT_TRUE(planApart<1>({1 << 20, 1 << 13}, {true, 0x7FFFFFFF}, 64).streaming);
  EXPECT_TRUE(planApart<4>({1 << 20, 1 << 13}, {true, 0x7FFFFFFF}, 64).streaming);
}

TEST(ConvertPlan, StreamsFromTheCacheSizeOn) {
  for (const int difference : {-1, 0, 1}) {
    EXPECT_EQ(planApart<1>({1000, 40}, {true, 5 * 40000 + difference}, 64).streaming, difference <= 0);
    EXPECT_EQ(planApart<4>({1000, 40}, {true, 8 * 40000 + difference}, 64).streaming, difference <= 0);
  }
}

TEST(ConvertPlan, StreamsRowsOfTwoLinesOrMore) {
  for (const int line : {32, 33, 64, 128}) {
    for (const int width : {2 * line - 1, 2 * line, 2 * line + 1}) {
      EXPECT_EQ(planApart<1>({width, 4}, {true, 0}, line).streaming, width >= 2 * line) << width;
    }
  }
  for (const int width : {31, 32, 33}) {
    EXPECT_EQ(planApart<4>({width, 4}, {true, 0}, 64).streaming, width >= 32) << width;
  }
}

TEST(ConvertPlan, FusedRowsCountAsOneAgainstTheLine) {
  const auto cache = [] { return Answer{true, 0}; };
  const auto line = [] { return 64; };
  EXPECT_TRUE(planConvertImage<1>({16, 8}, 64, 16, cache, line).streaming);
  EXPECT_FALSE(planConvertImage<1>({16, 8}, 64, 17, cache, line).streaming);
  EXPECT_TRUE(planConvertImage<4>({16, 2}, 64, 64, cache, line).streaming);
  EXPECT_FALSE(planConvertImage<4>({16, 2}, 64, 68, cache, line).streaming);
}

TEST(ConvertPlan, AnUnknownCacheOrLineKeepsPlainStores) {
  EXPECT_FALSE(planApart<1>({1000, 40}, {false, 0}, 64).streaming);
  EXPECT_FALSE(planApart<4>({1000, 40}, {false, 0}, 64).streaming);
  for (const int line : {0, -1}) {
    EXPECT_FALSE(planApart<1>({1000, 40}, {true, 0}, line).streaming);
    EXPECT_FALSE(planApart<4>({1000, 40}, {true, 0}, line).streaming);
  }
  EXPECT_TRUE(planApart<1>({1000, 40}, {true, 0}, 1).streaming);
  EXPECT_TRUE(planApart<4>({1000, 40}, {true, 0}, 1).streaming);
}

TEST(ConvertPlan, ShortRunsAreScalar) {
  for (const int n : {1, 6, 7, 8, 9}) EXPECT_EQ(planScalarFloats(0x1000, 0x2000, n), n < 8) << n;
}

TEST(ConvertPlan, RunsThatOverlapAreScalar) {
  constexpr int n = 20, bytes = 4 * n;
  for (const int distance : {bytes - 4, bytes, bytes + 4}) {
    EXPECT_EQ(planScalarFloats(0x1000, 0x1000 + distance, n), distance < bytes) << distance;
    EXPECT_EQ(planScalarFloats(0x1000 + distance, 0x1000, n), distance < bytes) << distance;
    EXPECT_EQ(planScalarFloats(0x1000 + distance + 1, 0x1000, n), distance < bytes) << distance;
  }
  EXPECT_TRUE(planScalarFloats(0x1000 + bytes - 1, 0x1000, n));
  EXPECT_TRUE(planScalarFloats(0x1000, 0x1000, n));
}

TEST(ConvertPlan, RunsToAddressesBetweenFloatsAreScalar) {
  for (const int offset : {0, 1, 2, 3, 4}) {
    EXPECT_EQ(planScalarFloats(0x1000, 0x2000 + offset, 20), offset % 4 != 0) << offset;
    EXPECT_FALSE(planScalarFloats(0x1000 + offset, 0x2000, 20)) << offset;
  }
}

TEST(ConvertPlan, ThePeelEndsAtTheBoundaryOrWithTheRow) {
  EXPECT_EQ(pixelsToBoundary(0x1000, 64, 1, 500), 0);
  EXPECT_EQ(pixelsToBoundary(0x1001, 64, 1, 500), 63);
  EXPECT_EQ(pixelsToBoundary(0x103F, 64, 1, 500), 1);
  EXPECT_EQ(pixelsToBoundary(0x1004, 64, 4, 500), 15);
  EXPECT_EQ(pixelsToBoundary(0x1001, 64, 1, 62), 62);
  EXPECT_EQ(pixelsToBoundary(0x1001, 64, 1, 63), 63);
  EXPECT_EQ(pixelsToBoundary(33 * 100 + 1, 33, 1, 500), 32);
  EXPECT_EQ(pixelsToBoundary(33 * 100 + 1, 33, 4, 500), 8);
  EXPECT_EQ(pixelsToBoundary(0x1003, 4, 4, 500), 0);  // out of reach of whole pixels
  EXPECT_EQ(pixelsToBoundary(12345, 1, 1, 500), 0);
}

}  // namespace
}  // namespace Zorvan::Primitives::Convert
