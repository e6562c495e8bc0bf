#pragma once

// Masked extremes of floats row by row: the older variants.
//
// Both current values start at the first selected pixel. From its row on, the lanes of each row start at the
// current values, and unselected pixels count as neutral ones. A row with a better value replaces the current
// value and its row, so the row is the first one with the extreme. Only that row is searched again for the
// column: the first one with the extreme.

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

template <class Replaces>
class FloatExtremesByRow {
 public:
  static MaskedExtremes find(Plane<const float> src, Plane<const u8> mask, Size roi) {
    const FirstSelected first = firstSelected(mask, roi);
    if (first.row == roi.height) return {};
    float low = loadAs<float>(src.at(first.row, first.column)), high = low;
    int lowRow = first.row, highRow = first.row;
    for (int r = first.row; r < roi.height; ++r) {
      const Extremes found = extremesOf(src.at(r), mask.at(r), roi.width, low, high);
      if (Replaces::low(found.low, low)) {
        low = found.low;
        lowRow = r;
      }
      if (Replaces::high(found.high, high)) {
        high = found.high;
        highRow = r;
      }
    }
    const auto place = [&](float value, int row) {
      return Point{columnOf(value, src.at(row), mask.at(row), roi.width), row};
    };
    return {low, high, place(low, lowRow), place(high, highRow)};
  }

 private:
  struct Extremes {
    float low, high;
  };

  /// 4 pixels in an iteration, then single ones. Unselected lanes take the infinity that is neutral.
  static Extremes extremesOf(const float* p, const u8* m, std::int64_t left, float low, float high) {
    __m128 lows = _mm_set1_ps(low), highs = _mm_set1_ps(high);
    for (; left >= 4; p += 4, m += 4, left -= 4) {
      const __m128 none = _mm_castsi128_ps(bytesToDwords(unselected(loadLow<4>(m))));
      const __m128 values = _mm_andnot_ps(none, loadAs<__m128>(p));
      const auto orElse = [=](float neutral) {
        return _mm_or_ps(values, _mm_and_ps(none, _mm_set1_ps(neutral)));
      };
      lows = Low<float>::better(lows, orElse(infinite<float>));
      highs = High<float>::better(highs, orElse(-infinite<float>));
    }
    low = Low<float>::bestOf(lows);
    high = High<float>::bestOf(highs);
    for (; left != 0; ++p, ++m, --left) {
      const auto value = loadAs<float>(p);
      low = Low<float>::better(low, *m != 0 ? value : infinite<float>);
      high = High<float>::better(high, *m != 0 ? value : -infinite<float>);
    }
    return {low, high};
  }

  /// The first selected column with the value, or the first selected one where the value is NaN.
  static int columnOf(float value, const float* row, const u8* mask, int width) {
    const auto equal4 = [=](int c) {
      return _mm_castps_si128(_mm_cmpeq_ps(loadAs<__m128>(row + c), _mm_set1_ps(value)));
    };
    const int column = firstColumn(
        width,
        [=](int c) {
          const __m128i equal = _mm_packs_epi16(_mm_packs_epi32(equal4(c), equal4(c + 4)),
                                                _mm_packs_epi32(equal4(c + 8), equal4(c + 12)));
          return bitsOf(equal & ~unselected(Vector16::load(mask + c).bits));
        },
        [=](int c) { return mask[c] != 0 && loadAs<float>(row + c) == value; });
    return column >= 0 ? column : firstSelected(mask, width);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
