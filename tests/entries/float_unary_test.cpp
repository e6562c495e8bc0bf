// Square and absolute value of floats.

#include <climits>
#include <cmath>
#include <cstring>
#include <vector>

#include "tests/reference/Unary.h"
#include "tests/support/Cache.h"
#include "tests/support/EntryTests.h"

namespace Zorvan::Test {
namespace {

constexpr int firstSquareImage = 3;  // the index of the first variant whose squares take steps in bytes

using TwoImages = int(const float* src, int srcStep, float* dst, int dstStep, Size roi);
using InPlace = int(float* srcDst, int srcDstStep, Size roi);

TwoImages* squareOf(int variant) { return Primitives::table.ippiSqr_32f_C1R.routine[1 + variant]; }
InPlace* squareInPlaceOf(int variant) { return Primitives::table.ippiSqr_32f_C1IR.routine[1 + variant]; }
TwoImages* absoluteOf(int variant) { return Primitives::table.ippiAbs_32f_C1R.routine[1 + variant]; }
InPlace* absoluteInPlaceOf(int variant) { return Primitives::table.ippiAbs_32f_C1IR.routine[1 + variant]; }

TwoImages* squareReferenceOf(int variant) {
  return variant < firstSquareImage ? &Reference::squareAtWholePixels : &Reference::ippiSqr_32f_C1R;
}
InPlace* squareInPlaceReferenceOf(int variant) {
  return variant < firstSquareImage ? &Reference::squareAtWholePixelsInPlace : &Reference::ippiSqr_32f_C1IR;
}

std::uint32_t bitsOf(float x) {
  std::uint32_t bits;
  std::memcpy(&bits, &x, 4);
  return bits;
}
float floatOf(std::uint32_t bits) {
  float x;
  std::memcpy(&x, &bits, 4);
  return x;
}

/// Every sign, exponent and a few mantissas, also signalling NaNs, in all lanes of a vector.
void absoluteOfAllValues(int variant) {
  std::vector<float> pixels;
  for (std::uint32_t high = 0; high < 0x200; ++high) {
    for (const std::uint32_t low : {0U, 1U, 0x400000U, 0x7FFFFFU, 0x155555U}) {
      pixels.push_back(floatOf(high << 23 | low));
    }
  }
  const int n = static_cast<int>(pixels.size());
  std::vector<float> result(pixels.size(), 9);
  for (const int width : {n, n - 1, n - 13, 15, 16, 17}) {
    ASSERT_EQ(absoluteOf(variant)(pixels.data(), 4 * n, result.data(), 4 * n, {width, 1}), 0);
    for (int i = 0; i < width; ++i) {
      const auto at = static_cast<std::size_t>(i);
      ASSERT_EQ(bitsOf(result[at]), bitsOf(pixels[at]) & 0x7FFFFFFF) << i;
    }
  }
  result = pixels;
  ASSERT_EQ(absoluteInPlaceOf(variant)(result.data(), 4 * n, {n, 1}), 0);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    ASSERT_EQ(bitsOf(result[i]), bitsOf(pixels[i]) & 0x7FFFFFFF) << i;
  }
}

/// Every step below 1 is refused, after the tests of pointers and sizes, and nothing is written.
void badSteps(int variant) {
  const float src[4] = {1, 2, 3, 4};
  float dst[4] = {9, 9, 9, 9};
  for (const int bad : {0, -1, -4, INT_MIN}) {
    for (auto* const entry : {squareOf(variant), absoluteOf(variant)}) {
      EXPECT_EQ(entry(src, bad, dst, 8, {2, 2}), -16);
      EXPECT_EQ(entry(src, 8, dst, bad, {2, 2}), -16);
      EXPECT_EQ(entry(src, bad, dst, 8, {2, 0}), -6);
      EXPECT_EQ(entry(src, bad, nullptr, 8, {2, 0}), -8);
    }
    for (auto* const entry : {squareInPlaceOf(variant), absoluteInPlaceOf(variant)}) {
      EXPECT_EQ(entry(dst, bad, {2, 2}), -16);
      EXPECT_EQ(entry(dst, bad, {0, 2}), -6);
    }
  }
  for (const float pixel : dst) EXPECT_EQ(pixel, 9);
}

/// A step of 10 bytes counts as 8 where steps are taken in whole pixels, and as 10 elsewhere.
void stepsBetweenPixels(int variant) {
  const float rows[5] = {2, 3, 4, 5, 6};
  float dst[5] = {9, 9, 9, 9, 9};
  ASSERT_EQ(absoluteOf(variant)(rows, 10, dst, 10, {2, 2}), 0);
  EXPECT_EQ(std::vector<float>(dst, dst + 5), (std::vector<float>{2, 3, 4, 5, 9}));
  ASSERT_EQ(absoluteOf(variant)(rows, 3, dst, 15, {2, 2}), 0);
  EXPECT_EQ(std::vector<float>(dst, dst + 5), (std::vector<float>{2, 3, 4, 2, 3}));

  unsigned char src[20] = {}, result[20] = {};
  const float squares[2] = {4, 9};
  std::memcpy(src, rows, 8);
  std::memcpy(src + (variant < firstSquareImage ? 8 : 10), rows, 8);
  ASSERT_EQ(
      squareOf(variant)(reinterpret_cast<float*>(src), 10, reinterpret_cast<float*>(result), 10, {2, 2}), 0);
  EXPECT_EQ(std::memcmp(result, squares, 8), 0);
  EXPECT_EQ(std::memcmp(result + (variant < firstSquareImage ? 8 : 10), squares, 8), 0);
}

/// Both sides of the sizes at which prefetches and streaming begin, with joined and separate rows, at
/// addresses with and without streaming stores.
void aroundTheLimits(int variant) {
  constexpr int most = 0x600000 / 8;
  const ForcedCache cache(1 << 20);
  std::vector<float> src(most + 1024), dst(most + 1024);
  for (std::size_t i = 0; i < src.size(); ++i) src[i] = static_cast<float>(static_cast<int>(i % 4099) - 2000);
  for (const Size roi : {Size{4096, 1}, Size{4097, 1}, Size{64, 64}, Size{17, 241}, Size{most - 1, 1},
                         Size{most, 1}, Size{most + 1, 1}, Size{1024, most / 1024}, Size{1023, 769}}) {
    const auto n = static_cast<std::size_t>(roi.width) * static_cast<std::size_t>(roi.height);
    for (const std::size_t shift : {0, 1, 5}) {
      std::fill(dst.begin(), dst.end(), 9.0F);
      ASSERT_EQ(squareOf(variant)(src.data(), 4 * roi.width, dst.data() + shift, 4 * roi.width, roi), 0);
      for (std::size_t i = 0; i < n; ++i) ASSERT_EQ(dst[shift + i], src[i] * src[i]) << i << " of " << n;
      ASSERT_EQ(dst[shift + n], 9.0F);
      std::fill(dst.begin(), dst.end(), 9.0F);
      ASSERT_EQ(absoluteOf(variant)(src.data(), 4 * roi.width, dst.data() + shift, 4 * roi.width, roi), 0);
      for (std::size_t i = 0; i < n; ++i) ASSERT_EQ(dst[shift + i], std::fabs(src[i])) << i << " of " << n;
      ASSERT_EQ(dst[shift + n], 9.0F);
    }
    auto pixels = src;
    ASSERT_EQ(squareInPlaceOf(variant)(pixels.data(), 4 * roi.width, roi), 0);
    for (std::size_t i = 0; i < n; ++i) ASSERT_EQ(pixels[i], src[i] * src[i]) << i << " of " << n;
  }
}

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
  CheckRules rules;
  rules.largeRegions = {{1031, 509}, {4099, 601}};
  rules.forcedCacheBytes = {1 << 20};
  registerDrawnCases("FloatUnary", "ippiSqr_32f_C1R", [rules](int variant) {
    checkEntry(squareReferenceOf(variant), squareOf(variant), rules);
  });
  registerDrawnCases("FloatUnary", "ippiSqr_32f_C1IR", [rules](int variant) {
    checkEntry(squareInPlaceReferenceOf(variant), squareInPlaceOf(variant), rules);
  });
  registerEntry("FloatUnary", "ippiAbs_32f_C1R", rules, &Reference::ippiAbs_32f_C1R,
                Primitives::table.ippiAbs_32f_C1R);
  registerEntry("FloatUnary", "ippiAbs_32f_C1IR", rules, &Reference::ippiAbs_32f_C1IR,
                Primitives::table.ippiAbs_32f_C1IR);

  registerForEachVariant("FloatUnary", "AbsoluteOfAllValues", absoluteOfAllValues);
  registerForEachVariant("FloatUnary", "BadSteps", badSteps);
  registerForEachVariant("FloatUnary", "StepsBetweenPixels", stepsBetweenPixels);
  registerForEachVariant("FloatUnary", "AroundTheLimits", aroundTheLimits);
}
