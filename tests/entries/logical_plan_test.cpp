#include <gtest/gtest.h>

#include <climits>

#include "tests/support/CacheQueries.h"
#include "zorvan/primitives/kernels/logical/bitwise/logical_plan.h"

namespace Zorvan::Primitives::Bitwise {
namespace {

using Answer = Test::CacheAnswer;
using Cache = Test::CacheQueries;

constexpr int mebibyte = 1 << 20;

TEST(XorConstantPlan, RowsBelow256BytesTakePlainStoresWithoutAQuery) {
  for (const int width : {1, 255}) {
    Cache cache{{true, 0}};
    EXPECT_EQ(planXorConstant(false, {width, 1 << 20}, cache.query()), Stores::plain);
    EXPECT_EQ(planXorConstant(true, {width, 1 << 20}, cache.query()), Stores::plain);
    EXPECT_EQ(cache.queries, 0);
  }
}

TEST(XorConstantPlan, InPlaceNeverStreamsAndNeverQueries) {
  Cache cache{{true, 0}};
  EXPECT_EQ(planXorConstant(true, {256, 1 << 20}, cache.query()), Stores::aligned);
  EXPECT_EQ(cache.queries, 0);
}

TEST(XorConstantPlan, StreamsFromHalfTheCacheOn) {
  for (const int width : {511, 512, 513}) {
    Cache cache{{true, mebibyte}};
    EXPECT_EQ(planXorConstant(false, {width, 1024}, cache.query()),
              width >= 512 ? Stores::streaming : Stores::aligned)
        << width;
    EXPECT_EQ(cache.queries, 1);
  }
}

TEST(XorConstantPlan, AnAnswerOfZeroOrMinusOneAlwaysStreams) {
  for (const bool known : {true, false}) {
    for (const int bytes : {0, -1}) {
      Cache cache{{known, bytes}};
      EXPECT_EQ(planXorConstant(false, {256, 1}, cache.query()), Stores::streaming);
    }
  }
}

TEST(XorConstantPlan, AProductThatWrapsIsReadAsSigned) {
  struct {
    Size roi;
    Stores stores;
  } const cases[] = {
      {{32768, 32767}, Stores::streaming},        // 2 * w * h below 2^31
      {{32768, 32768}, Stores::aligned},          // 2^31: negative
      {{65536, 32767}, Stores::aligned},          // below 2^32: negative
      {{65536, 32768}, Stores::aligned},          // 2^32: 0, below the cache
      {{INT_MAX, 1}, Stores::aligned},            // -2
      {{65536, 32768 + 4096}, Stores::streaming}  // 2^32 and some: positive again
  };
  for (const auto& c : cases) {
    Cache cache{{true, mebibyte}};
    EXPECT_EQ(planXorConstant(false, c.roi, cache.query()), c.stores)
        << c.roi.width << " by " << c.roi.height;
  }
  Cache unknown{{false, -1}};
  EXPECT_EQ(planXorConstant(false, {INT_MAX, 1}, unknown.query()), Stores::aligned);
  EXPECT_EQ(planXorConstant(false, {65536, 32768}, unknown.query()), Stores::streaming);
}

void expectRows(CombineRows plan, std::int64_t rows, std::int64_t rowBytes) {
  EXPECT_EQ(plan.rows, rows);
  EXPECT_EQ(plan.rowBytes, rowBytes);
}

TEST(CombinePlan, RowsFuseOnlyWhereNoImageHasAGap) {
  expectRows(planCombine({100, 7}, 100, 100, 100), 1, 700);
  expectRows(planCombine({100, 7}, 101, 100, 100), 7, 100);
  expectRows(planCombine({100, 7}, 100, 101, 100), 7, 100);
  expectRows(planCombine({100, 7}, 100, 100, 101), 7, 100);
  expectRows(planCombine({100, 7}, 99, 100, 100), 7, 100);
}

TEST(CombinePlan, TheLimitAppliesToTheBitsOfWidthAndHeight) {
  expectRows(planCombine({32768, 32768}, 32768, 32768, 32768), 1, std::int64_t{1} << 30);
  expectRows(planCombine({32767, 32767}, 32767, 32767, 32767), 1, std::int64_t{32767} * 32767);
  expectRows(planCombine({32768, 1}, 32768, 32768, 32768), 1, 32768);  // not fused, and one row all the same
  expectRows(planCombine({32768, 2}, 32768, 32768, 32768), 2, 32768);
  expectRows(planCombine({2, 32768}, 2, 2, 2), 32768, 2);
  expectRows(planCombine({32769, 2}, 32769, 32769, 32769), 2, 32769);
}

TEST(CombinePlan, OneRowIsOneRow) { expectRows(planCombine({INT_MAX, 1}, 5, 6, 7), 1, INT_MAX); }

}  // namespace
}  // namespace Zorvan::Primitives::Bitwise
