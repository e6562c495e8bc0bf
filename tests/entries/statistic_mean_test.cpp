// Means: sums that stay exact at every limit of their lanes, and how exact the sums of floats are.

#include <cmath>

#include "tests/entries/StatisticRules.h"
#include "tests/support/Random.h"

namespace Zorvan::Test {
namespace {

/// Regions on both sides of each limit: blocks and tiles of 32768 and 65538 pixels, regions of 65536, tiles
/// that are one, two and three pixels wide, and bytes beyond 32-bit lanes.
constexpr Size limits[] = {{32767, 1}, {32768, 1}, {32769, 1},   {40000, 1},   {65535, 1},   {65536, 1},
                           {65538, 1}, {65539, 1}, {256, 255},   {256, 256},   {256, 257},   {1, 32767},
                           {1, 65535}, {1, 65538}, {1, 140000},  {2, 32769},   {2, 70000},   {3, 21846},
                           {3, 50000}, {17, 5000}, {4096, 2049}, {8388609, 1}, {16843010, 1}};

template <class T>
void extremesAverageToThemselves(int (*routine)(const T*, int, Size, double*)) {
  for (const T value : {std::numeric_limits<T>::max(), std::numeric_limits<T>::min()}) {
    const std::vector<T> pixels(16843010 + 1, value);
    for (const Size roi : limits) {
      EXPECT_EQ(found(routine, pixels, roi), value) << roi.width << " by " << roi.height;
      // Rows with a gap of one pixel cannot run as one row.
      const int step = roi.width * static_cast<int>(sizeof(T));
      if (roi.height < 3000) {
        EXPECT_EQ(found(routine, pixels.data(), step + static_cast<int>(sizeof(T)),
                        {roi.width, roi.height - (roi.height > 1)}),
                  value)
            << roi.width << " by " << roi.height;
      }
    }
  }
}

template <class T>
void sumsOfNoiseAreExact(int (*routine)(const T*, int, Size, double*)) {
  std::vector<T> pixels(9000000);
  fillRandom(reinterpret_cast<unsigned char*>(pixels.data()), pixels.size() * sizeof(T), 5);
  for (const Size roi : {Size{99999, 1}, Size{333, 300}, Size{1, 100000}, Size{50001, 1}, Size{17, 5000},
                         Size{1600, 1001}, Size{3001, 2800}}) {  // the last two are prefetched
    std::int64_t sum = 0;
    const std::int64_t count = std::int64_t{roi.width} * roi.height;
    for (std::int64_t i = 0; i < count; ++i) sum += pixels[static_cast<std::size_t>(i)];
    EXPECT_EQ(found(routine, pixels, roi), static_cast<double>(sum) / static_cast<double>(count));
  }
}

template <class T>
void stepsOfAllSigns(int (*routine)(const T*, int, Size, double*)) {
  std::vector<T> pixels;
  for (int i = 0; i < 600; ++i) pixels.push_back(static_cast<T>(i * 7 % 251));
  const int row = 20 * static_cast<int>(sizeof(T));
  std::int64_t sum = 0;
  for (int r = 0; r < 30; ++r) {
    for (int c = 0; c < 19; ++c) sum += pixels[static_cast<std::size_t>(20 * r + c)];
  }
  const double expected = static_cast<double>(sum) / (19 * 30);
  EXPECT_EQ(found(routine, pixels.data(), row, {19, 30}), expected);
  EXPECT_EQ(found(routine, pixels.data() + 29 * 20, -row, {19, 30}), expected);
}

void integerSums(int variant) {
  const auto bytes = ROUTINE(ippiMean_8u_C1R, variant);
  const auto words = ROUTINE(ippiMean_16u_C1R, variant);
  const auto signedWords = ROUTINE(ippiMean_16s_C1R, variant);
  extremesAverageToThemselves<u8>(bytes);
  extremesAverageToThemselves<u16>(words);
  extremesAverageToThemselves<s16>(signedWords);
  sumsOfNoiseAreExact<u8>(bytes);
  sumsOfNoiseAreExact<u16>(words);
  sumsOfNoiseAreExact<s16>(signedWords);
  stepsOfAllSigns<u8>(bytes);
  stepsOfAllSigns<u16>(words);
  stepsOfAllSigns<s16>(signedWords);
}

/// The exact mean: a compensated sum in extended precision.
long double meanOf(const std::vector<float>& pixels, int count) {
  long double sum = 0, lost = 0;
  for (int i = 0; i < count; ++i) {
    const long double term = pixels[static_cast<std::size_t>(i)] - lost;
    const long double next = sum + term;
    lost = (next - sum) - term;
    sum = next;
  }
  return sum / count;
}

/// Pixels whose partial sums need more than 24 bits.
std::vector<float> pixelsWithManyDigits(int count) {
  std::vector<float> pixels;
  Random random(11);
  for (int i = 0; i < count; ++i) {
    pixels.push_back(1000.0f + static_cast<float>(random.below(1 << 20)) * 0x1p-13f);
  }
  return pixels;
}

/// Widths around 17 too: narrower regions have the same result for both hints in the newer variants. The
/// tolerance is a few units in the last place of a double times the square root of the number of additions.
/// Single precision errs by 2^29 times that.
void accurateSums(int variant) {
  const auto routine = ROUTINE(ippiMean_32f_C1R, variant);
  for (const Size roi : {Size{16, 4000}, Size{17, 4000}, Size{18, 4000}, Size{5, 999}, Size{64000, 1},
                         Size{333, 192}, Size{1, 64000}, Size{700, 600}}) {
    const int count = roi.width * roi.height;
    const std::vector<float> pixels = pixelsWithManyDigits(count);
    const long double expected = meanOf(pixels, count);
    const auto tolerance = static_cast<double>(expected) * 0x1p-52 * 32;
    EXPECT_NEAR(found(routine, pixels, roi, 2), static_cast<double>(expected), tolerance)
        << roi.width << " by " << roi.height;
    const double fast = found(routine, pixels, roi, 1);
    EXPECT_NEAR(fast, static_cast<double>(expected), static_cast<double>(expected) * 1e-3);
    if (variant >= avx && roi.width >= 17) {
      EXPECT_GT(std::fabs(fast - static_cast<double>(expected)), tolerance)
          << "the tolerance hides the difference";
    }
    if (variant >= avx && roi.width < 17) {
      EXPECT_NEAR(fast, static_cast<double>(expected), tolerance);
    }
  }
}

/// The older variants add in single precision within a row only: what two other rows cancel is not lost.
void fastSumsByRow(int variant) {
  if (variant >= avx) return;
  const int width = 64;
  std::vector<float> pixels(3 * width, 0.0f);
  pixels[0] = 16777216.0f;
  for (int c = 0; c < width; ++c) pixels[static_cast<std::size_t>(width + c)] = 0.25f;
  pixels[2 * width] = -16777216.0f;
  EXPECT_EQ(found(ROUTINE(ippiMean_32f_C1R, variant), pixels, {width, 3}, 0), 16.0 / (3 * width));
}

/// Every hint but 2 has the fast sum's result, to the bit. Narrow regions of the newer variants have that of
/// hint 2.
void allOtherHintsAddFast(int variant) {
  const auto routine = ROUTINE(ippiMean_32f_C1R, variant);
  for (const Size roi : {Size{5, 999}, Size{16, 4000}, Size{17, 4000}, Size{333, 192}, Size{64000, 1}}) {
    const std::vector<float> pixels = pixelsWithManyDigits(roi.width * roi.height);
    const double fast = found(routine, pixels, roi, 1), accurate = found(routine, pixels, roi, 2);
    EXPECT_EQ(fast == accurate, variant >= avx && roi.width < 17) << roi.width << " by " << roi.height;
    for (const int hint :
         {std::numeric_limits<int>::min(), -3, -2, -1, 0, 3, 4, std::numeric_limits<int>::max()}) {
      EXPECT_EQ(found(routine, pixels, roi, hint), fast) << "hint " << hint;
    }
  }
}

void nanInTheLastPixel(int variant) {
  for (const int width : {1, 5, 16, 17, 64, 71}) {
    std::vector<float> pixels(static_cast<std::size_t>(3 * width), 0.0f);
    pixels.back() = std::numeric_limits<float>::quiet_NaN();
    for (const int hint : {2, 1}) {
      EXPECT_TRUE(std::isnan(found(ROUTINE(ippiMean_32f_C1R, variant), pixels, {width, 3}, hint))) << width;
    }
  }
}

}  // namespace

void registerEntryTests() {
  registerForEachVariant("Mean", "integerSumsAreExact", integerSums);
  registerForEachVariant("Mean", "accurateSumsOfFloats", accurateSums);
  registerForEachVariant("Mean", "fastSumsLoseWithinARowOnly", fastSumsByRow);
  registerForEachVariant("Mean", "allOtherHintsAddFast", allOtherHintsAddFast);
  registerForEachVariant("Mean", "nanInTheLastPixel", nanInTheLastPixel);
}

}  // namespace Zorvan::Test
