#pragma once

// Masked extremes of floats in two passes: the two newest variants.
//
// The first pass finds the values, 64 pixels in an iteration with four accumulators for each direction, which
// start at the infinities. The second pass finds the first selected pixel with each value; it skips the rows
// before the block in which the first pass found the value. A NaN as an extreme equals no pixel; then the
// result is empty.

#include <limits>

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_floats.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_plan.h"

#ifdef __AVX2__
namespace Zorvan::Primitives::Statistic {
namespace {

/// The bits of infinity, doubled as an integer, which drops the sign. Only those of a NaN are more. A
/// comparison of integers raises no floating-point flag.
constexpr unsigned twiceInfinity = 0xFF000000;

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
      return Point{static_cast<int>(column) + __builtin_ctz(bits), row};
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
  static constexpr float infinity = std::numeric_limits<float>::infinity();

  MaskedExtremes found_{infinity, -infinity, {0, 0}, {0, 0}};
  int lowFrom_ = 0, highFrom_ = 0, from_ = 0;
  bool hasLow_ = false, hasHigh_ = false;
};

/// The first pass.
template <class Search>
inline ExtremePlaces findExtremes(const float* src, int srcStep, const std::uint8_t* mask, int maskStep,
                                  Size roi) {
  return withPrefetch(roi, 5, [&](auto prefetchAfter) {
    Search search;
    ExtremePlaces places;
    const int blockRows = rowsOfBlock(roi.width);
    ZORVAN_NOTE_PLAN("rowsOfBlock of all rows", blockRows >= roi.height);
    for (int from = 0, rows; from < roi.height; from += rows) {
      rows = roi.height - from < blockRows ? roi.height - from : blockRows;
      for (int r = from; r < from + rows; ++r) {
        search.row(rowBytes(src, srcStep, r), rowAt(mask, maskStep, r), roi.width, prefetchAfter);
      }
      places.note(search.low(), search.high(), from);
    }
    places.settle(search.hasNaN());
    return places;
  });
}

/// Both passes.
template <class Search>
inline MaskedExtremes findInTwoPasses(const float* src, int srcStep, const std::uint8_t* mask, int maskStep,
                                      Size roi) {
  ExtremePlaces places = findExtremes<Search>(src, srcStep, mask, maskStep, roi);
  const float low = places.low(), high = places.high();
  // The rows of the first block, which has one of the extremes unless there was a NaN, then all others.
  const int blockRows = rowsOfBlock(roi.width);
  int r = places.from();
  int end = roi.height - r < blockRows ? roi.height : r + blockRows;
  for (;;) {
    for (; r < end && !places.complete(); ++r) {
      Search::placesIn(places, low, high, rowBytes(src, srcStep, r), rowAt(mask, maskStep, r), r, roi.width);
    }
    if (end == roi.height || places.complete()) return places.result();
    end = roi.height;
    if (r < places.from()) r = places.from();
  }
}

/// 32-byte vectors.
class FloatsInTwoPasses32 {
 public:
  static MaskedExtremes find(const float* src, int srcStep, const std::uint8_t* mask, int maskStep,
                             Size roi) {
    return findInTwoPasses<FloatsInTwoPasses32>(src, srcStep, mask, maskStep, roi);
  }

  void row(const char* p, const std::uint8_t* m, std::int64_t left, auto prefetchAfter) {
    for (; left >= 64; p += 256, m += 64, left -= 64) {
      for (int i = 0; i < 8; ++i) {
        if (i % 2 == 0) prefetchAfter(p + 32 * i);
        add(i % 4, p + 32 * i, loadLow<8>(m + 8 * i));
      }
    }
    for (; left >= 16; p += 64, m += 16, left -= 16) {
      add(0, p, loadLow<8>(m));
      add(1, p + 32, loadLow<8>(m + 8));
    }
    for (; left > 0; p += 32, m += 8, left -= 8) {
      const __m256 none = _mm256_castsi256_ps(unselectedDwords(selectionOf(m, left)));
      add(2, valuesOf(p, none, left), none);
    }
  }

  float low() const {
    return Low::bestOf(Low::better(Low::better(lows_[0], lows_[1]), Low::better(lows_[2], lows_[3])));
  }
  float high() const {
    return High::bestOf(High::better(High::better(highs_[0], highs_[1]), High::better(highs_[2], highs_[3])));
  }
  bool hasNaN() const {
    const __m256i limit = _mm256_set1_epi32(static_cast<int>(twiceInfinity));
    const __m256i within = _mm256_cmpeq_epi32(_mm256_max_epu32(magnitudes_, limit), limit);
    return _mm256_movemask_epi8(within) != -1;
  }

  static void placesIn(ExtremePlaces& places, float low, float high, const char* p, const std::uint8_t* m,
                       int row, int width) {
    const __m256 lows = _mm256_set1_ps(low), highs = _mm256_set1_ps(high);
    for (int c = 0; c < width; c += 8) {
      const std::int64_t left = width - c;
      const __m256 none = _mm256_castsi256_ps(unselectedDwords(selectionOf(m + c, left)));
      const __m256 values = valuesOf(p + 4 * std::int64_t{c}, none, left);
      const auto matching = [&](__m256 value) {
        const __m256 equal = _mm256_andnot_ps(none, _mm256_cmp_ps(values, value, _CMP_EQ_OQ));
        return static_cast<unsigned>(_mm256_movemask_ps(equal));
      };
      if (places.match(matching(lows), matching(highs), row, c)) return;
    }
  }

 private:
  static constexpr float infinity = std::numeric_limits<float>::infinity();
  using Low = FloatLanes<Seek::minimum>;
  using High = FloatLanes<Seek::maximum>;

  /// Eight pixels.
  void add(int lane, const char* p, __m128i selection) {
    const __m256 none = _mm256_castsi256_ps(unselectedDwords(selection));
    add(lane, _mm256_castsi256_ps(Vector32::load(p).bits), none);
  }
  void add(int lane, __m256 values, __m256 none) {
    const __m256 selected = _mm256_blendv_ps(values, _mm256_set1_ps(infinity), none);
    lows_[lane] = Low::better(lows_[lane], selected);
    const __m256i bits = _mm256_castps_si256(selected);
    magnitudes_ = _mm256_max_epu32(magnitudes_, _mm256_add_epi32(bits, bits));
    highs_[lane] = High::better(highs_[lane], _mm256_blendv_ps(values, _mm256_set1_ps(-infinity), none));
  }

  static __m128i selectionOf(const std::uint8_t* m, std::int64_t left) {
    if (left >= 8) return loadLow<8>(m);
    std::uint64_t bytes = 0;
    for (std::int64_t i = 0; i < left; ++i) bytes |= std::uint64_t{m[i]} << (8 * i);
    return _mm_cvtsi64_si128(static_cast<std::int64_t>(bytes));
  }
  static __m256 valuesOf(const char* p, __m256 none, std::int64_t left) {
    if (left >= 8) return _mm256_castsi256_ps(Vector32::load(p).bits);
    return _mm256_maskload_ps(reinterpret_cast<const float*>(p),
                              _mm256_xor_si256(_mm256_castps_si256(none), _mm256_set1_epi32(-1)));
  }

  __m256 lows_[4] = {_mm256_set1_ps(infinity), _mm256_set1_ps(infinity), _mm256_set1_ps(infinity),
                     _mm256_set1_ps(infinity)};
  __m256 highs_[4] = {_mm256_set1_ps(-infinity), _mm256_set1_ps(-infinity), _mm256_set1_ps(-infinity),
                      _mm256_set1_ps(-infinity)};
  __m256i magnitudes_ = _mm256_setzero_si256();  // doubled bits, without the sign
};

#ifdef __AVX512BW__
/// 64-byte vectors.
class FloatsInTwoPasses64 {
 public:
  static MaskedExtremes find(const float* src, int srcStep, const std::uint8_t* mask, int maskStep,
                             Size roi) {
    return findInTwoPasses<FloatsInTwoPasses64>(src, srcStep, mask, maskStep, roi);
  }

  void row(const char* p, const std::uint8_t* m, std::int64_t pixels, auto prefetchAfter) {
    forEachSelection(m, pixels, [&](std::int64_t c, __mmask64 selected) {
      const char* const at = p + 4 * c;
      prefetchAfter(at, 256);
      prefetchAfter(m + c);
      a_.add(sixteenOf<0>(selected), at);
      b_.add(sixteenOf<1>(selected), at + 64);
      c_.add(sixteenOf<2>(selected), at + 128);
      d_.add(sixteenOf<3>(selected), at + 192);
    });
  }

  float low() const {
    return Low::bestOf(Low::better(Low::better(a_.low, b_.low), Low::better(c_.low, d_.low)));
  }
  float high() const {
    return High::bestOf(High::better(High::better(a_.high, b_.high), High::better(c_.high, d_.high)));
  }
  bool hasNaN() const { return a_.hasNaN() || b_.hasNaN() || c_.hasNaN() || d_.hasNaN(); }

  static void placesIn(ExtremePlaces& places, float low, float high, const char* p, const std::uint8_t* m,
                       int row, int width) {
    const __m512 lows = _mm512_set1_ps(low), highs = _mm512_set1_ps(high);
    for (int c = 0; c < width; c += 16) {
      const __mmask16 inRow = static_cast<__mmask16>(width - c < 16 ? (1u << (width - c)) - 1 : 0xFFFFu);
      const __m128i selection = _mm_maskz_loadu_epi8(inRow, m + c);
      const __mmask16 selected = _mm_test_epi8_mask(selection, selection);
      const __m512 values = _mm512_maskz_loadu_ps(selected, p + 4 * std::int64_t{c});
      if (places.match(_mm512_mask_cmp_ps_mask(selected, values, lows, _CMP_EQ_OQ),
                       _mm512_mask_cmp_ps_mask(selected, values, highs, _CMP_EQ_OQ), row, c)) {
        return;
      }
    }
  }

 private:
  using Low = FloatLanes<Seek::minimum>;
  using High = FloatLanes<Seek::maximum>;

  struct Pair {
    static constexpr float infinity = std::numeric_limits<float>::infinity();
    __m512 low = _mm512_set1_ps(infinity), high = _mm512_set1_ps(-infinity);
    __m512i magnitudes = _mm512_setzero_si512();

    void add(__mmask16 selected, const char* p) {
      const __m512 values = _mm512_maskz_loadu_ps(selected, p);
      low = Low::better(low, selected, values);
      high = High::better(high, selected, values);
      const __m512i bits = _mm512_castps_si512(values);
      magnitudes = _mm512_max_epu32(magnitudes, _mm512_add_epi32(bits, bits));
    }
    bool hasNaN() const {
      return _mm512_cmpgt_epu32_mask(magnitudes, _mm512_set1_epi32(static_cast<int>(twiceInfinity))) != 0;
    }
  };

  Pair a_, b_, c_, d_;
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
#endif
