#pragma once

// A flood fill along a row in vectors of 64 bytes under a mask: 8-bit and 32-bit integer pixels of the newest
// variant.
//
// The mask ends a vector with the region's last column, so that short rows and the ends of long ones need no
// loop of their own: the other lanes are neither read nor written. The end of a run is searched first and the
// run filled afterwards.
//
// A run that begins at the first column of the search, or ends with the region, has a branch of its own: a
// column that is computed from a comparison would delay the next row, whose search begins there.

#include "zorvan/primitives/kernels/computervision/flood_blocks.h"
#include "zorvan/primitives/kernels/computervision/flood_fill_plan.h"
#include "zorvan/primitives/kernels/computervision/flood_pixels.h"
#include "zorvan/primitives/kernels/computervision/flood_window.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

#ifdef __AVX512BW__
namespace Zorvan::Primitives::FloodFill {
namespace {

inline __mmask64 matches(__mmask64 lanes, __m512i pixels, __m512i old) {
  return _mm512_mask_cmpeq_epi8_mask(lanes, pixels, old);
}
inline __mmask16 matches(__mmask16 lanes, __m512i pixels, __m512i old) {
  return _mm512_mask_cmpeq_epi32_mask(lanes, pixels, old);
}

template <class T>
struct MaskedRow : FillPixels<T> {
  using Pixels = FillPixels<T>;
  using Pixels::at;
  using Pixels::isOld;
  using Pixels::last;
  using Mask = MaskOf<T>;
  static constexpr int lanes = 64 / sizeof(T);
  static constexpr bool hasWindows = false;

  Vector64 oldLanes, newLanes;

  MaskedRow(T oldPixel, T newPixel, std::int64_t lastColumn)
      : Pixels{oldPixel, newPixel, lastColumn},
        oldLanes(Vector64::broadcast(static_cast<std::make_unsigned_t<T>>(oldPixel))),
        newLanes(Vector64::broadcast(static_cast<std::make_unsigned_t<T>>(newPixel))) {}

  std::int64_t find(u8* row, std::int64_t x, std::int64_t right) const {
    if (right - x + 1 < vectorScanPixels) return Pixels::find(row, x, right);
    if (isOld(row, x)) return x;
    for (; right - x >= lanes; x += lanes) {
      const Mask found = matchesAt(at(row, x));
      if (found != 0) return x + __builtin_ctzll(found);
    }
    const Mask found = matchesAt(firstLanes<Mask>(right - x + 1), at(row, x));
    return found != 0 ? x + __builtin_ctzll(found) : right + 1;
  }

  std::int64_t extendLeft(u8* row, std::int64_t x) const {
    if (x == 0 || !isOld(row, x - 1)) return x;
    for (; x >= lanes; x -= lanes) {
      u8* const p = at(row, x - lanes);
      const auto others = static_cast<Mask>(~matchesAt(p));
      if (others != 0) return fillLast(p, lanes, others, x);
      newLanes.store(p);
    }
    if (x == 0) return x;
    const Mask present = firstLanes<Mask>(x);
    const auto others = static_cast<Mask>(present & ~matchesAt(present, row));
    if (others != 0) return fillLast(row, x, others, x);
    storeMasked(present, row, newLanes.bits);
    return 0;
  }

  std::int64_t extendRight(u8* row, std::int64_t x, std::int64_t scanRight) const {
    if (!searchesByVectors(x, scanRight)) return Pixels::extendRight(row, x);
    const std::int64_t end = endOfRun(row, x);
    u8* p = at(row, x);
    std::int64_t count = end - x;
    for (; count >= lanes; p += 64, count -= lanes) newLanes.store(p);
    if (count != 0) storeMasked(firstLanes<Mask>(count), p, newLanes.bits);
    return end - 1;
  }

 protected:
  Mask matchesAt(const u8* p) const {
    return matches(static_cast<Mask>(~Mask{0}), Vector64::load(p).bits, oldLanes.bits);
  }
  Mask matchesAt(Mask mask, const u8* p) const { return matches(mask, loadMasked(mask, p), oldLanes.bits); }

 private:
  /// Fills the run that ends with lane `count - 1`, before column `x`, and returns its first column.
  std::int64_t fillLast(u8* p, std::int64_t count, Mask others, std::int64_t x) const {
    const int before = 64 - __builtin_clzll(others);
    storeMasked(static_cast<Mask>(firstLanes<Mask>(count) & ~firstLanes<Mask>(before)), p, newLanes.bits);
    return x - (count - before);
  }

  std::int64_t endOfRun(u8* row, std::int64_t x) const {
    for (; last - x >= lanes; x += lanes) {
      const auto others = static_cast<Mask>(~matchesAt(at(row, x)));
      if (others != 0) return x + __builtin_ctzll(others);
    }
    const Mask present = firstLanes<Mask>(last - x + 1);
    const auto others = static_cast<Mask>(present & ~matchesAt(present, at(row, x)));
    if (__builtin_expect(others != 0, 0)) return x + __builtin_ctzll(others);
    return last + 1;
  }
};

/// Rows that are compared in windows.
template <class T>
struct MaskedWindowRow : MaskedRow<T> {
  using Lanes = MaskedRow<T>;
  using Lanes::at;
  using Lanes::lanes;
  using Lanes::last;
  using typename Lanes::Mask;
  static constexpr bool hasWindows = true;

  __mmask32 present;  ///< the columns of a window, fewer in narrower regions

  MaskedWindowRow(T oldPixel, T newPixel, std::int64_t lastColumn)
      : Lanes(oldPixel, newPixel, lastColumn),
        present(firstLanes<__mmask32>(lastColumn < windowPixels ? lastColumn + 1 : windowPixels)) {}

  std::uint32_t window(u8* row, std::int64_t x) const {
    const u8* const p = at(row, x);
    if constexpr (sizeof(T) == 1) {
      const __m256i old32 = _mm512_castsi512_si256(this->oldLanes.bits);
      return _mm256_mask_cmpeq_epi8_mask(present, loadMaskedBytes(present, p), old32);
    } else {
      const auto low = static_cast<Mask>(present), high = static_cast<Mask>(present >> lanes);
      return this->matchesAt(low, p) | static_cast<std::uint32_t>(this->matchesAt(high, p + 64)) << lanes;
    }
  }

  std::int64_t startOfRun(u8* row, std::int64_t x) const {
    for (; x >= lanes; x -= lanes) {
      const auto others = static_cast<Mask>(~this->matchesAt(at(row, x - lanes)));
      if (others != 0) return x - lanes + 64 - __builtin_clzll(others);
    }
    const Mask before = firstLanes<Mask>(x);
    const auto others = static_cast<Mask>(before & ~this->matchesAt(before, row));
    return others == 0 ? 0 : 64 - __builtin_clzll(others);
  }

  std::int64_t endOfRun(u8* row, std::int64_t x) const {
    for (; last - x >= lanes; x += lanes) {
      const auto others = static_cast<Mask>(~this->matchesAt(at(row, x)));
      if (others != 0) return x + __builtin_ctzll(others) - 1;
    }
    const Mask rest = firstLanes<Mask>(last - x + 1);
    const auto others = static_cast<Mask>(rest & ~this->matchesAt(rest, at(row, x)));
    return others == 0 ? last : x + __builtin_ctzll(others) - 1;
  }

  bool isOldFrom(u8* row, std::int64_t x, std::int64_t end, std::int64_t ahead) const {
    for (; end - x >= lanes; x += lanes) {
      prefetch(at(row, x), ahead);
      if (this->matchesAt(at(row, x)) != static_cast<Mask>(~Mask{0})) return false;
    }
    if (x >= end) return true;
    const Mask rest = firstLanes<Mask>(end - x);
    return this->matchesAt(rest, at(row, x)) == rest;
  }

  void fillRun(u8* row, std::int64_t x, std::int64_t count) const {
    u8* const p = at(row, x);
    if (count >= lanes) {
      fillParts<1>(p, count * std::int64_t{sizeof(T)}, this->newLanes);
    } else {
      storeMasked(firstLanes<Mask>(count), p, this->newLanes.bits);
    }
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
#endif
