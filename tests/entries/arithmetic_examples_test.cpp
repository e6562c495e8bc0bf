// Results that can be checked by hand, in every variant.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/EntryTests.h"
#include "tests/support/Quotients.h"
#include "tests/support/VariantTests.h"
#include "zorvan/primitives/frame/Table.h"

namespace Zorvan::Test {
namespace {

using Primitives::Row;
using Primitives::table;

constexpr float infinity = std::numeric_limits<float>::infinity();

/// A result and its status.
template <class T>
struct Outcome {
  T pixel;
  int status;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// The outcome for two single pixels, the same in all variants.
template <class T, class... Factor>
Outcome<T> of(const Row<int(const T*, int, const T*, int, T*, int, Size, Factor...)>& row, T first, T second,
              Factor... f) {
  Outcome<T> common{};
  for (int variant = 0; variant <= highestVariant(); ++variant) {
    Outcome<T> outcome{T{77}, 0};
    outcome.status = row.routine[1 + variant](&first, sizeof(T), &second, sizeof(T), &outcome.pixel,
                                              sizeof(T), {1, 1}, f...);
    EXPECT_TRUE(variant == 0 || samePixel(common.pixel, outcome.pixel)) << variant;
    EXPECT_TRUE(variant == 0 || common.status == outcome.status) << variant;
    common = outcome;
  }
  return common;
}

template <class T>
void expectPixel(const Row<int(const T*, int, const T*, int, T*, int, Size, int)>& row, int first, int second,
                 int f, int pixel, int status = 0) {
  const auto outcome = of(row, static_cast<T>(first), static_cast<T>(second), f);
  EXPECT_EQ(outcome.pixel, pixel) << first << " and " << second << " with " << f;
  EXPECT_EQ(outcome.status, status) << first << " and " << second << " with " << f;
}

TEST(ArithmeticExamples, Sums) {
  const auto& bytes = table.ippiAdd_8u_C1RSfs;
  expectPixel(bytes, 200, 100, 0, 255);
  expectPixel(bytes, 200, 100, 1, 150);
  expectPixel(bytes, 1, 0, 1, 0);
  expectPixel(bytes, 1, 2, 1, 2);
  expectPixel(bytes, 2, 3, 1, 2);
  expectPixel(bytes, 255, 255, 9, 1);
  expectPixel(bytes, 255, 255, 10, 0);
  expectPixel(bytes, 0, 1, -8, 255);
  const auto& words = table.ippiAdd_16s_C1RSfs;
  expectPixel(words, -32768, -32768, 0, -32768);
  expectPixel(words, -32768, -32768, 1, -32768);
  expectPixel(words, -1, 0, 1, 0);
  expectPixel(words, -1, -2, 1, -2);
  expectPixel(words, -1, 0, -16, -32768);
}

TEST(ArithmeticExamples, UnsignedDifferencesAreClampedBeforeTheyAreScaled) {
  for (const int f : {0, 1, 2, 8, -1, -7, -8}) expectPixel(table.ippiSub_8u_C1RSfs, 5, 3, f, 0);
  expectPixel(table.ippiSub_8u_C1RSfs, 3, 5, 0, 2);
  expectPixel(table.ippiSub_16u_C1RSfs, 5, 3, -3, 0);
  expectPixel(table.ippiSub_16s_C1RSfs, 5, 3, -1, -4);
}

TEST(ArithmeticExamples, Products) {
  expectPixel(table.ippiMul_8u_C1RSfs, 16, 16, 0, 255);
  expectPixel(table.ippiMul_8u_C1RSfs, 16, 16, 8, 1);
  expectPixel(table.ippiMul_8u_C1RSfs, 255, 255, 16, 1);
  expectPixel(table.ippiMul_8u_C1RSfs, 255, 255, 17, 0);
  expectPixel(table.ippiMul_16s_C1RSfs, -32768, -32768, 0, 32767);
  expectPixel(table.ippiMul_16s_C1RSfs, -32768, -32768, 30, 1);
  expectPixel(table.ippiMul_16u_C1RSfs, 32768, 65535, 31, 1);
  expectPixel(table.ippiMul_16u_C1RSfs, 65535, 65535, 32, 1);
  expectPixel(table.ippiMul_16u_C1RSfs, 32768, 65535, 32, 0);  // 0x7FFF8000, below the half
  expectPixel(table.ippiMul_16u_C1RSfs, 65535, 65535, 33, 0);
}

TEST(ArithmeticExamples, Quotients) {
  const auto& bytes = table.ippiDiv_8u_C1RSfs;
  expectPixel(bytes, 0, 7, 0, 255, 2);
  expectPixel(bytes, 0, 0, 0, 0, 2);
  expectPixel(bytes, 4, 7, 0, 2);
  expectPixel(bytes, 1, 255, 9, 0);
  expectPixel(bytes, 0, 3, 9, 255, 2);
  expectPixel(bytes, 255, 1, -16, 255);
  expectPixel(bytes, 0, 0, -16, 0, 2);
  const auto& words = table.ippiDiv_16s_C1RSfs;
  expectPixel(words, 0, -7, 0, -32768, 2);
  expectPixel(words, -3, 7, -31, -32768);
  expectPixel(words, -3, -7, -31, 32767);
  expectPixel(words, -1, -32768, 0, 32767);
  expectPixel(table.ippiDiv_16u_C1RSfs, 1, 65535, -31, 65535);
}

TEST(ArithmeticExamples, AScalarQuotientRoundsTiesToEven) {
  for (int variant = 0; variant <= highestVariant() && variant < 5; ++variant) {
    const u8 divisor = 2, numerator = 7;
    u8 quotient = 0;
    EXPECT_EQ(
        table.ippiDiv_8u_C1RSfs.routine[1 + variant](&divisor, 1, &numerator, 1, &quotient, 1, {1, 1}, 0), 0);
    EXPECT_EQ(quotient, 4);
  }
}

TEST(ArithmeticExamples, FloatsOverZero) {
  const auto& row = table.ippiDiv_32f_C1R;
  EXPECT_EQ(of(row, -0.0F, 1.0F), (Outcome<float>{infinity, 2}));
  EXPECT_EQ(of(row, -0.0F, -1.0F), (Outcome<float>{-infinity, 2}));
  EXPECT_EQ(of(row, infinity, 1.0F), (Outcome<float>{0.0F, 0}));
  const auto nothing = of(row, 0.0F, 0.0F);
  EXPECT_TRUE(std::isnan(nothing.pixel));
  EXPECT_EQ(nothing.status, 2);
  const auto quietNaN = of(row, std::numeric_limits<float>::quiet_NaN(), 1.0F);
  EXPECT_TRUE(std::isnan(quietNaN.pixel));
  EXPECT_EQ(quietNaN.status, 0);
  const auto sum = of(table.ippiAdd_32f_C1R, infinity, -infinity);
  EXPECT_TRUE(std::isnan(sum.pixel));
  EXPECT_EQ(sum.status, 0);
}

TEST(ArithmeticExamples, AZeroDivisorIsReportedFromAnyRow) {
  for (int variant = 0; variant <= highestVariant(); ++variant) {
    for (int zeroRow = 0; zeroRow < 3; ++zeroRow) {
      for (const int column : {0, 5, 40, 64, 99}) {
        u8 divisors[300], numerators[300], quotients[300] = {};
        for (int i = 0; i < 300; ++i) {
          divisors[i] = i == 100 * zeroRow + column ? 0 : 5;
          numerators[i] = 10;
        }
        EXPECT_EQ(table.ippiDiv_8u_C1RSfs.routine[1 + variant](divisors, 100, numerators, 100, quotients, 100,
                                                               {100, 3}, 0),
                  2);
        for (int i = 0; i < 300; ++i) EXPECT_EQ(quotients[i], divisors[i] == 0 ? 255 : 2) << i;
      }
    }
  }
}

TEST(ArithmeticExamples, FloatDivisorsWithoutAUsableEstimateAreDividedExactly) {
  for (const float divisor : {0x1p125F, 0x1.8p126F, 0x1.fffffep127F, 0x1p-149F, 0x1.8p-127F, infinity}) {
    float divisors[40], numerators[40], quotients[40];
    for (int i = 0; i < 40; ++i) {
      divisors[i] = i % 2 == 0 ? divisor : -divisor;
      numerators[i] = static_cast<float>(3 * i + 1) * 0x1p-20F;
    }
    for (int variant = 0; variant <= highestVariant(); ++variant) {
      EXPECT_EQ(
          table.ippiDiv_32f_C1R.routine[1 + variant](divisors, 160, numerators, 160, quotients, 160, {40, 1}),
          0);
      for (int i = 0; i < 40; ++i)
        EXPECT_EQ(quotients[i], numerators[i] / divisors[i]) << divisor << " at " << i;
    }
  }
}

TEST(ArithmeticExamples, AConstantOfZeroThatIsScaledUpSaturatesAllButZero) {
  for (int variant = 0; variant <= highestVariant(); ++variant) {
    u8 pixels[3] = {0, 1, 255};
    EXPECT_EQ(table.ippiAddC_8u_C1IRSfs.routine[1 + variant](0, pixels, 3, {3, 1}, -8), 0);
    EXPECT_EQ(pixels[0], 0);
    EXPECT_EQ(pixels[1], 255);
    EXPECT_EQ(pixels[2], 255);
  }
}

TEST(ArithmeticExamples, ShortcutsDoNotReadTheSources) {
  u8* const unreadable = reinterpret_cast<u8*>(std::uintptr_t{4096});
  for (int variant = 0; variant <= highestVariant(); ++variant) {
    u8 pixels[4] = {1, 2, 3, 4};
    const Size roi{2, 2};
    EXPECT_EQ(table.ippiAdd_8u_C1RSfs.routine[1 + variant](unreadable, 2, unreadable, 2, pixels, 2, roi, 10),
              0);
    EXPECT_EQ(pixels[0] | pixels[1] | pixels[2] | pixels[3], 0);
    EXPECT_EQ(table.ippiMul_8u_C1RSfs.routine[1 + variant](unreadable, 2, unreadable, 2, pixels, 2, roi, 17),
              0);
    u16 words[4] = {1, 2, 3, 4};
    u16* const unreadableWords = reinterpret_cast<u16*>(unreadable);
    EXPECT_EQ(table.ippiAdd_16u_C1RSfs.routine[1 + variant](unreadableWords, 4, unreadableWords, 4, nullptr,
                                                            4, roi, 18),
              -8);
    EXPECT_EQ(
        table.ippiAdd_16u_C1RSfs.routine[1 + variant](nullptr, 4, unreadableWords, 4, words, 4, roi, 18), -8);
    EXPECT_EQ(words[3], 4);
  }
}

}  // namespace

/// The examples name their entries.
void registerEntryTests() {}

}  // namespace Zorvan::Test
