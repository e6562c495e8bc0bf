// Masked statistics: limits of their sums, what is lost where, ties, null outputs, empty masks and NaN.

#include <cmath>

#include "tests/entries/StatisticRules.h"
#include "tests/support/Random.h"

namespace Zorvan::Test {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::numeric_limits<float>::quiet_NaN();

template <class T>
struct Masked {
  std::vector<T> pixels;
  std::vector<u8> mask;
  Size roi;

  int step() const { return roi.width * static_cast<int>(sizeof(T)); }
};

template <class T>
Masked<T> allSelected(std::vector<T> pixels, Size roi) {
  return {std::move(pixels), std::vector<u8>(static_cast<std::size_t>(roi.width) * roi.height, 1), roi};
}

template <class T>
double meanOf(int (*routine)(const T*, int, const u8*, int, Size, double*), const Masked<T>& image) {
  double mean = -1;
  EXPECT_EQ(routine(image.pixels.data(), image.step(), image.mask.data(), image.roi.width, image.roi, &mean),
            0);
  return mean;
}

struct Pair {
  double mean = -1, stdDev = -1;
};
template <class T>
Pair deviationOf(int (*routine)(const T*, int, const u8*, int, Size, double*, double*),
                 const Masked<T>& image) {
  Pair found;
  EXPECT_EQ(routine(image.pixels.data(), image.step(), image.mask.data(), image.roi.width, image.roi,
                    &found.mean, &found.stdDev),
            0);
  return found;
}

struct Extremes {
  int status = -1;
  float low = -1, high = -1;
  Point lowAt{-1, -1}, highAt{-1, -1};
};
template <class T>
Extremes extremesOf(int (*routine)(const T*, int, const u8*, int, Size, float*, float*, Point*, Point*),
                    const Masked<T>& image) {
  Extremes found;
  found.status = routine(image.pixels.data(), image.step(), image.mask.data(), image.roi.width, image.roi,
                         &found.low, &found.high, &found.lowAt, &found.highAt);
  return found;
}

void expectExtremes(const Extremes& found, float low, Point lowAt, float high, Point highAt, int status = 0) {
  EXPECT_EQ(found.status, status);
  EXPECT_EQ(found.low, low);
  EXPECT_EQ(found.high, high);
  EXPECT_EQ(found.lowAt.x, lowAt.x);
  EXPECT_EQ(found.lowAt.y, lowAt.y);
  EXPECT_EQ(found.highAt.x, highAt.x);
  EXPECT_EQ(found.highAt.y, highAt.y);
}

/// Both sides of the limit of unrolled sums, and rows that overflow lanes of 32 bits.
void byteMeansAreExact(int variant) {
  const auto routine = ROUTINE(ippiMean_8u_C1MR, variant);
  for (const Size roi : {Size{4096, 2047}, Size{4096, 2048}, Size{4096, 2049}, Size{4099, 2049},
                         Size{16843010, 1}, Size{1, 40000}, Size{7, 3000}}) {
    const auto count = static_cast<std::size_t>(roi.width) * roi.height;
    Masked<u8> image = allSelected(std::vector<u8>(count, 255), roi);
    EXPECT_EQ(meanOf(routine, image), 255) << roi.width << " by " << roi.height;
    fillRandom(image.pixels.data(), count, 3);
    fillRandom(image.mask.data(), count, 4);
    for (std::size_t i = 0; i < count; i += 2) image.mask[i] = 0;
    std::int64_t sum = 0, selected = 0;
    for (std::size_t i = 0; i < count; ++i) {
      if (image.mask[i] != 0) sum += image.pixels[i], ++selected;
    }
    EXPECT_EQ(meanOf(routine, image), static_cast<double>(sum) / static_cast<double>(selected));
  }
}

/// Older variants sum a row in a signed value of 32 bits. A row of 32767 pixels always fits.
void longRowsOfWords(int variant) {
  const auto routine = ROUTINE(ippiMean_16u_C1MR, variant);
  for (const int width : {32767, 32768, 32769, 40000}) {
    const auto count = static_cast<std::size_t>(width) * 2;
    const auto image = allSelected(std::vector<u16>(count, 65535), {width, 2});
    const double row = width * 65535.0;
    const double summed = variant < avx2 && row >= 0x1p31 ? row - 0x1p32 : row;
    EXPECT_EQ(meanOf(routine, image), summed / width) << width;
  }
  // Rows that share lanes: as many as fit, and more.
  for (const Size roi : {Size{96, 1000}, Size{1, 33000}, Size{64, 16384}, Size{64, 16385}, Size{65, 8193}}) {
    const auto count = static_cast<std::size_t>(roi.width) * roi.height;
    EXPECT_EQ(meanOf(routine, allSelected(std::vector<u16>(count, 65535), roi)), 65535) << roi.width;
  }
}

/// Lanes of floats that are emptied after some hundred additions err by a few units of 2^-24, lanes that are
/// never emptied by many.
void floatMeansAreEmptiedIntoDoubles(int variant) {
  const auto routine = ROUTINE(ippiMean_32f_C1MR, variant);
  for (const Size roi : {Size{1 << 20, 1}, Size{1024, 1024}, Size{40, 26000}, Size{7, 100000}}) {
    const int count = roi.width * roi.height;
    std::vector<float> pixels;
    Random random(11);
    for (int i = 0; i < count; ++i) {
      pixels.push_back(1000.0f + static_cast<float>(random.below(1 << 20)) * 0x1p-13f);
    }
    long double sum = 0;
    float lanes[16] = {};
    for (int i = 0; i < count; ++i) {
      sum += pixels[static_cast<std::size_t>(i)];
      lanes[i % 16] += pixels[static_cast<std::size_t>(i)];
    }
    double neverEmptied = 0;
    for (const float lane : lanes) neverEmptied += lane;
    const auto expected = static_cast<double>(sum / count);
    const double tolerance = expected * 0x1p-24 * 4;
    EXPECT_NEAR(meanOf(routine, allSelected(pixels, roi)), expected, tolerance) << roi.width;
    if (roi.width >= 1024) {
      EXPECT_GT(std::fabs(neverEmptied / count - expected), tolerance)
          << "the tolerance hides the difference";
    }
  }
}

/// A lane with 2^24 loses each 1 that is added, until it is emptied after about 480 additions.
void lanesTakeAbout480Additions(int variant) {
  const auto routine = ROUTINE(ippiMean_32f_C1MR, variant);
  constexpr int count = 1 << 16;
  for (const int width : {count, 4096, 64}) {
    std::vector<float> pixels(count, 1.0f);
    pixels[0] = 0x1p24f;
    const double sum = meanOf(routine, allSelected(std::move(pixels), {width, count / width})) * count;
    const double lost = 0x1p24 + (count - 1) - sum;
    EXPECT_NEAR(lost, 480, 5) << width;
  }
}

void whatIsNotSelectedDoesNotCount(int variant) {
  for (const int width : {1, 3, 8, 9, 16, 17, 40, 64, 100}) {
    const auto count = static_cast<std::size_t>(width) * 3;
    Masked<float> floats{std::vector<float>(count, 0), std::vector<u8>(count, 0), {width, 3}};
    Masked<u8> bytes{std::vector<u8>(count, 0), floats.mask, {width, 3}};
    const u8 selecting[] = {1, 128, 255};
    double sum = 0, selected = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const bool isSelected = i % 3 == 1 || i + 1 == count;
      floats.mask[i] = bytes.mask[i] = isSelected ? selecting[i / 3 % 3] : 0;
      floats.pixels[i] = isSelected ? static_cast<float>(i % 16) : i % 2 == 0 ? nan : -infinity;
      bytes.pixels[i] = static_cast<u8>(isSelected ? i % 16 : 255);
      if (isSelected) sum += static_cast<double>(i % 16), ++selected;
    }
    EXPECT_EQ(meanOf(ROUTINE(ippiMean_32f_C1MR, variant), floats), sum / selected) << width;
    EXPECT_EQ(meanOf(ROUTINE(ippiMean_8u_C1MR, variant), bytes), sum / selected) << width;
    const Pair ofFloats = deviationOf(ROUTINE(ippiMean_StdDev_32f_C1MR, variant), floats);
    const Pair ofBytes = deviationOf(ROUTINE(ippiMean_StdDev_8u_C1MR, variant), bytes);
    EXPECT_EQ(ofFloats.mean, sum / selected) << width;
    EXPECT_EQ(ofFloats.stdDev, ofBytes.stdDev) << width;  // small integers: exact in floats too
    const Extremes low = extremesOf(ROUTINE(ippiMinMaxIndx_32f_C1MR, variant), floats);
    const Extremes same = extremesOf(ROUTINE(ippiMinMaxIndx_8u_C1MR, variant), bytes);
    expectExtremes(low, same.low, same.lowAt, same.high, same.highAt);
    EXPECT_LE(same.high, 15);
  }
}

/// The deviation from exact totals, rounded as each group of variants rounds it.
void byteDeviationsFollowTheirRounding(int variant) {
  const auto routine = ROUTINE(ippiMean_StdDev_8u_C1MR, variant);
  for (const Size roi : {Size{131071, 1}, Size{131072, 1}, Size{131073, 1}, Size{600001, 2}, Size{33, 70},
                         Size{5, 11}, Size{640, 480}}) {
    const auto count = static_cast<std::size_t>(roi.width) * roi.height;
    Masked<u8> image = allSelected(std::vector<u8>(count, 255), roi);
    EXPECT_EQ(deviationOf(routine, image).mean, 255);
    EXPECT_EQ(deviationOf(routine, image).stdDev, 0);
    fillRandom(image.pixels.data(), count, 8);
    double n = 0, sum = 0, squares = 0;
    for (std::size_t i = 0; i < count; ++i) {
      image.mask[i] = i % 5 == 2 ? 0 : 7;
      if (image.mask[i] == 0) continue;
      n += 1;
      sum += image.pixels[i];
      squares += image.pixels[i] * image.pixels[i];
    }
    const double mean = sum / n, meanSquare = squares / n;
    const double square = mean * mean;
    const double variance = variant < avx2 ? meanSquare - square : std::fma(-mean, mean, meanSquare);
    const Pair found = deviationOf(routine, image);
    EXPECT_EQ(found.mean, mean) << roi.width;
    EXPECT_EQ(found.stdDev, std::sqrt(std::fabs(variance))) << roi.width;
  }
}

void smallDeviationsTakeASecondPass(int variant) {
  const auto routine = ROUTINE(ippiMean_StdDev_32f_C1MR, variant);
  const auto deviation = [&](std::vector<float> pixels, Size roi) {
    return deviationOf(routine, allSelected(std::move(pixels), roi));
  };
  EXPECT_EQ(deviation({1000000.0f, 1000001.0f}, {2, 1}).mean, 1000000.5);
  EXPECT_EQ(deviation({1000000.0f, 1000001.0f}, {2, 1}).stdDev, 0.5);
  EXPECT_EQ(deviation({1.0f, 3.0f}, {2, 1}).mean, 2);
  EXPECT_EQ(deviation({1.0f, 3.0f}, {2, 1}).stdDev, 1);
  // Wide enough for the vectors of every variant, with some unselected pixels. Sums of rows are exact.
  Masked<float> image = allSelected(std::vector<float>(90 * 7, 1000.0f), {90, 7});
  for (std::size_t i = 0; i < image.pixels.size(); ++i) {
    if (i % 2 == 0) image.pixels[i] = 1001.0f;
  }
  for (const std::size_t out : {0u, 1u, 17u, 70u, 628u, 629u}) image.mask[out] = 0;
  EXPECT_EQ(deviationOf(routine, image).stdDev, 0.5);
  double mean = 0, stdDev = 0;  // the second pass runs for an output alone, too
  EXPECT_EQ(routine(image.pixels.data(), 360, image.mask.data(), 90, {90, 7}, nullptr, &stdDev), 0);
  EXPECT_EQ(stdDev, 0.5);
  EXPECT_EQ(routine(image.pixels.data(), 360, image.mask.data(), 90, {90, 7}, &mean, nullptr), 0);
  EXPECT_EQ(mean, deviationOf(routine, image).mean);
  EXPECT_EQ(routine(image.pixels.data(), 360, image.mask.data(), 90, {90, 7}, nullptr, nullptr), 0);
}

template <class T>
void tiesGoToTheFirst(int (*routine)(const T*, int, const u8*, int, Size, float*, float*, Point*, Point*)) {
  expectExtremes(extremesOf(routine, allSelected<T>({3, 1, 1, 3}, {4, 1})), 1, {1, 0}, 3, {0, 0});
  expectExtremes(extremesOf(routine, allSelected<T>({3, 1, 1, 3}, {1, 4})), 1, {0, 1}, 3, {0, 0});
  for (const Size roi : {Size{1, 9}, Size{15, 4}, Size{16, 3}, Size{31, 3}, Size{64, 3}, Size{150, 5},
                         Size{640, 40}, Size{4096, 5}, Size{9000, 3}}) {
    const int count = roi.width * roi.height;
    for (const int first : {0, count / 3, count / 2, count - 1}) {
      Masked<T> image = allSelected(std::vector<T>(static_cast<std::size_t>(count), 5), roi);
      for (int i = 0; i < first; ++i) image.mask[static_cast<std::size_t>(i)] = 0;
      const Point at{first % roi.width, first / roi.width};
      expectExtremes(extremesOf(routine, image), 5, at, 5, at);
      // An unselected minimum and maximum before, and two selected ones of each after: the first ones count.
      if (first < 2 || first + 4 >= count) continue;
      image.pixels[0] = 0;
      image.pixels[1] = 99;
      for (const int i : {first + 1, first + 3}) image.pixels[static_cast<std::size_t>(i)] = 2;
      for (const int i : {first + 2, first + 4}) image.pixels[static_cast<std::size_t>(i)] = 9;
      expectExtremes(extremesOf(routine, image), 2, {(first + 1) % roi.width, (first + 1) / roi.width}, 9,
                     {(first + 2) % roi.width, (first + 2) / roi.width});
    }
  }
}

/// Regions that are prefetched, at either distance, and searched in many blocks. Small whole numbers make all
/// sums exact.
template <class T>
void sumsOfLargeRegions(int (*mean)(const T*, int, const u8*, int, Size, double*),
                        int (*deviation)(const T*, int, const u8*, int, Size, double*, double*),
                        int (*extremes)(const T*, int, const u8*, int, Size, float*, float*, Point*,
                                        Point*)) {
  for (const Size roi : {Size{1201, 800}, Size{2503, 1800}}) {
    const std::size_t count = static_cast<std::size_t>(roi.width) * roi.height;
    Masked<T> image = allSelected(std::vector<T>(count), roi);
    for (std::size_t i = 0; i < count; ++i) {
      image.pixels[i] = static_cast<T>(i * 31 % 14 + 1);
      image.mask[i] = i % 3 == 1 ? 0 : 9;
    }
    // Unselected, selected, and selected again some blocks later.
    for (const std::size_t i : {std::size_t{1}, count / 6 * 3, count / 6 * 3 + 30000}) image.pixels[i] = 0;
    for (const std::size_t i : {count / 9 * 3 + 1, count / 9 * 6, count / 9 * 6 + 3}) image.pixels[i] = 15;
    double n = 0, sum = 0, squares = 0;
    for (std::size_t i = 0; i < count; ++i) {
      if (image.mask[i] == 0) continue;
      n += 1;
      sum += image.pixels[i];
      squares += image.pixels[i] * image.pixels[i];
    }
    EXPECT_EQ(meanOf(mean, image), sum / n) << roi.width;
    const auto place = [&](std::size_t i) {
      return Point{static_cast<int>(i % roi.width), static_cast<int>(i / roi.width)};
    };
    if (deviation != nullptr) {
      const Pair found = deviationOf(deviation, image);
      EXPECT_EQ(found.mean, sum / n) << roi.width;
      EXPECT_NEAR(found.stdDev, std::sqrt(squares / n - sum / n * (sum / n)), 1e-12) << roi.width;
    }
    if (extremes != nullptr) {
      expectExtremes(extremesOf(extremes, image), 0, place(count / 6 * 3), 15, place(count / 9 * 6));
      for (T& pixel : image.pixels) pixel = static_cast<T>(15 - pixel);
      expectExtremes(extremesOf(extremes, image), 0, place(count / 9 * 6), 15, place(count / 6 * 3));
    }
  }
}

void largeRegions(int variant) {
  sumsOfLargeRegions<u8>(ROUTINE(ippiMean_8u_C1MR, variant), ROUTINE(ippiMean_StdDev_8u_C1MR, variant),
                         ROUTINE(ippiMinMaxIndx_8u_C1MR, variant));
  sumsOfLargeRegions<u16>(ROUTINE(ippiMean_16u_C1MR, variant), nullptr, nullptr);
  sumsOfLargeRegions<float>(ROUTINE(ippiMean_32f_C1MR, variant), ROUTINE(ippiMean_StdDev_32f_C1MR, variant),
                            ROUTINE(ippiMinMaxIndx_32f_C1MR, variant));
}

void ties(int variant) {
  tiesGoToTheFirst<u8>(ROUTINE(ippiMinMaxIndx_8u_C1MR, variant));
  tiesGoToTheFirst<float>(ROUTINE(ippiMinMaxIndx_32f_C1MR, variant));
}

/// The status depends on which outputs are requested.
int statusOf(bool anySelected, bool lowAtFirst, bool highAtFirst, bool firstSelected, float low, float high,
             bool needsLow, bool needsHigh, bool needsLowAt, bool needsHighAt) {
  if (needsLowAt) return lowAtFirst && !firstSelected ? 1 : 0;
  if (needsHighAt) return highAtFirst && !firstSelected ? 1 : 0;
  if (!needsLow && !needsHigh) return 1;
  if (needsLow && low != 0) return 0;
  if (needsHigh && high != 0) return 0;
  return anySelected ? 0 : 1;
}

template <class T>
void everyCombinationOfOutputs(int (*routine)(const T*, int, const u8*, int, Size, float*, float*, Point*,
                                              Point*)) {
  // Masks: none, all, the last pixel only; pixels: nothing but zeros, and a zero with others.
  for (const int selected : {0, 1, 2}) {
    for (const T other : {T{0}, T{7}}) {
      Masked<T> image = allSelected(std::vector<T>(20 * 3, other), {20, 3});
      image.pixels[0] = 0;
      if (selected != 1) image.mask.assign(60, 0);
      if (selected == 2) image.mask[59] = 200;
      const Extremes all = extremesOf(routine, image);
      EXPECT_EQ(all.status, selected == 0 ? 1 : 0);
      if (selected == 0) expectExtremes(all, 0, {0, 0}, 0, {0, 0}, 1);
      if (selected == 2) expectExtremes(all, other, {19, 2}, other, {19, 2});
      for (int outputs = 0; outputs < 16; ++outputs) {
        Extremes found;
        const int status = routine(
            image.pixels.data(), image.step(), image.mask.data(), 20, {20, 3},
            (outputs & 1) != 0 ? &found.low : nullptr, (outputs & 2) != 0 ? &found.high : nullptr,
            (outputs & 4) != 0 ? &found.lowAt : nullptr, (outputs & 8) != 0 ? &found.highAt : nullptr);
        const auto atFirst = [](Point p) { return p.x == 0 && p.y == 0; };
        EXPECT_EQ(status, statusOf(selected != 0, atFirst(all.lowAt), atFirst(all.highAt), selected == 1,
                                   all.low, all.high, (outputs & 1) != 0, (outputs & 2) != 0,
                                   (outputs & 4) != 0, (outputs & 8) != 0))
            << "mask " << selected << ", outputs " << outputs;
        EXPECT_EQ(found.low, (outputs & 1) != 0 ? all.low : -1);
        EXPECT_EQ(found.high, (outputs & 2) != 0 ? all.high : -1);
        EXPECT_EQ(found.lowAt.x, (outputs & 4) != 0 ? all.lowAt.x : -1);
        EXPECT_EQ(found.highAt.y, (outputs & 8) != 0 ? all.highAt.y : -1);
      }
    }
  }
}

void outputs(int variant) {
  everyCombinationOfOutputs<u8>(ROUTINE(ippiMinMaxIndx_8u_C1MR, variant));
  everyCombinationOfOutputs<float>(ROUTINE(ippiMinMaxIndx_32f_C1MR, variant));
}

void emptyMasks(int variant) {
  const Masked<u8> bytes{std::vector<u8>(60, 9), std::vector<u8>(60, 0), {20, 3}};
  const Masked<u16> words{std::vector<u16>(60, 9), std::vector<u8>(60, 0), {20, 3}};
  const Masked<float> floats{std::vector<float>(60, 9), std::vector<u8>(60, 0), {20, 3}};
  EXPECT_EQ(meanOf(ROUTINE(ippiMean_8u_C1MR, variant), bytes), 0);
  EXPECT_EQ(meanOf(ROUTINE(ippiMean_16u_C1MR, variant), words), 0);
  EXPECT_EQ(meanOf(ROUTINE(ippiMean_32f_C1MR, variant), floats), 0);
  for (const Pair found : {deviationOf(ROUTINE(ippiMean_StdDev_8u_C1MR, variant), bytes),
                           deviationOf(ROUTINE(ippiMean_StdDev_32f_C1MR, variant), floats)}) {
    EXPECT_EQ(found.mean, 0);
    EXPECT_EQ(found.stdDev, 0);
  }
}

void infinitiesHavePlaces(int variant) {
  const auto routine = ROUTINE(ippiMinMaxIndx_32f_C1MR, variant);
  for (const int width : {2, 7, 16, 30, 80}) {
    for (const float value : {infinity, -infinity}) {
      Masked<float> image =
          allSelected(std::vector<float>(static_cast<std::size_t>(width), value), {width, 1});
      image.mask[0] = 0;
      expectExtremes(extremesOf(routine, image), value, {1, 0}, value, {1, 0});
    }
  }
}

void selectedNans(int variant) {
  const auto routine = ROUTINE(ippiMinMaxIndx_32f_C1MR, variant);
  std::vector<float> pixels(90 * 3, nan);
  const Extremes only = extremesOf(routine, allSelected(pixels, {90, 3}));
  if (variant >= avx2) {
    expectExtremes(only, 0, {0, 0}, 0, {0, 0}, only.status);
  } else {
    EXPECT_TRUE(std::isnan(only.low) && std::isnan(only.high));
  }
  for (const Point at : {only.lowAt, only.highAt}) {
    EXPECT_TRUE(at.x >= 0 && at.x < 90 && at.y >= 0 && at.y < 3);
  }
  // A row of NaN before lower pixels removes the current maximum from its lanes.
  const auto lowered = allSelected<float>({9, 9, 9, 9, 9, 9, 9, 9, nan, nan, nan, nan, 5, 5, 5, 5}, {8, 2});
  const Extremes found = extremesOf(routine, lowered);
  if (variant <= sse42) expectExtremes(found, 5, {4, 1}, 5, {4, 1});
  if (variant == avx) expectExtremes(found, 5, {4, 1}, 9, {0, 0});
  // A NaN that removes an extreme from its lane does not change the place that was found first.
  if (variant >= avx2) {
    std::vector<float> returning(64 * 300, 5);
    returning[0] = returning[64 * 290 + 7] = 1;
    returning[3] = returning[64 * 295 + 9] = 9;
    for (int column = 0; column < 64; ++column) returning[64 + column] = nan;
    expectExtremes(extremesOf(routine, allSelected(returning, {64, 300})), 1, {0, 0}, 9, {3, 0});
    for (int column = 0; column < 64; ++column) {
      Masked<float> one = allSelected(std::vector<float>(64 * 300, 5), {64, 300});
      const auto at = [&](int row) -> float& {
        return one.pixels[static_cast<std::size_t>(64 * row + column)];
      };
      at(1) = nan;
      at(0) = at(295) = 9;
      expectExtremes(extremesOf(routine, one), 5, {column == 0 ? 1 : 0, 0}, 9, {column, 0});
      at(0) = at(295) = 1;
      expectExtremes(extremesOf(routine, one), 1, {column, 0}, 5, {column == 0 ? 1 : 0, 0});
    }
  }
  // A NaN in front of the extremes is none of them: later pixels fill its lane.
  std::vector<float> inFront(64 * 2, 5);
  inFront[3] = nan;
  inFront[64 + 40] = 1;
  inFront[64 + 50] = 9;
  expectExtremes(extremesOf(routine, allSelected(inFront, {64, 2})), 1, {40, 1}, 9, {50, 1});
  // A sum with a NaN is NaN.
  const auto sum = allSelected<float>({1, nan, 3}, {3, 1});
  EXPECT_TRUE(std::isnan(meanOf(ROUTINE(ippiMean_32f_C1MR, variant), sum)));
  EXPECT_TRUE(std::isnan(deviationOf(ROUTINE(ippiMean_StdDev_32f_C1MR, variant), sum).mean));
  EXPECT_TRUE(std::isnan(deviationOf(ROUTINE(ippiMean_StdDev_32f_C1MR, variant), sum).stdDev));
}

void steps(int variant) {
  alignas(16) const char bytes[64] = {};
  const auto* mask = reinterpret_cast<const u8*>(bytes);
  const auto* words = reinterpret_cast<const u16*>(bytes);
  const auto* floats = reinterpret_cast<const float*>(bytes);
  double mean = 0, stdDev = 0;
  const auto ofWords = ROUTINE(ippiMean_16u_C1MR, variant);
  EXPECT_EQ(ofWords(words, 5, mask, 3, {3, 1}, &mean), -16);
  EXPECT_EQ(ofWords(words, 7, mask, 3, {3, 1}, &mean), -108);
  EXPECT_EQ(ofWords(words, 7, mask, 2, {3, 1}, &mean), -108);
  EXPECT_EQ(ofWords(words, 6, mask, 2, {3, 1}, &mean), -16);
  const auto ofFloats = ROUTINE(ippiMean_32f_C1MR, variant);
  EXPECT_EQ(ofFloats(floats, 4, mask, 1, {1, 1}, &mean), 0);
  EXPECT_EQ(ofFloats(floats, 6, mask, 1, {1, 1}, &mean), -108);
  EXPECT_EQ(ofFloats(floats, 3, mask, 1, {1, 1}, &mean), -16);
  EXPECT_EQ(ofFloats(floats, 6, mask, 0, {1, 1}, &mean), -16);
  EXPECT_EQ(ofFloats(floats, 0x7FFFFFFC, mask, 0x20000000, {0x20000000, 1}, &mean), -16);
  const auto deviation = ROUTINE(ippiMean_StdDev_32f_C1MR, variant);
  EXPECT_EQ(deviation(floats, 6, mask, 1, {1, 1}, &mean, &stdDev), -108);
  EXPECT_EQ(ROUTINE(ippiMean_StdDev_8u_C1MR, variant)(mask, 2, mask, 3, {3, 1}, &mean, &stdDev), -16);
  EXPECT_EQ(ROUTINE(ippiMean_8u_C1MR, variant)(mask, 3, mask, 2, {3, 1}, &mean), -16);
}

}  // namespace

void registerEntryTests() {
  const auto add = [](const char* name, void (*test)(int)) { registerForEachVariant("Masked", name, test); };
  add("byteMeansAreExact", byteMeansAreExact);
  add("longRowsOfWords", longRowsOfWords);
  add("floatMeansAreEmptiedIntoDoubles", floatMeansAreEmptiedIntoDoubles);
  add("lanesTakeAbout480Additions", lanesTakeAbout480Additions);
  add("whatIsNotSelectedDoesNotCount", whatIsNotSelectedDoesNotCount);
  add("byteDeviationsFollowTheirRounding", byteDeviationsFollowTheirRounding);
  add("smallDeviationsTakeASecondPass", smallDeviationsTakeASecondPass);
  add("largeRegions", largeRegions);
  add("tiesGoToTheFirst", ties);
  add("everyCombinationOfOutputs", outputs);
  add("emptyMasks", emptyMasks);
  add("infinitiesHavePlaces", infinitiesHavePlaces);
  add("selectedNans", selectedNans);
  add("stepsInOrder", steps);
}

}  // namespace Zorvan::Test
