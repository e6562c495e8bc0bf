#include <gtest/gtest.h>

#include "tests/support/CacheQueries.h"
#include "zorvan/primitives/kernels/initializer/fill/fill_plan.h"

namespace Zorvan::Primitives {
namespace {

using Answer = Test::CacheAnswer;
using Cache = Test::CacheQueries;

constexpr int kMiB = 1 << 20;

TEST(RowFillPlan, RowsFuseOnlyWithoutAGap) {
  Cache cache{{true, kMiB}};
  for (const int step : {39, 40, 41}) {
    const FillPlan plan = planRowFill<4>({10, 3}, step, cache.query());
    EXPECT_EQ(plan.rows, step == 40 ? 1 : 3);
    EXPECT_EQ(plan.rowBytes, step == 40 ? 120 : 40);
  }
  EXPECT_EQ(cache.queries, 0);
}

TEST(RowFillPlan, AsksForTheCacheAboveHalfAMebibyte) {
  for (const int width : {0x8000, 0x8000 - 1, 0x8000 + 1}) {
    Cache cache{{true, 1}};
    const FillPlan plan = planRowFill<1>({width, 16}, width, cache.query());
    EXPECT_EQ(cache.queries, width > 0x8000 ? 1 : 0);
    EXPECT_EQ(plan.stores, width > 0x8000 ? FillStores::streaming : FillStores::plain);
  }
}

TEST(RowFillPlan, StreamsFromTheCacheSizeOn) {
  for (const int bytes : {2 * kMiB - 4, 2 * kMiB, 2 * kMiB + 4}) {
    Cache cache{{true, 2 * kMiB}};
    const FillPlan plan = planRowFill<4>({bytes / 4, 1}, bytes, cache.query());
    EXPECT_EQ(plan.stores, bytes >= 2 * kMiB ? FillStores::streaming : FillStores::plain);
  }
}

TEST(RowFillPlan, SixteenBitFillsAskAndNeverStream) {
  Cache cache{{true, 1}};
  EXPECT_EQ(planRowFill<2>({1 << 20, 2}, 0, cache.query()).stores, FillStores::plain);
  EXPECT_EQ(cache.queries, 1);
}

TEST(RowFillPlan, AnUnknownCacheKeepsPlainStores) {
  Cache cache{{false, -1}};
  EXPECT_EQ(planRowFill<1>({1 << 20, 2}, 0, cache.query()).stores, FillStores::plain);
  EXPECT_EQ(cache.queries, 1);
}

TEST(RowFillPlan, TotalsBeyond32BitsAreWhole) {
  Cache cache{{false, -1}};
  const FillPlan plan = planRowFill<4>({1 << 20, 1 << 12}, 1 << 22, cache.query());
  EXPECT_EQ(plan.rows, 1);
  EXPECT_EQ(plan.rowBytes, std::int64_t{1} << 34);
}

template <int pixelBytes>
void expectWideLimits() {
  const int limit = 0x600000 / pixelBytes;
  for (const int pixels : {limit - 1, limit, limit + 1}) {
    Cache cache{{true, 1}};
    const FillPlan plan = planWideFill<pixelBytes>({pixels, 1}, 0, false, cache.query());
    EXPECT_EQ(cache.queries, pixels > limit ? 1 : 0) << pixels;
    EXPECT_EQ(plan.stores, pixels > limit ? FillStores::streaming : FillStores::claimed) << pixels;
  }
  const int cachePixels = 2 * limit;
  for (const int pixels : {cachePixels - 1, cachePixels, cachePixels + 1}) {
    Cache cache{{true, cachePixels * pixelBytes + pixelBytes - 1}};  // the odd bytes are shifted out
    const FillPlan plan = planWideFill<pixelBytes>({pixels, 1}, 0, false, cache.query());
    EXPECT_EQ(plan.stores, pixels >= cachePixels ? FillStores::streaming : FillStores::claimed) << pixels;
  }
}

TEST(WideFillPlan, LimitsCountPixels) {
  expectWideLimits<1>();
  expectWideLimits<2>();
  expectWideLimits<4>();
}

TEST(WideFillPlan, ClaimsLinesAheadAboveAMebibyte) {
  Cache cache{{true, 1}};
  for (const int pixels : {kMiB / 4 - 1, kMiB / 4, kMiB / 4 + 1}) {
    EXPECT_EQ(planWideFill<4>({pixels, 1}, 0, false, cache.query()).stores,
              pixels > kMiB / 4 ? FillStores::claimed : FillStores::plain);
  }
  EXPECT_EQ(cache.queries, 0);
}

TEST(WideFillPlan, AnUnknownCacheKeepsFromStreaming) {
  Cache cache{{false, 0}};
  EXPECT_EQ(planWideFill<1>({0x600000, 1}, 0, false, cache.query()).stores, FillStores::claimed);
  EXPECT_EQ(planWideFill<1>({0x600001, 1}, 0, false, cache.query()).stores, FillStores::plain);
}

TEST(WideFillPlan, ProductsOf32BitsStreamUnfusedWithoutAsking) {
  Cache cache{{true, 1 << 30}};
  const FillPlan below = planWideFill<1>({0x7FFF, 0xFFFF}, 0x7FFF, false, cache.query());  // 15 + 16 bits
  EXPECT_EQ(below.rows, 1);
  EXPECT_EQ(cache.queries, 1);
  const FillPlan at = planWideFill<1>({0x8000, 0xFFFF}, 0x8000, false, cache.query());  // 16 + 16 bits
  EXPECT_EQ(at.rows, 0xFFFF);
  EXPECT_EQ(at.rowBytes, 0x8000);
  EXPECT_EQ(at.stores, FillStores::streaming);
  EXPECT_EQ(cache.queries, 1);
}

TEST(WideFillPlan, RowsFuseOnlyWithoutAGap) {
  Cache cache{{true, kMiB}};
  for (const int step : {38, 40, 42}) {
    const FillPlan plan = planWideFill<2>({20, 3}, step, false, cache.query());
    EXPECT_EQ(plan.rows, step == 40 ? 1 : 3);
    EXPECT_EQ(plan.rowBytes, step == 40 ? 120 : 40);
  }
}

TEST(WideFillPlan, OddRowsMatterTo16BitPixelsOnly) {
  Cache cache{{true, 0}};
  EXPECT_EQ(planWideFill<2>({0x300001, 1}, 0, true, cache.query()).stores, FillStores::unphased);
  EXPECT_EQ(cache.queries, 0);
  EXPECT_EQ(planWideFill<1>({16, 1}, 0, true, cache.query()).stores, FillStores::plain);
  EXPECT_EQ(planWideFill<4>({16, 1}, 0, true, cache.query()).stores, FillStores::plain);
}

}  // namespace
}  // namespace Zorvan::Primitives
