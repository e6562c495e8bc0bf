#pragma once

// Masked extremes of floats in two passes: the two newest variants.
//
// The first pass finds the values, 64 pixels in an iteration with four accumulators for each direction, which
// start at the infinities. The second pass finds the first selected pixel with each value; it skips the rows
// before the block in which the first pass found the value. A NaN as an extreme equals no pixel; then the
// result is empty.

#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// The extremes: from which block of rows on they lie, and what the second pass has found.
class ExtremePlaces {
 public:
  /// The lanes' values after the block that starts with row `from`. Called for each block in order.
  void note(float low, float high, int from) {
    if (low != found_.minValue) lowFrom_ = from;
    if (high != found_.maxValue) highFrom_ = from;
    found_.minValue = low;
    found_.maxValue = high;
  }
  float low() const { return found_.minValue; }
  float high() const { return found_.maxValue; }

  /// Ends the first pass. A NaN drops the value of its lane: then the extremes may lie in any row.
  void settle(bool hasNaN) {
    if (hasNaN) lowFrom_ = highFrom_ = 0;
    from_ = lowFrom_ < highFrom_ ? lowFrom_ : highFrom_;
  }

  /// The first row that may have a value that is not found yet.
  int from() const { return from_; }

  /// `lows` and `highs` have a bit for each pixel from (row, column) on that has the value. Returns whether
  /// both values are found.
  bool match(unsigned lows, unsigned highs, int row, std::int64_t column) {
    if ((lows | highs) == 0) return false;
    const auto first = [=](unsigned bits) {
      return Point{static_cast<int>(column) + lowestSetBit(bits), row};
    };
    if (lows != 0 && !hasLow_) {
      hasLow_ = true;
      found_.minIndex = first(lows);
      from_ = highFrom_;
    }
    if (highs != 0 && !hasHigh_) {
      hasHigh_ = true;
      found_.maxIndex = first(highs);
      from_ = lowFrom_;
    }
    return complete();
  }

  bool complete() const { return hasLow_ && hasHigh_; }
  MaskedExtremes result() const { return complete() ? found_ : MaskedExtremes{}; }

 private:
  MaskedExtremes found_{infinite<float>, -infinite<float>, {0, 0}, {0, 0}};
  int lowFrom_ = 0, highFrom_ = 0, from_ = 0;
  bool hasLow_ = false, hasHigh_ = false;
};

/// `Search` is a `SelectedFloats`.
template <class Search>
class ExtremesInTwoPasses {
 public:
  static MaskedExtremes find(Plane<const float> src, Plane<const u8> mask, Size roi) {
    ExtremePlaces places = findValues(src, mask, roi);
    const float low = places.low(), high = places.high();
    // The rows of the first block, which has one of the extremes unless there was a NaN, then all others.
    int r = places.from();
    int end = endOfBlock(r, roi);
    for (;;) {
      for (; r < end && !places.complete(); ++r) {
        Search::placesIn(places, low, high, src.at(r), mask.at(r), r, roi.width);
      }
      if (end == roi.height || places.complete()) return places.result();
      end = roi.height;
      if (r < places.from()) r = places.from();
    }
  }

 private:
  static ExtremePlaces findValues(Plane<const float> src, Plane<const u8> mask, Size roi) {
    return withPrefetch(roi, 5, [&](auto prefetchAfter) {
      Search search;
      ExtremePlaces places;
      for (int from = 0, end; from < roi.height; from = end) {
        end = endOfBlock(from, roi);
        for (int r = from; r < end; ++r) search.row(src.at(r), mask.at(r), roi.width, prefetchAfter);
        places.note(search.low(), search.high(), from);
      }
      places.settle(search.hasNaN());
      return places;
    });
  }
};

/// The accumulators of the first pass, and the second pass over a row.
template <class Vector>
class SelectedFloats;

/// The bits of infinity, doubled as an integer, which drops the sign. Only those of a NaN are more. A
/// comparison of integers raises no floating-point flag.
constexpr int twiceInfinity = static_cast<int>(0xFF000000);

#ifdef __AVX2__
template <>
class SelectedFloats<Vector32> {
 public:
  void row(const float* p, const u8* m, std::int64_t left, auto prefetchAfter) {
    for (; left >= 64; p += 64, m += 64, left -= 64) {
      for (int i = 0; i < 8; ++i) {
        if (i % 2 == 0) prefetchAfter(p + 8 * i);
        add(i % 4, p + 8 * i, m + 8 * i);
      }
    }
    for (; left >= 16; p += 16, m += 16, left -= 16) {
      add(0, p, m);
      add(1, p + 8, m + 8);
    }
    for (; left > 0; p += 8, m += 8, left -= 8) {
      const __m256i none = unselectedOf(m, left);
      add(2, valuesOf(p, none, left), none);
    }
  }

  float low() const {
    return Low<float>::bestOf(
        Low<float>::better(Low<float>::better(lows_[0], lows_[1]), Low<float>::better(lows_[2], lows_[3])));
  }
  float high() const {
    return High<float>::bestOf(High<float>::better(High<float>::better(highs_[0], highs_[1]),
                                                   High<float>::better(highs_[2], highs_[3])));
  }
  bool hasNaN() const {
    const __m256i limit = _mm256_set1_epi32(twiceInfinity);
    const __m256i within = _mm256_cmpeq_epi32(_mm256_max_epu32(magnitudes_, limit), limit);
    return _mm256_movemask_epi8(within) != -1;
  }

  static void placesIn(ExtremePlaces& places, float low, float high, const float* p, const u8* m, int row,
                       int width) {
    const __m256 lows = _mm256_set1_ps(low), highs = _mm256_set1_ps(high);
    for (int c = 0; c < width; c += 8) {
      const __m256i none = unselectedOf(m + c, width - c);
      const __m256 values = valuesOf(p + c, none, width - c);
      const auto matching = [&](__m256 value) {
        const __m256 equal = _mm256_cmp_ps(values, value, _CMP_EQ_OQ);
        return static_cast<unsigned>(_mm256_movemask_ps(_mm256_andnot_ps(_mm256_castsi256_ps(none), equal)));
      };
      if (places.match(matching(lows), matching(highs), row, c)) return;
    }
  }

 private:
  void add(int lane, const float* p, const u8* m) {
    add(lane, loadAs<__m256>(p), unselectedDwords(loadLow<8>(m)));
  }
  void add(int lane, __m256 values, __m256i none) {
    const auto orElse = [=](float neutral) {
      return _mm256_blendv_ps(values, _mm256_set1_ps(neutral), _mm256_castsi256_ps(none));
    };
    const __m256 selected = orElse(infinite<float>);
    lows_[lane] = Low<float>::better(lows_[lane], selected);
    const __m256i bits = _mm256_castps_si256(selected);
    magnitudes_ = _mm256_max_epu32(magnitudes_, _mm256_add_epi32(bits, bits));
    highs_[lane] = High<float>::better(highs_[lane], orElse(-infinite<float>));
  }

  /// Of eight pixels or the last `left` ones of a row.
  static __m256i unselectedOf(const u8* m, std::int64_t left) {
    return unselectedDwords(left >= 8 ? loadLow<8>(m) : loadFirst16(m, left));
  }
  static __m256 valuesOf(const float* p, __m256i none, std::int64_t left) {
    return left >= 8 ? loadAs<__m256>(p) : loadMaskedFloats(~none, p);
  }

  static __m256 all(float value) { return _mm256_set1_ps(value); }
  __m256 lows_[4] = {all(infinite<float>), all(infinite<float>), all(infinite<float>), all(infinite<float>)};
  __m256 highs_[4] = {all(-infinite<float>), all(-infinite<float>), all(-infinite<float>),
                      all(-infinite<float>)};
  __m256i magnitudes_ = _mm256_setzero_si256();  // doubled bits, without the sign
};
#endif

#ifdef __AVX512BW__
template <>
class SelectedFloats<Vector64> {
 public:
  void row(const float* p, const u8* m, std::int64_t pixels, auto prefetchAfter) {
    forEachSelection(m, pixels, [&](std::int64_t c, __mmask64 selected) {
      prefetchAfter(p + c, 256);
      prefetchAfter(m + c);
      a_.add(sixteenOf<0>(selected), p + c);
      b_.add(sixteenOf<1>(selected), p + c + 16);
      c_.add(sixteenOf<2>(selected), p + c + 32);
      d_.add(sixteenOf<3>(selected), p + c + 48);
    });
  }

  float low() const {
    return Low<float>::bestOf(
        Low<float>::better(Low<float>::better(a_.low, b_.low), Low<float>::better(c_.low, d_.low)));
  }
  float high() const {
    return High<float>::bestOf(
        High<float>::better(High<float>::better(a_.high, b_.high), High<float>::better(c_.high, d_.high)));
  }
  bool hasNaN() const { return a_.hasNaN() || b_.hasNaN() || c_.hasNaN() || d_.hasNaN(); }

  static void placesIn(ExtremePlaces& places, float low, float high, const float* p, const u8* m, int row,
                       int width) {
    const __m512 lows = _mm512_set1_ps(low), highs = _mm512_set1_ps(high);
    for (int c = 0; c < width; c += 16) {
      const __m128i mask = loadMaskedBytes(firstLanes<__mmask16>(width - c < 16 ? width - c : 16), m + c);
      const __mmask16 selected = _mm_test_epi8_mask(mask, mask);
      const __m512 values = loadMaskedFloats(selected, p + c);
      if (places.match(_mm512_mask_cmp_ps_mask(selected, values, lows, _CMP_EQ_OQ),
                       _mm512_mask_cmp_ps_mask(selected, values, highs, _CMP_EQ_OQ), row, c)) {
        return;
      }
    }
  }

 private:
  struct Accumulators {
    __m512 low = _mm512_set1_ps(infinite<float>), high = _mm512_set1_ps(-infinite<float>);
    __m512i magnitudes = _mm512_setzero_si512();

    void add(__mmask16 selected, const float* p) {
      const __m512 values = loadMaskedFloats(selected, p);
      low = Low<float>::better(low, selected, values);
      high = High<float>::better(high, selected, values);
      const __m512i bits = _mm512_castps_si512(values);
      magnitudes = _mm512_max_epu32(magnitudes, _mm512_add_epi32(bits, bits));
    }
    bool hasNaN() const { return _mm512_cmpgt_epu32_mask(magnitudes, _mm512_set1_epi32(twiceInfinity)) != 0; }
  };

  Accumulators a_, b_, c_, d_;
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
