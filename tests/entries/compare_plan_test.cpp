#include <gtest/gtest.h>

#include <climits>

#include "zorvan/primitives/kernels/logical/compare/compare_plan.h"

namespace Zorvan::Primitives::Compare {
namespace {

TEST(Compare16Plan, OneAddressOrStepOffTheBoundaryIsEnough) {
  const ComparePlace place{4096, 160};
  const Size roi{100, 3};
  EXPECT_EQ(planCompare16(place, place, roi), Stores::aligned);
  for (const unsigned off : {1U, 4U, 8U, 15U}) {
    const ComparePlace shifted{4096 + off, 160}, stepped{4096, 160 + static_cast<int>(off)};
    for (const ComparePlace other : {shifted, stepped}) {
      EXPECT_EQ(planCompare16(other, place, roi), Stores::plain) << off;
      EXPECT_EQ(planCompare16(place, other, roi), Stores::plain) << off;
    }
  }
  EXPECT_EQ(planCompare16({4096 + 16, 48}, {32, 16}, roi), Stores::aligned);
}

TEST(Compare16Plan, StreamsAboveAMebibyteOfBothStepsTimesTheHeight) {
  const ComparePlace src{0, 768}, dst{0, 256};
  EXPECT_EQ(planCompare16(src, dst, {1, 1023}), Stores::aligned);
  EXPECT_EQ(planCompare16(src, dst, {1, 1024}), Stores::aligned);
  EXPECT_EQ(planCompare16(src, dst, {1, 1025}), Stores::streaming);
  EXPECT_EQ(planCompare16({4, 768}, dst, {1, 1025}), Stores::plain);
}

TEST(Compare16Plan, TheProductWrapsAndIsReadAsSigned) {
  const int half = 1 << 30;
  EXPECT_EQ(planCompare16({0, half}, {0, half}, {1, 1}), Stores::aligned);                // -2^31
  EXPECT_EQ(planCompare16({0, half - 16}, {0, half}, {1, 1}), Stores::streaming);         // 2^31 - 16
  EXPECT_EQ(planCompare16({0, half}, {0, half}, {1, 2}), Stores::aligned);                // 0
  EXPECT_EQ(planCompare16({0, half}, {0, half + 16}, {1, 2}), Stores::aligned);           // 32
  EXPECT_EQ(planCompare16({0, half}, {0, half + (1 << 20)}, {1, 2}), Stores::streaming);  // 2^21
  EXPECT_EQ(planCompare16({0, 16}, {0, 16}, {1, INT_MAX}), Stores::aligned);              // -32
  EXPECT_EQ(planCompare16({0, INT_MAX - 15}, {0, INT_MAX - 15}, {1, 1}), Stores::aligned);
}

void expectRows(CompareRows plan, std::int64_t rows, std::int64_t pixels) {
  EXPECT_EQ(plan.rows, rows);
  EXPECT_EQ(plan.pixels, pixels);
}

TEST(Compare32Plan, RowsFuseOnlyWhereNeitherImageHasAGap) {
  expectRows(planCompare32<4>({100, 7}, 400, 100), 1, 700);
  expectRows(planCompare32<4>({100, 7}, 404, 100), 7, 100);
  expectRows(planCompare32<4>({100, 7}, 400, 101), 7, 100);
  expectRows(planCompare32<4>({100, 7}, 100, 100), 7, 100);
  expectRows(planCompare32<1>({100, 7}, 100, 100), 1, 700);
}

TEST(Compare32Plan, TheLimitAppliesToTheBitsOfWidthAndHeight) {
  expectRows(planCompare32<4>({32768, 32768}, 131072, 32768), 1, std::int64_t{1} << 30);
  expectRows(planCompare32<4>({32767, 32767}, 131068, 32767), 1, std::int64_t{32767} * 32767);
  expectRows(planCompare32<4>({32768, 2}, 131072, 32768), 2, 32768);
  expectRows(planCompare32<4>({2, 32769}, 8, 2), 32769, 2);
  expectRows(planCompare32<1>({32768, 1}, 32768, 32768), 1, 32768);
}

TEST(Compare32Plan, AWidthWhoseBytesDoNotFit32BitsDoesNotFuse) {
  expectRows(planCompare32<4>({(1 << 30) + 100, 3}, 400, (1 << 30) + 100), 3, (1 << 30) + 100);
}

}  // namespace
}  // namespace Zorvan::Primitives::Compare
