#pragma once

// Masked extremes of bytes in blocks of rows.
//
// Both current values start at the first selected pixel. From its row on, the lanes of each block start at
// the current values, and unselected pixels count as neutral ones. A block with a better value replaces the
// current value and its place, so the place is the first block with the extreme. Only that block is searched
// again for the position: the first pixel with the extreme in raster order.

#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme.h"

namespace Zorvan::Primitives::Statistic {
namespace {

struct ByteExtremes {
  u8 low, high;
};

/// Two vectors with an accumulator each in an iteration, then groups of 16, 8 and 1 pixels.
template <class Vector>
class ByteBlock {
 public:
  explicit ByteBlock(ByteExtremes current) : a_(current), b_(current), rest_(current), scalar_(current) {}

  void row(const u8* p, const u8* m, std::int64_t left, auto prefetchAfter) {
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
    const u8 low =
        Low<u8>::better(Low<u8>::bestOf(Low<u8>::better(a_.low, b_.low)), Low<u8>::bestOf(rest_.low));
    const u8 high =
        High<u8>::better(High<u8>::bestOf(High<u8>::better(a_.high, b_.high)), High<u8>::bestOf(rest_.high));
    return {Low<u8>::better(low, scalar_.low), High<u8>::better(high, scalar_.high)};
  }

  /// The first selected pixel of a row with the value; -1 if there is none.
  static int columnOf(u8 value, const u8* row, const u8* mask, int width) {
    return firstColumn(
        width,
        [=](int c) {
          const __m128i equal = cmpeq_epi8(Vector16::load(row + c).bits, Vector16::broadcast(value).bits);
          return bitsOf(equal & ~unselected(Vector16::load(mask + c).bits));
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
      low = Low<u8>::better(low, pixels.bits | none);
      high = High<u8>::better(high, pixels.bits & ~none);
    }
  };

  void addOne(u8 pixel, u8 mask) {
    const std::int32_t selected = selectedBits(mask);
    scalar_.low = Low<u8>::better(scalar_.low, static_cast<u8>(pixel | ~selected));
    scalar_.high = High<u8>::better(scalar_.high, static_cast<u8>(pixel & selected));
  }

  Lanes<Vector> a_, b_;
  Lanes<Vector16> rest_;
  ByteExtremes scalar_;
};

#ifdef __AVX512BW__
/// 64 pixels in an iteration, the selected ones as bits of a mask register.
template <>
class ByteBlock<Vector64> {
 public:
  explicit ByteBlock(ByteExtremes current)
      : low_(Vector64::broadcast(current.low).bits), high_(Vector64::broadcast(current.high).bits) {}

  void row(const u8* p, const u8* m, std::int64_t width, auto prefetchAfter) {
    forEachSelection(m, width, [&](std::int64_t c, __mmask64 selected) {
      prefetchAfter(p + c);
      prefetchAfter(m + c);
      const __m512i pixels = loadMasked(selected, p + c);
      low_ = _mm512_mask_min_epu8(low_, selected, low_, pixels);
      high_ = High<u8>::better(high_, pixels);  // the other lanes are zero, which is no better
    });
  }

  ByteExtremes found() const { return {Low<u8>::bestOf(low_), High<u8>::bestOf(high_)}; }

  static int columnOf(u8 value, const u8* row, const u8* mask, int width) {
    const __m512i values = Vector64::broadcast(value).bits;
    for (std::int64_t c = 0; c < width; c += 64) {
      const auto inRow = firstLanes<__mmask64>(width - c < 64 ? width - c : 64);
      const __mmask64 selected = selectedBytes(loadMasked(inRow, mask + c));
      const __mmask64 equal = _mm512_mask_cmpeq_epi8_mask(selected, loadMasked(selected, row + c), values);
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
  static MaskedExtremes find(Plane<const u8> src, Plane<const u8> mask, Size roi) {
    const FirstSelected first = firstSelected(mask, roi);
    if (first.row == roi.height) return {};
    const u8 start = *src.at(first.row, first.column);
    ByteExtremes current{start, start};
    int lowFrom = first.row, highFrom = first.row;  // the first rows of the blocks with the extremes
    return withPrefetch(roi, 2, [&](auto prefetchAfter) {
      for (int from = first.row, end; from < roi.height; from = end) {
        end = endOfBlock(from, roi);
        Block block(current);
        for (int r = from; r < end; ++r) block.row(src.at(r), mask.at(r), roi.width, prefetchAfter);
        const ByteExtremes found = block.found();
        if (found.low < current.low) lowFrom = from;
        if (found.high > current.high) highFrom = from;
        current = found;
      }
      const auto place = [&](u8 value, int row) {
        for (;; ++row) {
          const int column = Block::columnOf(value, src.at(row), mask.at(row), roi.width);
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
