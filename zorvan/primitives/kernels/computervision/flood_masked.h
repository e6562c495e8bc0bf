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

#include "zorvan/primitives/kernels/computervision/flood_fill_plan.h"
#include "zorvan/primitives/kernels/computervision/flood_pixels.h"
#include "zorvan/primitives/kernels/simd/partial.h"
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

 private:
  Mask matchesAt(const u8* p) const {
    return matches(static_cast<Mask>(~Mask{0}), Vector64::load(p).bits, oldLanes.bits);
  }
  Mask matchesAt(Mask mask, const u8* p) const { return matches(mask, loadMasked(mask, p), oldLanes.bits); }

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

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
#endif
