#include <gtest/gtest.h>

#include <climits>

#include "zorvan/primitives/kernels/arithmetic/accumulate/accumulate_plan.h"

namespace Zorvan::Primitives::Accumulate {
namespace {

using Fours = AccumulateLimits<16, 32>;
using Masked = AccumulateLimits<180, 64>;

TEST(AccumulateRow, SelectingRowsReachTheBoundaryOrHaveNoPeel) {
  EXPECT_EQ(planSelectingRow(0x1000, 20).peel, 0);
  EXPECT_EQ(planSelectingRow(0x1004, 20).peel, 3);
  EXPECT_EQ(planSelectingRow(0x100C, 20).peel, 1);
  EXPECT_EQ(planSelectingRow(0x1004, 3).peel, 3);
  EXPECT_EQ(planSelectingRow(0x1004, 2).peel, 2);
  for (const std::uintptr_t off : {1, 2, 3, 6}) EXPECT_EQ(planSelectingRow(0x1000 + off, 20).peel, 0);
}

TEST(AccumulateRow, WeightingRowsNeedALengthAndAnAddress) {
  for (const int n : {15, 16, 17}) EXPECT_EQ(planWeightingRow<Fours>(0x1000, n).scalar, n < 16);
  using Eights = AccumulateLimits<32, 32>;
  for (const int n : {31, 32, 33}) EXPECT_EQ(planWeightingRow<Eights>(0x1000, n).scalar, n < 32);
  for (const std::uintptr_t off : {1, 2, 3, 4, 5}) {
    EXPECT_EQ(planWeightingRow<Fours>(0x1000 + off, 100).scalar, off != 4) << off;
  }
  EXPECT_EQ(planWeightingRow<Fours>(0x1004, 100).peel, 7);
  EXPECT_EQ(planWeightingRow<Fours>(0x101C, 100).peel, 1);
}

TEST(AccumulateRow, MaskedPeelsReachACacheLineInLongRows) {
  for (const int n : {179, 180, 181}) {
    EXPECT_EQ(planMaskedPeel<Masked>(0x1004, n), n < 180 ? 0 : 15) << n;
    EXPECT_EQ(planMaskedPeel<Masked>(0x1005, n), 0) << n;
    EXPECT_EQ(planMaskedPeel<Masked>(0x1000, n), 0) << n;
  }
}

TEST(AccumulateRow, FullVectorsNeedRowsWithoutPeel) {
  EXPECT_TRUE(areFullVectors<Masked>(0x1005, 13, 32));  // short rows have no peel at any address
  EXPECT_TRUE(areFullVectors<Masked>(0x1004, 640, 160));
  for (const int n : {31, 33, 48}) EXPECT_FALSE(areFullVectors<Masked>(0x1000, 256, n)) << n;
  EXPECT_TRUE(areFullVectors<Masked>(0x1000, 768, 192));
  EXPECT_FALSE(areFullVectors<Masked>(0x1004, 768, 192));
  EXPECT_FALSE(areFullVectors<Masked>(0x1000, 772, 192));
  EXPECT_FALSE(areFullVectors<Masked>(0x1000, 768, 191));
}

TEST(AccumulateSteps, AreTestedInTheEntrysOrder) {
  constexpr int step = -16, multiple = -108;
  EXPECT_EQ(testAccumulateSteps<1>({10, 10, 40}, 10), 0);
  EXPECT_EQ(testAccumulateSteps<1>({9, 10, 41}, 10), step);
  EXPECT_EQ(testAccumulateSteps<1>({10, 9, 41}, 10), step);
  EXPECT_EQ(testAccumulateSteps<1>({11, 11, 41}, 10), multiple);
  EXPECT_EQ(testAccumulateSteps<2>({19, 9, 39}, 10), step);
  EXPECT_EQ(testAccumulateSteps<2>({21, 9, 39}, 10), multiple);
  EXPECT_EQ(testAccumulateSteps<2>({20, 9, 42}, 10), step);
  EXPECT_EQ(testAccumulateSteps<2>({20, 10, 42}, 10), multiple);
  EXPECT_EQ(testAccumulateSteps<4>({41, 10, 39}, 10), step);
  EXPECT_EQ(testAccumulateSteps<4>({41, 9, 40}, 10), step);
  EXPECT_EQ(testAccumulateSteps<4>({41, 10, 40}, 10), multiple);
  EXPECT_EQ(testAccumulateSteps<4>({40, 10, 42}, 10), multiple);
}

TEST(AccumulateSteps, MinimaDoNotWrap) {
  EXPECT_EQ(testAccumulateSteps<4>({4, INT_MAX, 4}, (1 << 30) + 1), -16);
  EXPECT_EQ(testAccumulateSteps<1>({INT_MAX, INT_MAX, INT_MAX - 3}, INT_MAX / 4), 0);
  EXPECT_EQ(testAccumulateSteps<1>({INT_MAX, INT_MAX, INT_MAX - 3}, INT_MAX / 4 + 1), -16);
}

}  // namespace
}  // namespace Zorvan::Primitives::Accumulate
