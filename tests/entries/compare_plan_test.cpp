#include <gtest/gtest.h>

#include <climits>

#include "zorvan/primitives/kernels/logical/compare/compare_plan.h"

namespace Zorvan::Primitives::Compare {
namespace {

TEST(RowComparePlan, OneFigureOffTheBoundaryIsEnough) {
  const ComparePlace place{4096, 160};
  const Size roi{100, 3};
  EXPECT_EQ(planRowCompare(place, place, roi), CompareAccess::aligned);
  for (const unsigned off : {1U, 4U, 8U, 15U}) {
    const ComparePlace shifted{4096 + off, 160}, stepped{4096, 160 + static_cast<int>(off)};
    for (const ComparePlace other : {shifted, stepped}) {
      EXPECT_EQ(planRowCompare(other, place, roi), CompareAccess::unaligned) << off;
      EXPECT_EQ(planRowCompare(place, other, roi), CompareAccess::unaligned) << off;
    }
  }
  EXPECT_EQ(planRowCompare({4096 + 16, 48}, {32, 16}, roi), CompareAccess::aligned);
}

TEST(RowComparePlan, StreamsAboveAMebibyteOfBothStepsTimesTheHeight) {
  const ComparePlace src{0, 768}, dst{0, 256};
  EXPECT_EQ(planRowCompare(src, dst, {1, 1023}), CompareAccess::aligned);
  EXPECT_EQ(planRowCompare(src, dst, {1, 1024}), CompareAccess::aligned);
  EXPECT_EQ(planRowCompare(src, dst, {1, 1025}), CompareAccess::streaming);
  EXPECT_EQ(planRowCompare({4, 768}, dst, {1, 1025}), CompareAccess::unaligned);
}

TEST(RowComparePlan, TheProductWrapsAndIsReadAsSigned) {
  const int half = 1 << 30;
  EXPECT_EQ(planRowCompare({0, half}, {0, half}, {1, 1}), CompareAccess::aligned);                // -2^31
  EXPECT_EQ(planRowCompare({0, half - 16}, {0, half}, {1, 1}), CompareAccess::streaming);         // 2^31 - 16
  EXPECT_EQ(planRowCompare({0, half}, {0, half}, {1, 2}), CompareAccess::aligned);                // 0
  EXPECT_EQ(planRowCompare({0, half}, {0, half + 16}, {1, 2}), CompareAccess::aligned);           // 32
  EXPECT_EQ(planRowCompare({0, half}, {0, half + (1 << 20)}, {1, 2}), CompareAccess::streaming);  // 2^21
  EXPECT_EQ(planRowCompare({0, 16}, {0, 16}, {1, INT_MAX}), CompareAccess::aligned);              // -32
  EXPECT_EQ(planRowCompare({0, INT_MAX - 15}, {0, INT_MAX - 15}, {1, 1}), CompareAccess::aligned);
}

void expectRows(CompareRows plan, std::int64_t rows, std::int64_t pixels) {
  EXPECT_EQ(plan.rows, rows);
  EXPECT_EQ(plan.pixels, pixels);
}

TEST(WideComparePlan, RowsFuseOnlyWhereNeitherImageHasAGap) {
  expectRows(planWideCompare<4>({100, 7}, 400, 100), 1, 700);
  expectRows(planWideCompare<4>({100, 7}, 404, 100), 7, 100);
  expectRows(planWideCompare<4>({100, 7}, 400, 101), 7, 100);
  expectRows(planWideCompare<4>({100, 7}, 100, 100), 7, 100);
  expectRows(planWideCompare<1>({100, 7}, 100, 100), 1, 700);
}

TEST(WideComparePlan, WidthAndHeightAreLaidOverEachOtherForTheLimit) {
  expectRows(planWideCompare<4>({32768, 32768}, 131072, 32768), 1, std::int64_t{1} << 30);
  expectRows(planWideCompare<4>({32767, 32767}, 131068, 32767), 1, std::int64_t{32767} * 32767);
  expectRows(planWideCompare<4>({32768, 2}, 131072, 32768), 2, 32768);
  expectRows(planWideCompare<4>({2, 32769}, 8, 2), 32769, 2);
  expectRows(planWideCompare<1>({32768, 1}, 32768, 32768), 1, 32768);
}

TEST(WideComparePlan, AWidthWhoseBytesDoNotFit32BitsIsNoGaplessOne) {
  expectRows(planWideCompare<4>({(1 << 30) + 100, 3}, 400, (1 << 30) + 100), 3, (1 << 30) + 100);
}

}  // namespace
}  // namespace Zorvan::Primitives::Compare
