// Scaled squares and square roots of integer pixels.

#include <climits>
#include <cstring>
#include <numeric>
#include <vector>

#include "tests/support/Cache.h"
#include "tests/support/EntryTests.h"

namespace Zorvan::Test {
namespace {

template <class T>
using TwoImages = int(const T* src, int srcStep, T* dst, int dstStep, Size roi, int scaleFactor);
template <class T>
using InPlace = int(T* srcDst, int srcDstStep, Size roi, int scaleFactor);

template <class T>
using TwoImagesRow = Primitives::Row<TwoImages<T>>;
template <class T>
using InPlaceRow = Primitives::Row<InPlace<T>>;

/// All forms of scaling, their limits from both sides, and a factor that cannot be negated.
std::vector<int> scaleFactors() {
  std::vector<int> factors(73);
  std::iota(factors.begin(), factors.end(), -36);
  for (const int far : {-1000, 64, 1000, INT_MIN, INT_MIN + 1, INT_MAX}) factors.push_back(far);
  return factors;
}

template <class T>
std::vector<T> allPixels() {
  std::vector<T> pixels;
  for (int x = std::numeric_limits<T>::min(); x <= std::numeric_limits<T>::max(); ++x) {
    pixels.push_back(static_cast<T>(x));
  }
  return pixels;
}

template <class T>
void allPixelsOfAllFactors(TwoImages<T>* reference, TwoImages<T>* entry, InPlace<T>* inPlace) {
  const std::vector<T> pixels = allPixels<T>();
  const int n = static_cast<int>(pixels.size()), step = n * static_cast<int>(sizeof(T));
  std::vector<T> expected(pixels.size()), result(pixels.size());
  for (const int f : scaleFactors()) {
    const int status = reference(pixels.data(), step, expected.data(), step, {n, 1}, f);
    ASSERT_EQ(entry(pixels.data(), step, result.data(), step, {n, 1}, f), status) << f;
    for (std::size_t i = 0; i < pixels.size(); ++i)
      ASSERT_EQ(result[i], expected[i]) << +pixels[i] << " by " << f;
    result = pixels;
    ASSERT_EQ(inPlace(result.data(), step, {n, 1}, f), status) << f;
    ASSERT_EQ(result, expected) << f;

    // One pixel at a time, computed as the tail of a row.
    for (std::size_t i = 0; i < pixels.size(); i += sizeof(T) == 1 ? 1 : 97) {
      T guarded[3] = {1, 2, 3};
      entry(&pixels[i], 4, guarded + 1, 4, {1, 1}, f);
      ASSERT_TRUE(guarded[0] == 1 && guarded[1] == expected[i] && guarded[2] == 3)
          << +pixels[i] << " by " << f;
    }
  }
}

struct Example {
  int f, pixel, result;
};

template <class T>
void expectExamples(TwoImages<T>* entry, const std::vector<Example>& examples) {
  for (const auto& [f, pixel, expected] : examples) {
    for (const int n : {1, 16, 70}) {
      const std::vector<T> src(static_cast<std::size_t>(n), static_cast<T>(pixel));
      std::vector<T> dst(src.size());
      const int status = entry(src.data(), 200, dst.data(), 200, {n, 1}, f);
      EXPECT_EQ(status, pixel < 0 ? 3 : 0) << pixel << " by " << f;
      EXPECT_EQ(dst, std::vector<T>(src.size(), static_cast<T>(expected))) << pixel << " by " << f;
    }
  }
}

void squaresOfBytes(int variant) {
  expectExamples<u8>(Primitives::table.ippiSqr_8u_C1RSfs.routine[1 + variant], {{0, 15, 225},
                                                                                {0, 16, 255},
                                                                                {0, 255, 255},
                                                                                {1, 3, 4},
                                                                                {1, 5, 12},
                                                                                {1, 7, 24},
                                                                                {4, 3, 1},
                                                                                {9, 255, 127},
                                                                                {10, 255, 64},
                                                                                {16, 255, 1},
                                                                                {17, 255, 0},
                                                                                {-6, 1, 64},
                                                                                {-7, 1, 128},
                                                                                {-7, 2, 255},
                                                                                {-8, 1, 255},
                                                                                {-8, 0, 0},
                                                                                {INT_MIN, 1, 255}});
}
void rootsOfBytes(int variant) {
  expectExamples<u8>(
      Primitives::table.ippiSqrt_8u_C1RSfs.routine[1 + variant],
      {{0, 2, 1},     {0, 3, 2},     {0, 6, 2},         {0, 7, 3},         {0, 255, 16},   {1, 1, 0},
       {1, 2, 1},     {1, 25, 2},    {1, 49, 4},        {-7, 3, 222},      {-7, 4, 255},   {-6, 15, 248},
       {-6, 16, 255}, {-5, 63, 254}, {-5, 64, 255},     {-8, 1, 255},      {-8, 0, 0},     {4, 64, 0},
       {4, 65, 1},    {5, 255, 0},   {INT_MAX, 255, 0}, {INT_MIN, 1, 255}, {INT_MIN, 0, 0}});
}
void squaresOfWords(int variant) {
  expectExamples<u16>(Primitives::table.ippiSqr_16u_C1RSfs.routine[1 + variant], {{0, 255, 65025},
                                                                                  {0, 256, 65535},
                                                                                  {1, 3, 4},
                                                                                  {16, 65535, 65534},
                                                                                  {17, 65535, 32767},
                                                                                  {18, 65535, 16384},
                                                                                  {31, 65535, 2},
                                                                                  {32, 65535, 1},
                                                                                  {33, 65535, 0},
                                                                                  {-15, 1, 32768},
                                                                                  {-16, 1, 65535}});
  const auto entry = Primitives::table.ippiSqr_16s_C1RSfs.routine[1 + variant];
  s16 pixel = -32768;
  for (const auto& [f, expected] :
       {std::pair{0, 32767}, {15, 32767}, {16, 16384}, {30, 1}, {31, 0}, {32, 0}}) {
    s16 result = 9;
    EXPECT_EQ(entry(&pixel, 2, &result, 2, {1, 1}, f), 0);
    EXPECT_EQ(result, expected) << f;
  }
}
void rootsOfWords(int variant) {
  expectExamples<u16>(Primitives::table.ippiSqrt_16u_C1RSfs.routine[1 + variant], {{0, 65535, 256},
                                                                                   {0, 65280, 255},
                                                                                   {0, 65281, 256},
                                                                                   {1, 1, 0},
                                                                                   {1, 9, 2},
                                                                                   {1, 25, 2},
                                                                                   {8, 65535, 1},
                                                                                   {8, 16384, 0},
                                                                                   {8, 16385, 1},
                                                                                   {9, 65535, 0},
                                                                                   {-14, 1, 16384},
                                                                                   {-14, 15, 63455},
                                                                                   {-14, 16, 65535},
                                                                                   {-15, 1, 65535},
                                                                                   {-15, 0, 0},
                                                                                   {-8, 65534, 65535},
                                                                                   {-8, 65533, 65534},
                                                                                   {-8, 65532, 65534}});
  expectExamples<s16>(Primitives::table.ippiSqrt_16s_C1RSfs.routine[1 + variant], {{-15, -1, 0},
                                                                                   {-15, 1, 32767},
                                                                                   {-15, 0, 0},
                                                                                   {0, -32768, 0},
                                                                                   {0, 32767, 181},
                                                                                   {9, -1, 0},
                                                                                   {9, 32767, 0},
                                                                                   {INT_MIN, -5, 0},
                                                                                   {INT_MAX, -5, 0},
                                                                                   {8, -1, 0},
                                                                                   {-14, -1, 0},
                                                                                   {-14, 4, 32767},
                                                                                   {-14, 3, 28378}});
}

/// A negative pixel in any row and place raises the status; all pixels of all rows are written.
void negativeWordsAnywhere(int variant) {
  const auto entry = Primitives::table.ippiSqrt_16s_C1RSfs.routine[1 + variant];
  const auto inPlace = Primitives::table.ippiSqrt_16s_C1IRSfs.routine[1 + variant];
  constexpr int width = 43, height = 3;
  std::vector<s16> src(width * height, 100);
  for (const int f : {-20, -3, 0, 2, 9}) {
    std::vector<s16> expected(src.size());
    ASSERT_EQ(entry(src.data(), 2 * width, expected.data(), 2 * width, {width, height}, f), 0);
    for (std::size_t i = 0; i < src.size(); ++i) {
      src[i] = -7;
      std::vector<s16> dst(src.size(), 9), both = src;
      ASSERT_EQ(entry(src.data(), 2 * width, dst.data(), 2 * width, {width, height}, f), 3) << i;
      ASSERT_EQ(inPlace(both.data(), 2 * width, {width, height}, f), 3) << i;
      for (std::size_t j = 0; j < src.size(); ++j) {
        ASSERT_EQ(dst[j], j == i ? 0 : expected[j]) << j;
        ASSERT_EQ(both[j], dst[j]) << j;
      }
      src[i] = 100;
    }
  }
}

/// Every step below 1 is refused, after the tests of pointers and sizes, and nothing is written.
template <class T>
void badSteps(TwoImages<T>* entry, InPlace<T>* inPlace) {
  const T src[4] = {1, 2, 3, 4};
  T dst[4] = {9, 9, 9, 9};
  for (const int bad : {0, -1, -2, INT_MIN}) {
    for (const int f : {-20, 0, 20}) {
      EXPECT_EQ(entry(src, bad, dst, 4, {2, 2}, f), -16);
      EXPECT_EQ(entry(src, 4, dst, bad, {2, 2}, f), -16);
      EXPECT_EQ(entry(src, bad, dst, 4, {2, 0}, f), -6);
      EXPECT_EQ(entry(src, bad, nullptr, 4, {2, 0}, f), -8);
      EXPECT_EQ(inPlace(dst, bad, {2, 2}, f), -16);
      EXPECT_EQ(inPlace(dst, bad, {0, 2}, f), -6);
    }
  }
  for (const T pixel : dst) EXPECT_EQ(pixel, 9);
}

/// Both sides of the size at which streaming begins, with aligned and misaligned destinations.
void largeBytes(int variant) {
  const auto entry = Primitives::table.ippiSqr_8u_C1RSfs.routine[1 + variant];
  constexpr int most = 0x180000;
  const ForcedCache cache(1 << 20);
  std::vector<u8> src(most + 2000), dst(most + 2100);
  for (std::size_t i = 0; i < src.size(); ++i) src[i] = static_cast<u8>(i % 19);
  for (const Size roi : {Size{most, 1}, Size{most + 1, 1}, Size{most / 1024, 1025}}) {
    const auto n = static_cast<std::size_t>(roi.width) * static_cast<std::size_t>(roi.height);
    for (const std::size_t shift : {0, 1, 63}) {
      std::fill(dst.begin(), dst.end(), u8{9});
      ASSERT_EQ(entry(src.data(), roi.width, dst.data() + shift, roi.width, roi, 0), 0);
      for (std::size_t i = 0; i < n; ++i) {
        const int square = src[i] * src[i];
        ASSERT_EQ(dst[shift + i], square > 255 ? 255 : square) << i << " of " << n;
      }
      ASSERT_EQ(dst[shift + n], 9);
    }
  }
}

template <class T>
void registerOf(const std::string& name, const CheckRules& rules, TwoImages<T>* reference,
                const TwoImagesRow<T>& entry, InPlace<T>* inPlaceReference, const InPlaceRow<T>& inPlace) {
  registerEntry("ScaledUnary", name + "_C1RSfs", rules, reference, entry);
  registerEntry("ScaledUnary", name + "_C1IRSfs", rules, inPlaceReference, inPlace);
  registerForEachVariant("ScaledUnary", name + "_AllPixels", [reference, &entry, &inPlace](int variant) {
    allPixelsOfAllFactors(reference, entry.routine[1 + variant], inPlace.routine[1 + variant]);
  });
  registerForEachVariant("ScaledUnary", name + "_BadSteps", [&entry, &inPlace](int variant) {
    badSteps(entry.routine[1 + variant], inPlace.routine[1 + variant]);
  });
}

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
  CheckRules rules;
  rules.parameters = {0,  1, -1,  3,   4,  -7, 9,  10,  -8, 5,       8,
                      -5, 2, -14, -15, 16, 17, 18, -16, 32, INT_MIN, INT_MAX};
  rules.largeRegions = {{1031, 509}, {3001, 1301}};
  rules.forcedCacheBytes = {1 << 20};
#define REGISTER(name)                                                                 \
  registerOf(#name, rules, &Reference::name##_C1RSfs, Primitives::table.name##_C1RSfs, \
             &Reference::name##_C1IRSfs, Primitives::table.name##_C1IRSfs);
  REGISTER(ippiSqr_8u)
  REGISTER(ippiSqr_16u)
  REGISTER(ippiSqr_16s)
  REGISTER(ippiSqrt_8u)
  REGISTER(ippiSqrt_16u)
  REGISTER(ippiSqrt_16s)
#undef REGISTER

  registerForEachVariant("ScaledUnary", "SquaresOfBytes", squaresOfBytes);
  registerForEachVariant("ScaledUnary", "RootsOfBytes", rootsOfBytes);
  registerForEachVariant("ScaledUnary", "SquaresOfWords", squaresOfWords);
  registerForEachVariant("ScaledUnary", "RootsOfWords", rootsOfWords);
  registerForEachVariant("ScaledUnary", "NegativeWordsAnywhere", negativeWordsAnywhere);
  registerForEachVariant("ScaledUnary", "LargeBytes", largeBytes);
}
