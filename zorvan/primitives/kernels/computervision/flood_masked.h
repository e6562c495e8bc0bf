#pragma once

// The steps of a flood fill along a row in vectors of 64 bytes under a mask: the widest variant's 8-bit and
// 32-bit integer pixels.
//
// The mask ends a vector with the region's last column, so that short rows and the ends of long ones need no
// loop of their own: lanes that are masked out are neither read nor written. The end of a run is searched
// first and the run filled afterwards.
//
// A run that begins where it is looked for, or ends with the region, is told by a branch of its own: a column
// counted out of a comparison would hold up the next row, which is looked through from there.

#include "zorvan/primitives/kernels/computervision/flood_fill_plan.h"
#include "zorvan/primitives/kernels/computervision/flood_pixels.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

#ifdef __AVX512BW__
namespace Zorvan::Primitives {
namespace {

template <class T>
struct MaskedLanes;

template <>
struct MaskedLanes<u8> {
  using Mask = __mmask64;
  static constexpr int count = 64;
  static Mask matches(const unsigned char* p, Vector64 old) {
    return _mm512_cmpeq_epi8_mask(Vector64::load(p).bits, old.bits);
  }
  static Mask matches(Mask mask, const unsigned char* p, Vector64 old) {
    return _mm512_mask_cmpeq_epi8_mask(mask, _mm512_maskz_loadu_epi8(mask, p), old.bits);
  }
  static void store(Mask mask, unsigned char* p, Vector64 value) {
    _mm512_mask_storeu_epi8(p, mask, value.bits);
  }
};

template <>
struct MaskedLanes<int> {
  using Mask = __mmask16;
  static constexpr int count = 16;
  static Mask matches(const unsigned char* p, Vector64 old) {
    return _mm512_cmpeq_epi32_mask(Vector64::load(p).bits, old.bits);
  }
  static Mask matches(Mask mask, const unsigned char* p, Vector64 old) {
    return _mm512_mask_cmpeq_epi32_mask(mask, _mm512_maskz_loadu_epi32(mask, p), old.bits);
  }
  static void store(Mask mask, unsigned char* p, Vector64 value) {
    _mm512_mask_storeu_epi32(p, mask, value.bits);
  }
};

template <class T>
struct MaskedRow : FillPixels<T> {
  using Pixels = FillPixels<T>;
  using Pixels::at;
  using Pixels::isOld;
  using Pixels::last;
  using Lanes = MaskedLanes<T>;
  using Mask = typename Lanes::Mask;
  static constexpr int lanes = Lanes::count;
  static constexpr auto allLanes = static_cast<Mask>(~Mask{0});

  Vector64 oldLanes, newLanes;

  MaskedRow(T oldPixel, T newPixel, std::int64_t lastColumn)
      : Pixels{oldPixel, newPixel, lastColumn},
        oldLanes(Vector64::broadcast(static_cast<std::make_unsigned_t<T>>(oldPixel))),
        newLanes(Vector64::broadcast(static_cast<std::make_unsigned_t<T>>(newPixel))) {}

  std::int64_t find(unsigned char* row, std::int64_t x, std::int64_t right) const {
    if (right - x + 1 < vectorScanPixels) return Pixels::find(row, x, right);
    if (isOld(row, x)) return x;
    for (; right - x >= lanes; x += lanes) {
      const Mask matches = Lanes::matches(at(row, x), oldLanes);
      if (matches != 0) return x + __builtin_ctzll(matches);
    }
    const Mask matches = Lanes::matches(firstLanes(right - x + 1), at(row, x), oldLanes);
    return matches != 0 ? x + __builtin_ctzll(matches) : right + 1;
  }

  std::int64_t extendLeft(unsigned char* row, std::int64_t x) const {
    if (x == 0 || !isOld(row, x - 1)) return x;
    for (; x >= lanes; x -= lanes) {
      unsigned char* const p = at(row, x - lanes);
      const auto others = static_cast<Mask>(~Lanes::matches(p, oldLanes));
      if (others != 0) return fillLast(p, lanes, others, x);
      newLanes.store(p);
    }
    if (x == 0) return x;
    const Mask present = firstLanes(x);
    const auto others = static_cast<Mask>(present & ~Lanes::matches(present, row, oldLanes));
    if (others != 0) return fillLast(row, x, others, x);
    Lanes::store(present, row, newLanes);
    return 0;
  }

  std::int64_t extendRight(unsigned char* row, std::int64_t x, std::int64_t scanRight) const {
    if (!searchesByVectors(x, scanRight)) return Pixels::extendRight(row, x);
    const std::int64_t end = endOfRun(row, x);
    unsigned char* p = at(row, x);
    std::int64_t count = end - x;
    for (; count >= lanes; p += 64, count -= lanes) newLanes.store(p);
    if (count != 0) Lanes::store(firstLanes(count), p, newLanes);
    return end - 1;
  }

 private:
  /// 0 to all lanes.
  static Mask firstLanes(std::int64_t count) {
    return static_cast<Mask>(_bzhi_u64(~0ull, static_cast<unsigned>(count)));
  }

  /// Fills the run that ends with lane `count - 1`, in front of column `x`, and gives its first column.
  std::int64_t fillLast(unsigned char* p, std::int64_t count, Mask others, std::int64_t x) const {
    const int before = 64 - __builtin_clzll(others);
    Lanes::store(static_cast<Mask>(firstLanes(count) & ~firstLanes(before)), p, newLanes);
    return x - (count - before);
  }

  std::int64_t endOfRun(unsigned char* row, std::int64_t x) const {
    for (; last - x >= lanes; x += lanes) {
      const auto others = static_cast<Mask>(~Lanes::matches(at(row, x), oldLanes));
      if (others != 0) return x + __builtin_ctzll(others);
    }
    const Mask present = firstLanes(last - x + 1);
    const auto others = static_cast<Mask>(present & ~Lanes::matches(present, at(row, x), oldLanes));
    if (__builtin_expect(others != 0, 0)) return x + __builtin_ctzll(others);
    return last + 1;
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
#endif
