#include <gtest/gtest.h>

#include <climits>

#include "tests/support/CacheQueries.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_plan.h"

namespace Zorvan::Primitives::Unary {
namespace {

constexpr bool inPlace = true;

using Answer = Test::CacheAnswer;
using Cache = Test::CacheQueries;

Answer knownCache() { return {true, 1 << 20}; }
Answer unknownCache() { return {false, -1}; }

SquarePlan planOf(Size roi, int gap, bool place) {
  return planSquareImage(roi, 4 * roi.width + gap, 4 * roi.width + gap, place);
}

void expectPlan(const SquarePlan& plan, std::int64_t rows, int prefetchBytes, bool streaming) {
  EXPECT_EQ(plan.rows, rows);
  EXPECT_EQ(plan.prefetchBytes, prefetchBytes);
  EXPECT_EQ(plan.streaming, streaming);
}

TEST(SquareImage, RowsJoinOnlyWithoutAGapInBothImages) {
  for (const int src : {39, 40, 41}) {
    for (const int dst : {39, 40, 41}) {
      const SquarePlan plan = planSquareImage({10, 3}, src, dst, !inPlace);
      const bool fused = src == 40 && dst == 40;
      EXPECT_EQ(plan.rows, fused ? 1 : 3) << src << " " << dst;
      EXPECT_EQ(plan.rowPixels, fused ? 30 : 10) << src << " " << dst;
    }
  }
}

TEST(SquareImage, ATotalOf32KiBIsNotPrefetched) {
  // 32768 bytes and the next larger image: of one row, of joined and of separate rows.
  expectPlan(planOf({8192, 1}, 0, inPlace), 1, 0, false);
  expectPlan(planOf({8193, 1}, 0, inPlace), 1, 256, false);
  expectPlan(planOf({4096, 1}, 0, !inPlace), 1, 0, false);
  expectPlan(planOf({4097, 1}, 0, !inPlace), 1, 256, false);
  expectPlan(planOf({128, 64}, 4, inPlace), 64, 0, false);
  expectPlan(planOf({128, 65}, 4, inPlace), 65, 516, false);
  expectPlan(planOf({128, 65}, 0, inPlace), 1, 256, false);
  expectPlan(planOf({64, 64}, 4, !inPlace), 64, 0, false);
  expectPlan(planOf({64, 65}, 4, !inPlace), 65, 260, false);
  expectPlan(planOf({64, 65}, 0, !inPlace), 1, 256, false);
}

TEST(SquareImage, AboveSixMebibytesTheDistanceIsARowAndTwoImagesStream) {
  constexpr int one = 0x600000 / 4, two = 0x600000 / 8;
  expectPlan(planOf({one, 1}, 0, inPlace), 1, 256, false);
  expectPlan(planOf({one + 1, 1}, 0, inPlace), 1, 4 * (one + 1), false);
  expectPlan(planOf({one / 1024, 1024}, 0, inPlace), 1, 256, false);
  expectPlan(planOf({one / 1024 + 1, 1024}, 0, inPlace), 1, 4 * (one / 1024 + 1), false);
  expectPlan(planOf({one / 1024, 1024}, 8, inPlace), 1024, 4 * one / 1024 + 8, false);
  expectPlan(planOf({two, 1}, 0, !inPlace), 1, 256, false);
  expectPlan(planOf({two + 1, 1}, 0, !inPlace), 1, 4 * (two + 1), true);
  expectPlan(planOf({two / 1024, 1024}, 0, !inPlace), 1, 256, false);
  expectPlan(planOf({two / 1024 + 1, 1024}, 0, !inPlace), 1, 4 * (two / 1024 + 1), true);
  expectPlan(planOf({two / 1024, 1024}, 8, !inPlace), 1024, 4 * two / 1024 + 8, false);
  expectPlan(planOf({two / 1024 + 1, 1024}, 8, !inPlace), 1024, 4 * (two / 1024 + 1) + 8, true);
}

TEST(SquareImage, TheDistanceIsTheSourcesStep) {
  expectPlan(planSquareImage({1000, 1000}, 4004, 4008, !inPlace), 1000, 4004, true);
  expectPlan(planSquareImage({100, 100}, 404, 400, !inPlace), 100, 404, false);
}

TEST(SquareImage, TheTotalWraps) {
  // 2^31 bytes become negative and 2^32 become 0: neither is prefetched, but the row has all its pixels.
  expectPlan(planOf({1 << 15, 1 << 14}, 0, inPlace), 1, 0, false);
  expectPlan(planOf({1 << 15, 1 << 14}, 0, !inPlace), 1, 0, false);
  EXPECT_EQ(planOf({1 << 20, 1 << 13}, 0, inPlace).rowPixels, std::int64_t{1} << 33);
  // Rows are not joined where the width in bytes equals the step only after wrapping.
  EXPECT_EQ(planSquareImage({(1 << 30) + 1, 2}, 4, 4, !inPlace).rows, 2);
}

TEST(Streaming, BeginsAboveTheLimitOfThePixels) {
  EXPECT_FALSE(planStreaming<4>(0x600000 / 8, knownCache));
  EXPECT_TRUE(planStreaming<4>(0x600000 / 8 + 1, knownCache));
  EXPECT_FALSE(planStreaming<1>(0x300000 / 2, knownCache));
  EXPECT_TRUE(planStreaming<1>(0x300000 / 2 + 1, knownCache));
  EXPECT_TRUE(planStreaming<4>(std::int64_t{INT_MAX} * INT_MAX, knownCache));
}

TEST(Streaming, BeginsLaterWhereTheCacheIsNotKnown) {
  EXPECT_FALSE(planStreaming<4>(0x1800000 / 8, unknownCache));
  EXPECT_TRUE(planStreaming<4>(0x1800000 / 8 + 1, unknownCache));
  EXPECT_FALSE(planStreaming<1>(0x1800000 / 2, unknownCache));
  EXPECT_TRUE(planStreaming<1>(0x1800000 / 2 + 1, unknownCache));
}

TEST(Streaming, QueriesTheCacheBetweenTheLimitsOnly) {
  Cache cache{{true, 1}};
  EXPECT_FALSE(planStreaming<4>(0x600000 / 8, cache.query()));
  EXPECT_TRUE(planStreaming<4>(0x1800000 / 8 + 1, cache.query()));
  EXPECT_EQ(cache.queries, 0);
  EXPECT_TRUE(planStreaming<4>(0x600000 / 8 + 1, cache.query()));
  EXPECT_EQ(cache.queries, 1);
}

TEST(FloatRows, JoinWithoutAGapInWholePixels) {
  for (const int src : {39, 40, 43, 44}) {
    for (const int dst : {39, 40, 43, 44}) {
      const FloatRowsPlan rows = planFloatRows({10, 3}, src, dst);
      const bool fused = src / 4 == 10 && dst / 4 == 10;
      EXPECT_EQ(rows.rows, fused ? 1 : 3) << src << " " << dst;
      EXPECT_EQ(rows.rowPixels, fused ? 30 : 10) << src << " " << dst;
    }
  }
  EXPECT_EQ(planFloatRows({1 << 20, 1 << 13}, 1 << 22, 1 << 22).rowPixels, std::int64_t{1} << 33);
  EXPECT_EQ(planFloatRows({(1 << 30) + 1, 2}, 4, 4).rows, 2);
}

TEST(FloatPeel, EndsAtTheBoundaryOrWithTheRow) {
  for (const int boundary : {16, 32, 64}) {
    const auto b = static_cast<std::uintptr_t>(boundary);
    EXPECT_EQ(planPeel(0x1000, 100, boundary), 0);
    EXPECT_EQ(planPeel(0x1000 + b - 4, 100, boundary), 1);
    EXPECT_EQ(planPeel(0x1004, 100, boundary), boundary / 4 - 1);
    EXPECT_EQ(planPeel(0x1004, boundary / 4 - 1, boundary), boundary / 4 - 1);
    EXPECT_EQ(planPeel(0x1004, boundary / 4 - 2, boundary), boundary / 4 - 2);
    for (const std::uintptr_t off : {1, 2, 3, 5, 15}) EXPECT_EQ(planPeel(0x1000 + off, 100, boundary), 0);
  }
}

TEST(WholePixels, DropTheOtherBytes) {
  for (const int step : {1, 2, 3}) EXPECT_EQ(wholePixels(step), 0);
  for (const int step : {4, 5, 6, 7}) EXPECT_EQ(wholePixels(step), 4);
  EXPECT_EQ(wholePixels(INT_MAX), INT_MAX - 3);
}

TEST(ByteRows, JoinOnlyWithoutAGapInBothImages) {
  for (const int src : {9, 10, 11}) {
    for (const int dst : {9, 10, 11}) {
      const ByteRowsPlan plan = planByteRows({10, 3}, src, dst, !inPlace, knownCache);
      const bool fused = src == 10 && dst == 10;
      EXPECT_EQ(plan.rows, fused ? 1 : 3) << src << " " << dst;
      EXPECT_EQ(plan.rowPixels, fused ? 30 : 10) << src << " " << dst;
    }
  }
  EXPECT_EQ(planByteRows({1 << 20, 1 << 13}, 1 << 20, 1 << 20, inPlace, knownCache).rowPixels,
            std::int64_t{1} << 33);
}

TEST(ByteRows, StreamFromOneLargeImageToAnother) {
  EXPECT_FALSE(planByteRows({1024, 1536}, 1024, 1024, !inPlace, knownCache).streaming);
  EXPECT_TRUE(planByteRows({1024, 1537}, 1024, 1024, !inPlace, knownCache).streaming);
  EXPECT_FALSE(planByteRows({1024, 1537}, 1024, 1024, !inPlace, unknownCache).streaming);
  EXPECT_FALSE(planByteRows({0x180000, 1}, 0x400000, 0x400000, !inPlace, knownCache).streaming);
  EXPECT_TRUE(planByteRows({0x180001, 1}, 0x400000, 0x400000, !inPlace, knownCache).streaming);
  EXPECT_FALSE(planByteRows({1024, 1537}, 1024, 1024, inPlace, knownCache).streaming);
  EXPECT_TRUE(planByteRows({INT_MAX, INT_MAX}, INT_MAX, INT_MAX, !inPlace, unknownCache).streaming);
}

}  // namespace
}  // namespace Zorvan::Primitives::Unary
