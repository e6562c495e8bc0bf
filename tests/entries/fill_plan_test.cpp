#include <gtest/gtest.h>

#include "tests/support/CacheQueries.h"
#include "zorvan/primitives/kernels/initializer/fill/fill_plan.h"

namespace Zorvan::Primitives::Fill {
namespace {

using Answer = Test::CacheAnswer;
using Cache = Test::CacheQueries;

constexpr int mebibyte = 1 << 20;

TEST(Fill16Plan, RowsFuseOnlyWithoutAGap) {
  Cache cache{{true, mebibyte}};
  for (const int step : {39, 40, 41}) {
    const FillPlan plan = planFill16<4>({10, 3}, step, cache.query());
    EXPECT_EQ(plan.rows, step == 40 ? 1 : 3);
    EXPECT_EQ(plan.rowBytes, step == 40 ? 120 : 40);
  }
  EXPECT_EQ(cache.queries, 0);
}

TEST(Fill16Plan, QueriesTheCacheAboveHalfAMebibyte) {
  for (const int width : {0x8000, 0x8000 - 1, 0x8000 + 1}) {
    Cache cache{{true, 1}};
    const FillPlan plan = planFill16<1>({width, 16}, width, cache.query());
    EXPECT_EQ(cache.queries, width > 0x8000 ? 1 : 0);
    EXPECT_EQ(plan.stores, width > 0x8000 ? FillStores::streaming : FillStores::plain);
  }
}

TEST(Fill16Plan, StreamsFromTheCacheSizeOn) {
  for (const int bytes : {2 * mebibyte - 4, 2 * mebibyte, 2 * mebibyte + 4}) {
    Cache cache{{true, 2 * mebibyte}};
    const FillPlan plan = planFill16<4>({bytes / 4, 1}, bytes, cache.query());
    EXPECT_EQ(plan.stores, bytes >= 2 * mebibyte ? FillStores::streaming : FillStores::plain);
  }
}

TEST(Fill16Plan, SixteenBitFillsQueryAndNeverStream) {
  Cache cache{{true, 1}};
  EXPECT_EQ(planFill16<2>({1 << 20, 2}, 0, cache.query()).stores, FillStores::plain);
  EXPECT_EQ(cache.queries, 1);
}

TEST(Fill16Plan, AnUnknownCacheKeepsPlainStores) {
  Cache cache{{false, -1}};
  EXPECT_EQ(planFill16<1>({1 << 20, 2}, 0, cache.query()).stores, FillStores::plain);
  EXPECT_EQ(cache.queries, 1);
}

TEST(Fill16Plan, TotalsBeyond32BitsAreWhole) {
  Cache cache{{false, -1}};
  const FillPlan plan = planFill16<4>({1 << 20, 1 << 12}, 1 << 22, cache.query());
  EXPECT_EQ(plan.rows, 1);
  EXPECT_EQ(plan.rowBytes, std::int64_t{1} << 34);
}

template <int pixelBytes>
void expectLimits32() {
  const int limit = 0x600000 / pixelBytes;
  for (const int pixels : {limit - 1, limit, limit + 1}) {
    Cache cache{{true, 1}};
    const FillPlan plan = planFill32<pixelBytes>({pixels, 1}, 0, false, cache.query());
    EXPECT_EQ(cache.queries, pixels > limit ? 1 : 0) << pixels;
    EXPECT_EQ(plan.stores, pixels > limit ? FillStores::streaming : FillStores::prefetched) << pixels;
  }
  const int cachePixels = 2 * limit;
  for (const int pixels : {cachePixels - 1, cachePixels, cachePixels + 1}) {
    Cache cache{{true, cachePixels * pixelBytes + pixelBytes - 1}};  // the odd bytes are shifted out
    const FillPlan plan = planFill32<pixelBytes>({pixels, 1}, 0, false, cache.query());
    EXPECT_EQ(plan.stores, pixels >= cachePixels ? FillStores::streaming : FillStores::prefetched) << pixels;
  }
}

TEST(Fill32Plan, LimitsCountPixels) {
  expectLimits32<1>();
  expectLimits32<2>();
  expectLimits32<4>();
}

TEST(Fill32Plan, PrefetchesAboveAMebibyte) {
  Cache cache{{true, 1}};
  for (const int pixels : {mebibyte / 4 - 1, mebibyte / 4, mebibyte / 4 + 1}) {
    EXPECT_EQ(planFill32<4>({pixels, 1}, 0, false, cache.query()).stores,
              pixels > mebibyte / 4 ? FillStores::prefetched : FillStores::plain);
  }
  EXPECT_EQ(cache.queries, 0);
}

TEST(Fill32Plan, AnUnknownCacheKeepsFromStreaming) {
  Cache cache{{false, 0}};
  EXPECT_EQ(planFill32<1>({0x600000, 1}, 0, false, cache.query()).stores, FillStores::prefetched);
  EXPECT_EQ(planFill32<1>({0x600001, 1}, 0, false, cache.query()).stores, FillStores::plain);
}

TEST(Fill32Plan, ProductsOf32BitsStreamUnfusedWithoutAQuery) {
  Cache cache{{true, 1 << 30}};
  const FillPlan below = planFill32<1>({0x7FFF, 0xFFFF}, 0x7FFF, false, cache.query());  // 15 + 16 bits
  EXPECT_EQ(below.rows, 1);
  EXPECT_EQ(cache.queries, 1);
  const FillPlan at = planFill32<1>({0x8000, 0xFFFF}, 0x8000, false, cache.query());  // 16 + 16 bits
  EXPECT_EQ(at.rows, 0xFFFF);
  EXPECT_EQ(at.rowBytes, 0x8000);
  EXPECT_EQ(at.stores, FillStores::streaming);
  EXPECT_EQ(cache.queries, 1);
}

TEST(Fill32Plan, RowsFuseOnlyWithoutAGap) {
  Cache cache{{true, mebibyte}};
  for (const int step : {38, 40, 42}) {
    const FillPlan plan = planFill32<2>({20, 3}, step, false, cache.query());
    EXPECT_EQ(plan.rows, step == 40 ? 1 : 3);
    EXPECT_EQ(plan.rowBytes, step == 40 ? 120 : 40);
  }
}

TEST(Fill32Plan, OddRowsMatterTo16BitPixelsOnly) {
  Cache cache{{true, 0}};
  EXPECT_EQ(planFill32<2>({0x300001, 1}, 0, true, cache.query()).stores, FillStores::anyAddress);
  EXPECT_EQ(cache.queries, 0);
  EXPECT_EQ(planFill32<1>({16, 1}, 0, true, cache.query()).stores, FillStores::plain);
  EXPECT_EQ(planFill32<4>({16, 1}, 0, true, cache.query()).stores, FillStores::plain);
}

}  // namespace
}  // namespace Zorvan::Primitives::Fill
