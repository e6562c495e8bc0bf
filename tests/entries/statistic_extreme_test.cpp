// Minimum and maximum: where the search ends, and the effect of NaNs, infinities and zeros.

#include <cmath>

#include "tests/entries/StatisticRules.h"

namespace Zorvan::Test {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float largest = std::numeric_limits<float>::max();
const float nan = std::numeric_limits<float>::quiet_NaN();

/// The rows after the one with the type's limit lie in unreadable memory.
template <class T>
void expectEnd(int (*routine)(const T*, int, Size, T*), T limit, T other) {
  for (const int width : {1, 3, 10, 11, 15, 16, 17, 31, 32, 33, 64, 65, 128, 129, 200, 256, 257, 700}) {
    for (const int place : {0, width / 2, width - 1}) {
      for (const int row : {0, 1, 2, 3, 4}) {
        const int step = width * static_cast<int>(sizeof(T));
        std::vector<T> pixels(static_cast<std::size_t>(width) * (row + 1), other);
        pixels[static_cast<std::size_t>(row) * width + place] = limit;
        const Block rows(0, pixels.size() * sizeof(T), {Placement::Edge::back, 0}, 1);
        std::memcpy(rows.data(), pixels.data(), pixels.size() * sizeof(T));
        for (const int height : {row + 1, 100, 101}) {
          T result{};
          const std::string fault = faultOf([&] {
            EXPECT_EQ(routine(reinterpret_cast<const T*>(rows.data()), step, {width, height}, &result), 0);
          });
          EXPECT_EQ(fault, "") << width << " " << place << " " << row;
          EXPECT_EQ(result, limit) << width << " " << place << " " << row;
        }
      }
    }
  }
}

/// Without the type's limit the search reads the unreadable memory after the row.
template <class T>
void expectNoEnd(int (*routine)(const T*, int, Size, T*), T nearLimit) {
  for (const int width : {1, 11, 16, 40}) {
    const auto bytes = static_cast<std::size_t>(width) * sizeof(T);
    const Block row(0, bytes, {Placement::Edge::back, 0}, 1);
    const std::vector<T> pixels(static_cast<std::size_t>(width), nearLimit);
    std::memcpy(row.data(), pixels.data(), bytes);
    T result{};
    const std::string fault = faultOf([&] {
      routine(reinterpret_cast<const T*>(row.data()), 4096, {width, 100}, &result);
    });
    EXPECT_NE(fault, "") << width;
  }
}

void integers(int variant) {
  expectEnd<u8>(ROUTINE(ippiMin_8u_C1R, variant), 0, 7);
  expectEnd<u8>(ROUTINE(ippiMax_8u_C1R, variant), 255, 7);
  expectEnd<u16>(ROUTINE(ippiMin_16u_C1R, variant), 0, 0x8000);
  expectEnd<u16>(ROUTINE(ippiMax_16u_C1R, variant), 0xFFFF, 0x7FFF);
  expectEnd<s16>(ROUTINE(ippiMin_16s_C1R, variant), -32768, 7);
  expectEnd<s16>(ROUTINE(ippiMax_16s_C1R, variant), 32767, -7);
  expectNoEnd<u8>(ROUTINE(ippiMin_8u_C1R, variant), 1);
  expectNoEnd<u8>(ROUTINE(ippiMax_8u_C1R, variant), 254);
  expectNoEnd<u16>(ROUTINE(ippiMin_16u_C1R, variant), 1);
  expectNoEnd<u16>(ROUTINE(ippiMax_16u_C1R, variant), 0xFFFE);
  expectNoEnd<s16>(ROUTINE(ippiMin_16s_C1R, variant), -32767);
  expectNoEnd<s16>(ROUTINE(ippiMax_16s_C1R, variant), 32766);
  expectNoEnd<float>(ROUTINE(ippiMin_32f_C1R, variant), -infinity);
  expectNoEnd<float>(ROUTINE(ippiMax_32f_C1R, variant), infinity);
}

/// Regions that are prefetched, at either distance, with the extreme in their last row.
template <class T>
void expectLast(int (*routine)(const T*, int, Size, T*), T best) {
  for (const Size roi : {Size{1600, 1001}, Size{3001, 2800}}) {
    const std::size_t count = static_cast<std::size_t>(roi.width) * roi.height;
    std::vector<T> pixels(count, T{100});
    for (const std::size_t place : {count - 1, count - 1500}) {
      pixels[place] = best;
      EXPECT_EQ(found(routine, pixels, roi), best) << roi.width;
      pixels[place] = T{100};
    }
  }
}

void largeRegions(int variant) {
  expectLast<u8>(ROUTINE(ippiMin_8u_C1R, variant), 99);
  expectLast<u8>(ROUTINE(ippiMax_8u_C1R, variant), 101);
  expectLast<u16>(ROUTINE(ippiMin_16u_C1R, variant), 99);
  expectLast<u16>(ROUTINE(ippiMax_16u_C1R, variant), 101);
  expectLast<s16>(ROUTINE(ippiMin_16s_C1R, variant), -99);
  expectLast<s16>(ROUTINE(ippiMax_16s_C1R, variant), 101);
  expectLast<float>(ROUTINE(ippiMin_32f_C1R, variant), 99.5f);
  expectLast<float>(ROUTINE(ippiMax_32f_C1R, variant), 100.5f);
}

void infinities(int variant) {
  const auto minimum = ROUTINE(ippiMin_32f_C1R, variant);
  const auto maximum = ROUTINE(ippiMax_32f_C1R, variant);
  for (const int width : {1, 2, 7, 8, 9, 16, 17, 40, 100}) {
    const auto count = static_cast<std::size_t>(width);
    const std::vector<float> above(count, infinity), below(count, -infinity);
    EXPECT_EQ(found(minimum, above, {width, 1}), variant < avx2 ? largest : infinity) << width;
    EXPECT_EQ(found(maximum, below, {width, 1}), variant < avx2 ? -largest : -infinity) << width;
    EXPECT_EQ(found(minimum, below, {width, 1}), -infinity) << width;
    EXPECT_EQ(found(maximum, above, {width, 1}), infinity) << width;
  }
}

/// One column: all pixels share a lane.
void nansInOneLane(int variant) {
  // The next pixel replaces the NaN, and the values before the NaN are lost. The first pixel is not, where
  // all lanes start with it.
  const bool firstIsKept = variant == avx512;
  EXPECT_EQ(found(ROUTINE(ippiMin_32f_C1R, variant), std::vector<float>{3, nan, 5}, {1, 3}),
            firstIsKept ? 3 : 5);
  EXPECT_EQ(found(ROUTINE(ippiMax_32f_C1R, variant), std::vector<float>{9, nan, 5}, {1, 3}),
            firstIsKept ? 9 : 5);
  // A NaN as the last pixel is the result where there are no other lanes.
  if (variant == avx2) {
    EXPECT_TRUE(std::isnan(found(ROUTINE(ippiMin_32f_C1R, variant), std::vector<float>{3, nan}, {1, 2})));
  }
  // A row of NaNs after a row of numbers: every lane loses its number.
  std::vector<float> rows(128, 1.0f);
  for (std::size_t i = 64; i < 128; ++i) rows[i] = nan;
  EXPECT_TRUE(std::isnan(found(ROUTINE(ippiMax_32f_C1R, variant), rows, {64, 2})));
  for (std::size_t i = 0; i < 128; ++i) rows[i] = i < 64 ? nan : 2.0f;
  EXPECT_EQ(found(ROUTINE(ippiMin_32f_C1R, variant), rows, {64, 2}), 2.0f);
}

void equalZeros(int variant) {
  for (const auto routine : {ROUTINE(ippiMin_32f_C1R, variant), ROUTINE(ippiMax_32f_C1R, variant)}) {
    const float later = found(routine, std::vector<float>(64, -0.0f), {64, 1});
    EXPECT_TRUE(later == 0 && std::signbit(later));
    std::vector<float> rows(128, -0.0f);
    for (std::size_t i = 64; i < 128; ++i) rows[i] = 0.0f;
    EXPECT_FALSE(std::signbit(found(routine, rows, {64, 2})));
    for (float& value : rows) value = -value;
    EXPECT_TRUE(std::signbit(found(routine, rows, {64, 2})));
  }
}

}  // namespace

void registerEntryTests() {
  registerForEachVariant("Extreme", "endsAfterTheRowWithTheLimit", integers);
  registerForEachVariant("Extreme", "ofLargeRegions", largeRegions);
  registerForEachVariant("Extreme", "infinities", infinities);
  registerForEachVariant("Extreme", "nextPixelReplacesNaN", nansInOneLane);
  registerForEachVariant("Extreme", "keepsTheLaterOfEqualZeros", equalZeros);
}

}  // namespace Zorvan::Test
