#include <gtest/gtest.h>

#include "zorvan/primitives/kernels/arithmetic/binary/float_row_plan.h"
#include "zorvan/primitives/kernels/arithmetic/binary/scaled_row_plan.h"
#include "zorvan/primitives/kernels/arithmetic/divide/divide_plan.h"
#include "zorvan/primitives/kernels/common/prefetch_plan.h"

namespace Zorvan::Primitives {
namespace {

constexpr int lowestFactor = -2147483647 - 1, highestFactor = 2147483647;

}  // namespace
}  // namespace Zorvan::Primitives

namespace Zorvan::Primitives::Arithmetic {
namespace {

/// An operation on a pixel type and the highest and lowest scale factors with pixels to compute.
struct Limits {
  Operation operation;
  int pixelBytes;
  bool isSigned;
  int lastScaled, firstScaled;
};

class ScalingLimitsOf : public testing::TestWithParam<Limits> {};

TEST_P(ScalingLimitsOf, SelectTheScaling) {
  const Limits& p = GetParam();
  const auto plan = [&p](int f) {
    return planScaling(scalingLimits(p.operation, p.pixelBytes, p.isSigned), f);
  };
  EXPECT_EQ(plan(0), Scaling::saturated);
  EXPECT_EQ(plan(1), Scaling::halved);
  EXPECT_EQ(plan(2), Scaling::rounded);
  EXPECT_EQ(plan(-1), Scaling::enlarged);
  EXPECT_NE(plan(p.lastScaled), Scaling::zero);
  EXPECT_EQ(plan(p.lastScaled + 1), Scaling::zero);
  EXPECT_EQ(plan(highestFactor), Scaling::zero);
  EXPECT_EQ(plan(p.firstScaled), Scaling::enlarged);
  EXPECT_EQ(plan(p.firstScaled - 1), Scaling::signOnly);
  EXPECT_EQ(plan(lowestFactor), Scaling::signOnly);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, ScalingLimitsOf,
    testing::Values(Limits{Operation::sum, 1, false, 9, -7}, Limits{Operation::difference, 1, false, 8, -7},
                    Limits{Operation::product, 1, false, 16, -7}, Limits{Operation::sum, 2, false, 17, -15},
                    Limits{Operation::difference, 2, false, 16, -15},
                    Limits{Operation::product, 2, false, 32, -15}, Limits{Operation::sum, 2, true, 16, -15},
                    Limits{Operation::difference, 2, true, 16, -15},
                    Limits{Operation::product, 2, true, 30, -14}));

TEST(ScalingPlan, RoundsLargeProductsOf16BitsIn64Bits) {
  const ScalingLimits limits = scalingLimits(Operation::product, 2, false);
  EXPECT_EQ(planScaling(limits, 16), Scaling::rounded);
  EXPECT_EQ(planScaling(limits, 17), Scaling::longRounded);
  EXPECT_EQ(planScaling(limits, 32), Scaling::longRounded);
  EXPECT_EQ(planScaling(scalingLimits(Operation::product, 2, true), 30), Scaling::rounded);
}

void expectRow(ScaledRow16Plan plan, int vectorsFromPixels, int iterationBytes) {
  EXPECT_EQ(plan.vectorsFromPixels, vectorsFromPixels);
  EXPECT_EQ(plan.iterationBytes, iterationBytes);
}

TEST(ScaledRow16Plan, BytesRunInVectorsFrom31Or47Pixels) {
  for (const Operation operation : {Operation::sum, Operation::difference}) {
    expectRow(planScaledRow16(operation, 1, Scaling::saturated), 47, 32);
    expectRow(planScaledRow16(operation, 1, Scaling::halved), 31, 16);
    expectRow(planScaledRow16(operation, 1, Scaling::rounded), 31, 16);
    expectRow(planScaledRow16(operation, 1, Scaling::signOnly), 47, 16);
  }
  expectRow(planScaledRow16(Operation::sum, 1, Scaling::enlarged), 31, 16);
  expectRow(planScaledRow16(Operation::difference, 1, Scaling::enlarged), 47, 16);
  for (const Scaling scaling : {Scaling::saturated, Scaling::halved, Scaling::rounded, Scaling::enlarged}) {
    expectRow(planScaledRow16(Operation::product, 1, scaling), 31, 16);
  }
  expectRow(planScaledRow16(Operation::product, 1, Scaling::signOnly), 47, 16);
}

TEST(ScaledRow16Plan, WordsRunInVectorsFrom15Or23Pixels) {
  for (const Operation operation : {Operation::sum, Operation::difference, Operation::product}) {
    expectRow(planScaledRow16(operation, 2, Scaling::saturated), 23, 32);
    for (const Scaling scaling : {Scaling::halved, Scaling::rounded, Scaling::enlarged}) {
      expectRow(planScaledRow16(operation, 2, scaling), 15, 16);
    }
  }
  expectRow(planScaledRow16(Operation::sum, 2, Scaling::signOnly), 23, 32);
  expectRow(planScaledRow16(Operation::product, 2, Scaling::signOnly), 15, 16);
}

TEST(ScaledRow16Plan, OnlyUnscaledSumsOfBytesHaveATailInVectors) {
  EXPECT_TRUE(planScaledRow16(Operation::sum, 1, Scaling::saturated).tailInVectors);
  EXPECT_TRUE(planScaledRow16(Operation::difference, 1, Scaling::saturated).tailInVectors);
  EXPECT_FALSE(planScaledRow16(Operation::sum, 1, Scaling::halved).tailInVectors);
  EXPECT_FALSE(planScaledRow16(Operation::product, 1, Scaling::saturated).tailInVectors);
  EXPECT_FALSE(planScaledRow16(Operation::sum, 2, Scaling::saturated).tailInVectors);
}

TEST(ScaledRow32Plan, TakesTwoVectorsWithoutScaling) {
  EXPECT_EQ(planScaledRow32(1, Scaling::saturated), 64);
  EXPECT_EQ(planScaledRow32(1, Scaling::signOnly), 32);
  EXPECT_EQ(planScaledRow32(1, Scaling::rounded), 32);
  EXPECT_EQ(planScaledRow32(2, Scaling::saturated), 64);
  EXPECT_EQ(planScaledRow32(2, Scaling::signOnly), 64);
  EXPECT_EQ(planScaledRow32(2, Scaling::enlarged), 32);
}

TEST(FloatRow16Plan, RunsInVectorsFrom11PixelsAtAnyAddress) {
  EXPECT_EQ(planFloatRow16(64, 10, true), pixelByPixel);
  EXPECT_EQ(planFloatRow16(64, 11, true), (FloatRowPlan{true, true, 0, false}));
  EXPECT_EQ(planFloatRow16(68, 11, true), (FloatRowPlan{true, true, 3, false}));
  EXPECT_EQ(planFloatRow16(66, 11, true), (FloatRowPlan{true, false, 0, false}));
}

TEST(FloatRow16Plan, StreamsAbove10922Iterations) {
  constexpr int limit = 8 * 10922;
  EXPECT_FALSE(planFloatRow16(64, limit + 7, true).streaming);
  EXPECT_TRUE(planFloatRow16(64, limit + 8, true).streaming);
  EXPECT_FALSE(planFloatRow16(76, limit + 8, true).streaming);  // the peel does not count
  EXPECT_TRUE(planFloatRow16(76, limit + 9, true).streaming);
  EXPECT_FALSE(planFloatRow16(64, limit + 8, false).streaming);
  EXPECT_FALSE(planFloatRow16(65, 2 * limit, true).streaming);
}

TEST(AlignedFloatRow16Plan, RunsInVectorsFrom8PixelsWhereItReachesABoundary) {
  EXPECT_EQ(planAlignedFloatRow16(64, 7), pixelByPixel);
  EXPECT_EQ(planAlignedFloatRow16(64, 8), (FloatRowPlan{true, true, 0, false}));
  EXPECT_EQ(planAlignedFloatRow16(72, 8), (FloatRowPlan{true, true, 2, false}));
  EXPECT_EQ(planAlignedFloatRow16(65, 100), pixelByPixel);
}

TEST(FloatRow32Plan, AlignsFrom29Pixels) {
  EXPECT_EQ(planFloatRow32(68, 15, 29), pixelByPixel);
  EXPECT_EQ(planFloatRow32(68, 16, 29), (FloatRowPlan{true, false, 0, false}));
  EXPECT_EQ(planFloatRow32(68, 28, 29), (FloatRowPlan{true, false, 0, false}));
  EXPECT_EQ(planFloatRow32(68, 29, 29), (FloatRowPlan{true, true, 7, false}));
  EXPECT_EQ(planFloatRow32(66, 28, 29), (FloatRowPlan{true, false, 0, false}));
  EXPECT_EQ(planFloatRow32(66, 29, 29), pixelByPixel);
}

TEST(FloatRow32Plan, OfAConstantAlignsEveryRow) {
  EXPECT_EQ(planFloatRow32(68, 15, 16), pixelByPixel);
  EXPECT_EQ(planFloatRow32(68, 16, 16), (FloatRowPlan{true, true, 7, false}));
  EXPECT_EQ(planFloatRow32(66, 16, 16), pixelByPixel);
}

TEST(FloatRow64Plan, IsForSmallImages) {
  EXPECT_TRUE(prefersFloats64(0x10000));
  EXPECT_FALSE(prefersFloats64(0x10001));
}

bool noPeelOrTailAt(std::uintptr_t dst, int dstStep, std::int64_t n) {
  return needNoPeelOrTail(planFloatRow32(dst, n, 29), dstStep, n);
}

TEST(FloatRow32Plan, IsOneForAllRowsWithoutPeelAndTail) {
  EXPECT_TRUE(noPeelOrTailAt(64, 256, 64));
  EXPECT_TRUE(noPeelOrTailAt(32, -32, 32));
  EXPECT_TRUE(noPeelOrTailAt(64, 0, 64));
  EXPECT_FALSE(noPeelOrTailAt(64, 252, 64));  // the second row has a peel
  EXPECT_FALSE(noPeelOrTailAt(68, 256, 64));
  EXPECT_FALSE(noPeelOrTailAt(66, 256, 64));
  EXPECT_FALSE(noPeelOrTailAt(64, 256, 63));
  EXPECT_FALSE(noPeelOrTailAt(64, 256, 65));
  EXPECT_FALSE(noPeelOrTailAt(64, 256, 0));
  EXPECT_TRUE(noPeelOrTailAt(67, 65, 16));  // below 29 pixels no row has a peel
  EXPECT_FALSE(noPeelOrTailAt(67, 65, 17));
}

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic

namespace Zorvan::Primitives::Division {
namespace {

template <class T>
void expectQuotientRange(int lowest, int highest) {
  EXPECT_EQ(planQuotients<T>(0), Quotients::plain);
  EXPECT_EQ(planQuotients<T>(1), Quotients::scaledDivisor);
  EXPECT_EQ(planQuotients<T>(highest), Quotients::scaledDivisor);
  EXPECT_EQ(planQuotients<T>(highest + 1), Quotients::zero);
  EXPECT_EQ(planQuotients<T>(highestFactor), Quotients::zero);
  EXPECT_EQ(planQuotients<T>(-1), Quotients::scaledNumerator);
  EXPECT_EQ(planQuotients<T>(lowest), Quotients::scaledNumerator);
  EXPECT_EQ(planQuotients<T>(lowest - 1), Quotients::limits);
  EXPECT_EQ(planQuotients<T>(lowestFactor), Quotients::limits);
}

TEST(DividePlan, DividesInARangeOfScaleFactors) {
  expectQuotientRange<u8>(-15, 8);
  expectQuotientRange<u16>(-31, 16);
  expectQuotientRange<s16>(-30, 15);
}

TEST(DividePlan, DivisorForZeroSaturatesFromOneOn) {
  for (int f = -15; f <= 8; ++f) {
    EXPECT_EQ(powerOfTwo(f < 0 ? -f : 0) / divisorForZero<u8>(f), 0x1p15F);
    EXPECT_EQ(powerOfTwo(f < 0 ? -f : 0) / divisorForZero<u16>(f), 0x1p16F);
  }
  EXPECT_EQ(divisorForZero<u8>(0), 0x1p-15F);
  EXPECT_EQ(divisorForZero<u8>(-3), 0x1p-12F);
}

TEST(DividePlan, IntegerRowsBeginOnAn8ByteBoundary) {
  EXPECT_EQ(peelOfIntegers(64, 20, 1), 0);
  EXPECT_EQ(peelOfIntegers(65, 20, 1), 7);
  EXPECT_EQ(peelOfIntegers(65, 5, 1), 5);
  EXPECT_EQ(peelOfIntegers(66, 20, 2), 3);
  EXPECT_EQ(peelOfIntegers(65, 20, 2), 0);
}

TEST(DividePlan, FloatRowsBeginOnABoundaryWhereAllAddressesAreMultiplesOf4) {
  EXPECT_EQ(peelOfFloats(64, 64, 68, 20, 16), 3);
  EXPECT_EQ(peelOfFloats(64, 64, 68, 2, 16), 2);
  EXPECT_EQ(peelOfFloats(64, 64, 68, 20, 64), 15);
  EXPECT_EQ(peelOfFloats(65, 64, 68, 20, 16), 0);
  EXPECT_EQ(peelOfFloats(64, 66, 68, 20, 16), 0);
  EXPECT_EQ(peelOfFloats(64, 64, 67, 20, 16), 0);
}

TEST(DividePlan, FloatRowsWithoutPeelAndTailBeginOnABoundary) {
  EXPECT_TRUE(needNoPeelOrTail(128, 256, 64, 64, 64));
  EXPECT_TRUE(needNoPeelOrTail(64, -64, 128, 64, 64));
  EXPECT_FALSE(needNoPeelOrTail(96, 256, 64, 64, 64));
  EXPECT_FALSE(needNoPeelOrTail(65, 256, 64, 64, 64));
  EXPECT_FALSE(needNoPeelOrTail(128, 288, 64, 64, 64));  // the second row has a peel
  for (const int n : {63, 65, 80}) EXPECT_FALSE(needNoPeelOrTail(128, 512, n, 64, 64)) << n;
  EXPECT_TRUE(needNoPeelOrTail(80, 48, 96, 16, 32));
  EXPECT_FALSE(needNoPeelOrTail(88, 48, 96, 16, 32));
  EXPECT_FALSE(needNoPeelOrTail(80, 56, 96, 16, 32));
  EXPECT_FALSE(needNoPeelOrTail(80, 48, 80, 16, 32));
}

}  // namespace
}  // namespace Zorvan::Primitives::Division

namespace Zorvan::Primitives {
namespace {

TEST(PrefetchPlan, PrefetchesImagesInPlaceThatTheLastCacheHolds) {
  EXPECT_FALSE(prefetchesInPlace(true, (1 << 20) - 1));
  EXPECT_TRUE(prefetchesInPlace(true, 1 << 20));
  EXPECT_TRUE(prefetchesInPlace(true, 4 << 20));
  EXPECT_FALSE(prefetchesInPlace(true, (4 << 20) + 1));
  EXPECT_FALSE(prefetchesInPlace(false, 1 << 20));
}

}  // namespace
}  // namespace Zorvan::Primitives
