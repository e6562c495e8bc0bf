#pragma once

// Masked extremes of floats row by row: the older variants.
//
// Both current values start at the first selected pixel. From its row on, the lanes of each row start at the
// current values, and unselected pixels count as neutral ones. A row with a better value replaces the current
// value and its row, so the row is the first one with the extreme. Only that row is searched again for the
// column: the first one with the extreme.

#include <limits>

#include "zorvan/primitives/kernels/statistic/extreme/extreme_floats.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// A row's value replaces the current one where it is strictly better.
struct StrictlyBetter {
  static bool low(float value, float current) { return value < current; }
  static bool high(float value, float current) { return value > current; }
};
/// A row's value replaces the current one where it differs. The lanes start at the current value, so a value
/// that differs is better, unless a NaN has replaced a lane: then it may be worse.
struct Different {
  static bool low(float value, float current) { return value < current || value > current; }
  static bool high(float value, float current) { return value < current || value > current; }
};

/// 4 pixels in an iteration, then single ones. Unselected lanes take the infinity that is neutral.
template <class Replaces>
struct FloatRows {
  using Pixel = float;
  struct Extremes {
    Pixel low, high;
  };

  static Extremes row(const float* src, const std::uint8_t* m, std::int64_t left, float low, float high) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const char* p = reinterpret_cast<const char*>(src);
    __m128 lows = _mm_set1_ps(low), highs = _mm_set1_ps(high);
    for (; left >= 4; p += 16, m += 4, left -= 4) {
      const __m128 none = _mm_castsi128_ps(bytesToDwords(unselected(loadLow<4>(m))));
      const __m128 values = _mm_andnot_ps(none, _mm_castsi128_ps(Vector16::load(p).bits));
      lows = _mm_min_ps(lows, _mm_or_ps(values, _mm_and_ps(none, _mm_set1_ps(infinity))));
      highs = _mm_max_ps(highs, _mm_or_ps(values, _mm_and_ps(none, _mm_set1_ps(-infinity))));
    }
    low = FloatLanes<Seek::minimum>::bestOf(lows);
    high = FloatLanes<Seek::maximum>::bestOf(highs);
    for (; left != 0; p += 4, ++m, --left) {
      const auto value = loadAs<float>(p);
      low = FloatLanes<Seek::minimum>::better(low, *m != 0 ? value : infinity);
      high = FloatLanes<Seek::maximum>::better(high, *m != 0 ? value : -infinity);
    }
    return {low, high};
  }
  static __m128i equal16(const float* p, float value) {
    const auto four = [=](int c) {
      const __m128 values = _mm_castsi128_ps(Vector16::load(p + c).bits);
      return _mm_castps_si128(_mm_cmpeq_ps(values, _mm_set1_ps(value)));
    };
    return _mm_packs_epi16(_mm_packs_epi32(four(0), four(4)), _mm_packs_epi32(four(8), four(12)));
  }
  static bool replacesLow(float low, float current) { return Replaces::low(low, current); }
  static bool replacesHigh(float high, float current) { return Replaces::high(high, current); }
};

template <class Rows>
class ExtremesByRow {
  using T = typename Rows::Pixel;

 public:
  static MaskedExtremes find(const T* src, int srcStep, const std::uint8_t* mask, int maskStep, Size roi) {
    const FirstSelected first = firstSelected(mask, maskStep, roi);
    if (first.row == roi.height) return {};
    T low = pixel(rowAt(src, srcStep, first.row), first.column), high = low;
    int lowRow = first.row, highRow = first.row;
    for (int r = first.row; r < roi.height; ++r) {
      const auto found = Rows::row(rowAt(src, srcStep, r), rowAt(mask, maskStep, r), roi.width, low, high);
      if (Rows::replacesLow(found.low, low)) {
        low = found.low;
        lowRow = r;
      }
      if (Rows::replacesHigh(found.high, high)) {
        high = found.high;
        highRow = r;
      }
    }
    const auto place = [&](T value, int row) {
      return Point{columnOf(value, rowAt(src, srcStep, row), rowAt(mask, maskStep, row), roi.width), row};
    };
    return {static_cast<float>(low), static_cast<float>(high), place(low, lowRow), place(high, highRow)};
  }

 private:
  static T pixel(const T* row, int column) {
    return loadAs<T>(reinterpret_cast<const char*>(row) + std::int64_t{column} * int{sizeof(T)});
  }

  /// The first selected column with the value, or the first selected one where the value is NaN.
  static int columnOf(T value, const T* row, const std::uint8_t* mask, int width) {
    const int column = firstColumn(
        width,
        [=](int c) {
          const __m128i none = unselected(Vector16::load(mask + c).bits);
          return bitsOf(_mm_andnot_si128(none, Rows::equal16(row + c, value)));
        },
        [=](int c) { return mask[c] != 0 && pixel(row, c) == value; });
    return column >= 0 ? column : firstSelected(mask, width);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
