#pragma once

// Masked extremes of bytes in blocks of rows.
//
// Both current values start at the first selected pixel. From its row on, the lanes of each block start at
// the current values, and unselected pixels count as neutral ones. A block with a better value replaces the
// current value and its place, so the place is the first block with the extreme. Only that block is searched
// again for the position: the first pixel with the extreme in raster order.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_plan.h"

namespace Zorvan::Primitives::Statistic {
namespace {

struct ByteExtremes {
  std::uint8_t low, high;
};

/// The selected pixels; the others neutral for a minimum, all bits set, or for a maximum, zero.
inline __m128i selectedOrOnes(__m128i none, __m128i pixels) { return _mm_or_si128(none, pixels); }
inline __m128i selectedOrZeros(__m128i none, __m128i pixels) { return _mm_andnot_si128(none, pixels); }
#ifdef __AVX2__
inline __m256i selectedOrOnes(__m256i none, __m256i pixels) { return _mm256_or_si256(none, pixels); }
inline __m256i selectedOrZeros(__m256i none, __m256i pixels) { return _mm256_andnot_si256(none, pixels); }
#endif

/// Two vectors with an accumulator each in an iteration, then groups of 16, 8 and 1 pixels.
template <class Vector>
class ByteBlock {
  using Low = ExtremeLanes<Seek::minimum, std::uint8_t>;
  using High = ExtremeLanes<Seek::maximum, std::uint8_t>;

 public:
  explicit ByteBlock(ByteExtremes current) : a_(current), b_(current), rest_(current), scalar_(current) {}

  void row(const std::uint8_t* p, const std::uint8_t* m, std::int64_t left, auto prefetchAfter) {
    constexpr int size = Vector::size;
    for (; left >= 2 * size; p += 2 * size, m += 2 * size, left -= 2 * size) {
      prefetchAfter(p);
      prefetchAfter(m);
      a_.add(Vector::load(p), Vector::load(m));
      b_.add(Vector::load(p + size), Vector::load(m + size));
    }
    for (; left >= 16; p += 16, m += 16, left -= 16) rest_.add(Vector16::load(p), Vector16::load(m));
    if (left >= 8) {
      rest_.add({loadLow<8>(p)}, {loadLow<8>(m)});
      p += 8, m += 8, left -= 8;
    }
    for (; left != 0; ++p, ++m, --left) addOne(*p, *m);
  }

  ByteExtremes found() const {
    const std::uint8_t low = Low::better(Low::bestOf(Low::better(a_.low, b_.low)), Low::bestOf(rest_.low));
    const std::uint8_t high =
        High::better(High::bestOf(High::better(a_.high, b_.high)), High::bestOf(rest_.high));
    return {Low::better(low, scalar_.low), High::better(high, scalar_.high)};
  }

  /// The first selected pixel of a row with the value; -1 if there is none.
  static int columnOf(std::uint8_t value, const std::uint8_t* row, const std::uint8_t* mask, int width) {
    return firstColumn(
        width,
        [=](int c) {
          const __m128i equal = _mm_cmpeq_epi8(Vector16::load(row + c).bits, Vector16::broadcast(value).bits);
          return bitsOf(_mm_andnot_si128(unselected(Vector16::load(mask + c).bits), equal));
        },
        [=](int c) { return mask[c] != 0 && row[c] == value; });
  }

 private:
  template <class V>
  struct Lanes {
    decltype(V::bits) low, high;

    explicit Lanes(ByteExtremes current)
        : low(V::broadcast(current.low).bits), high(V::broadcast(current.high).bits) {}

    void add(V pixels, V mask) {
      const auto none = unselected(mask.bits);
      low = Low::better(low, selectedOrOnes(none, pixels.bits));
      high = High::better(high, selectedOrZeros(none, pixels.bits));
    }
  };

  void addOne(std::uint8_t pixel, std::uint8_t mask) {
    const std::int32_t selected = selectedBits(mask);
    scalar_.low = Low::better(scalar_.low, static_cast<std::uint8_t>(pixel | ~selected));
    scalar_.high = High::better(scalar_.high, static_cast<std::uint8_t>(pixel & selected));
  }

  Lanes<Vector> a_, b_;
  Lanes<Vector16> rest_;
  ByteExtremes scalar_;
};

#ifdef __AVX512BW__
/// 64 pixels in an iteration, the selected ones as bits of a mask register.
class MaskedByteBlock64 {
  using Low = ExtremeLanes<Seek::minimum, std::uint8_t>;
  using High = ExtremeLanes<Seek::maximum, std::uint8_t>;

 public:
  explicit MaskedByteBlock64(ByteExtremes current)
      : low_(Vector64::broadcast(current.low).bits), high_(Vector64::broadcast(current.high).bits) {}

  void row(const std::uint8_t* p, const std::uint8_t* m, std::int64_t width, auto prefetchAfter) {
    forEachSelection(m, width, [&](std::int64_t c, __mmask64 selected) {
      prefetchAfter(p + c);
      prefetchAfter(m + c);
      const __m512i pixels = _mm512_maskz_loadu_epi8(selected, p + c);
      low_ = _mm512_mask_min_epu8(low_, selected, low_, pixels);
      high_ = _mm512_max_epu8(high_, pixels);  // the other lanes are zero, which is no better
    });
  }

  ByteExtremes found() const { return {Low::bestOf(low_), High::bestOf(high_)}; }

  static int columnOf(std::uint8_t value, const std::uint8_t* row, const std::uint8_t* mask, int width) {
    const __m512i values = Vector64::broadcast(value).bits;
    for (std::int64_t c = 0; c < width; c += 64) {
      const __mmask64 inRow = width - c < 64 ? _bzhi_u64(~0ull, static_cast<unsigned>(width - c)) : ~0ull;
      const __m512i selection = _mm512_maskz_loadu_epi8(inRow, mask + c);
      const __mmask64 selected = _mm512_test_epi8_mask(selection, selection);
      const __m512i pixels = _mm512_maskz_loadu_epi8(selected, row + c);
      const __mmask64 equal = _mm512_mask_cmpeq_epi8_mask(selected, pixels, values);
      if (equal != 0) return static_cast<int>(c) + __builtin_ctzll(equal);
    }
    return -1;
  }

 private:
  __m512i low_, high_;
};
#endif

template <class Block>
class ExtremesByBlock {
 public:
  static MaskedExtremes find(const std::uint8_t* src, int srcStep, const std::uint8_t* mask, int maskStep,
                             Size roi) {
    const FirstSelected first = firstSelected(mask, maskStep, roi);
    if (first.row == roi.height) return {};
    const std::uint8_t start = rowAt(src, srcStep, first.row)[first.column];
    ByteExtremes current{start, start};
    int lowFrom = first.row, highFrom = first.row;  // the first rows of the blocks with the extremes
    return withPrefetch(roi, 2, [&](auto prefetchAfter) {
      const int blockRows = rowsOfBlock(roi.width);
      ZORVAN_NOTE_PLAN("rowsOfBlock of all rows", blockRows >= roi.height);
      for (int from = first.row, rows; from < roi.height; from += rows) {
        rows = roi.height - from < blockRows ? roi.height - from : blockRows;
        Block block(current);
        for (int r = from; r < from + rows; ++r) {
          block.row(rowAt(src, srcStep, r), rowAt(mask, maskStep, r), roi.width, prefetchAfter);
        }
        const ByteExtremes found = block.found();
        if (found.low < current.low) lowFrom = from;
        if (found.high > current.high) highFrom = from;
        current = found;
      }
      const auto place = [&](std::uint8_t value, int row) {
        for (;; ++row) {
          const int column =
              Block::columnOf(value, rowAt(src, srcStep, row), rowAt(mask, maskStep, row), roi.width);
          if (column >= 0) return Point{column, row};
        }
      };
      return MaskedExtremes{static_cast<float>(current.low), static_cast<float>(current.high),
                            place(current.low, lowFrom), place(current.high, highFrom)};
    });
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
