#pragma once

// Masked extremes row by row: bytes in all variants, floats in the older ones.
//
// The first selected pixel starts both running values. From its row on, the lanes of each row start at the
// running values, unselected lanes take a neutral value, and a row that is better takes the running value
// over with its number. So the number kept is that of the first row with the extreme, and only that row is
// walked again for the column. Of several pixels with the extreme value the first in raster order counts.

#include <limits>

#include "zorvan/primitives/kernels/statistic/extreme_floats.h"
#include "zorvan/primitives/kernels/statistic/extreme_lanes.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme.h"

namespace Zorvan::Primitives {
namespace {

/// A row's lanes of one direction, 16 bytes a step over four accumulators.
template <Seek seek>
class ByteLanes {
  using Lanes = ExtremeLanes<seek, std::uint8_t>;

 public:
  explicit ByteLanes(std::uint8_t running)
      : start_(Lanes::template spread<Vector16>(running)),
        a_(start_),
        b_(start_),
        c_(start_),
        d_(start_),
        single_(running) {}

  template <class Selection>
  void add64(const Selection (&chosen)[4], const __m128i (&pixels)[4]) {
    a_ = chosen[0].template better<Lanes>(a_, pixels[0]);
    b_ = chosen[1].template better<Lanes>(b_, pixels[1]);
    c_ = chosen[2].template better<Lanes>(c_, pixels[2]);
    d_ = chosen[3].template better<Lanes>(d_, pixels[3]);
  }
  template <class Selection>
  void add16(Selection chosen, __m128i pixels) {
    a_ = chosen.template better<Lanes>(a_, pixels);
  }
  void addOne(std::uint8_t pixel, std::uint8_t mask) {
    const auto chosen = static_cast<std::uint8_t>(selectedBits(mask));
    const int filled = Lanes::low ? pixel | static_cast<std::uint8_t>(~chosen) : pixel & chosen;
    single_ = Lanes::better(single_, static_cast<std::uint8_t>(filled));
  }

  /// The row's extreme. Most rows change nothing, which is quicker told than the extreme of the lanes.
  std::uint8_t found() const {
    const __m128i lanes = Lanes::better(Lanes::better(a_, b_), Lanes::better(c_, d_));
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(lanes, start_)) == 0xFFFF) return single_;
    return Lanes::better(Lanes::bestOf(lanes), single_);
  }

 private:
  __m128i start_, a_, b_, c_, d_;
  std::uint8_t single_;
};

/// Unselected lanes as all bits set.
struct BlendedSelection {
  __m128i none;

  static BlendedSelection of(__m128i mask) { return {unselected(mask)}; }
  template <class Lanes>
  __m128i better(__m128i held, __m128i pixels) const {
    return Lanes::better(held, Lanes::low ? _mm_or_si128(none, pixels) : _mm_andnot_si128(none, pixels));
  }
};

/// 16 pixels a step, four steps a turn where there are as many, then 8 and singly.
template <class Selection>
struct ByteRows {
  using Pixel = std::uint8_t;
  struct Extremes {
    Pixel low, high;
  };

  static Extremes row(const Pixel* p, const std::uint8_t* m, std::int64_t left, Pixel low, Pixel high) {
    ByteLanes<Seek::minimum> lows(low);
    ByteLanes<Seek::maximum> highs(high);
    for (; left >= 64; p += 64, m += 64, left -= 64) {
      const Selection chosen[4] = {
          Selection::of(Vector16::load(m).bits), Selection::of(Vector16::load(m + 16).bits),
          Selection::of(Vector16::load(m + 32).bits), Selection::of(Vector16::load(m + 48).bits)};
      const __m128i pixels[4] = {Vector16::load(p).bits, Vector16::load(p + 16).bits,
                                 Vector16::load(p + 32).bits, Vector16::load(p + 48).bits};
      lows.add64(chosen, pixels);
      highs.add64(chosen, pixels);
    }
    for (; left >= 16; p += 16, m += 16, left -= 16) {
      const Selection chosen = Selection::of(Vector16::load(m).bits);
      lows.add16(chosen, Vector16::load(p).bits);
      highs.add16(chosen, Vector16::load(p).bits);
    }
    if (left >= 8) {
      const Selection chosen = Selection::of(loadLow8(m));
      lows.add16(chosen, loadLow8(p));
      highs.add16(chosen, loadLow8(p));
      p += 8, m += 8, left -= 8;
    }
    for (; left != 0; ++p, ++m, --left) {
      lows.addOne(*p, *m);
      highs.addOne(*p, *m);
    }
    return {lows.found(), highs.found()};
  }
  static bool replacesLow(Pixel low, Pixel running) { return low < running; }
  static bool replacesHigh(Pixel high, Pixel running) { return high > running; }
};

#ifdef __AVX512BW__
/// The same steps with selected lanes as bits of a mask register.
struct RegisterByteRows : ByteRows<BlendedSelection> {
  static Extremes row(const Pixel* p, const std::uint8_t* m, std::int64_t left, Pixel low, Pixel high) {
    const __m128i lowStart = _mm_set1_epi8(static_cast<char>(low));
    const __m128i highStart = _mm_set1_epi8(static_cast<char>(high));
    __m128i lows = lowStart, highs = highStart;
    const auto step = [&](__m128i mask, __m128i pixels) {
      const __mmask16 chosen = _mm_test_epi8_mask(mask, mask);
      lows = _mm_mask_min_epu8(lows, chosen, lows, pixels);
      highs = _mm_mask_max_epu8(highs, chosen, highs, pixels);
    };
    for (; left >= 64; p += 64, m += 64, left -= 64) {
      step(Vector16::load(m).bits, Vector16::load(p).bits);
      step(Vector16::load(m + 16).bits, Vector16::load(p + 16).bits);
      step(Vector16::load(m + 32).bits, Vector16::load(p + 32).bits);
      step(Vector16::load(m + 48).bits, Vector16::load(p + 48).bits);
    }
    for (; left > 0; p += 16, m += 16, left -= 16) {
      const __mmask16 inRow = static_cast<__mmask16>(left < 16 ? (1u << left) - 1 : 0xFFFFu);
      step(_mm_maskz_loadu_epi8(inRow, m), _mm_maskz_loadu_epi8(inRow, p));
    }
    const __mmask16 changed = _mm_cmpneq_epu8_mask(lows, lowStart) | _mm_cmpneq_epu8_mask(highs, highStart);
    if (changed == 0) return {low, high};
    return {ExtremeLanes<Seek::minimum, Pixel>::bestOf(lows),
            ExtremeLanes<Seek::maximum, Pixel>::bestOf(highs)};
  }
};
#endif

/// A row replaces a running value when it is strictly better.
struct StrictlyBetter {
  static bool low(float value, float running) { return value < running; }
  static bool high(float value, float running) { return value > running; }
};
/// A row replaces a running value when it differs. The lanes start there, so that it can only be better,
/// unless a NaN has taken them over: then a later row may take the value back.
struct Different {
  static bool low(float value, float running) { return value < running || value > running; }
  static bool high(float value, float running) { return value < running || value > running; }
};

/// 4 pixels a step, then singly. Unselected lanes take the infinity that nothing but itself is equal to.
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
      const __m128 none = _mm_castsi128_ps(bytesToDwords(unselected(loadLow4(m))));
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
  static bool replacesLow(float low, float running) { return Replaces::low(low, running); }
  static bool replacesHigh(float high, float running) { return Replaces::high(high, running); }
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

  /// The first selected pixel with the value, two a step; the first selected one if a NaN has none.
  static int columnOf(T value, const T* row, const std::uint8_t* mask, int width) {
    const auto matches = [&](int c) { return mask[c] != 0 && pixel(row, c) == value; };
    int c = 0;
    for (; width - c >= 2; c += 2) {
      if (matches(c)) return c;
      if (matches(c + 1)) return c + 1;
    }
    if (c < width && matches(c)) return c;
    return firstSelected(mask, width);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
