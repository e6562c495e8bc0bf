#pragma once

// Adds the selected pixels of a row to a float accumulator: the oldest three variants. Any address.
//
// Scalar code skips pixels whose mask is zero. Vector code replaces their sources by +0.0 and stores all
// sums, so that -0.0 becomes +0.0 there.

#include "zorvan/primitives/kernels/arithmetic/accumulate/accumulate_plan.h"
#include "zorvan/primitives/kernels/arithmetic/accumulate/accumulate_source.h"

namespace Zorvan::Primitives::Accumulate {
namespace {

template <class Source>
inline void addSelectedScalar(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst,
                              std::int64_t pixels) {
  for (; pixels > 0; src += Source::pixelBytes, ++mask, srcDst += 4, --pixels) {
    if (*mask != 0) storeAs(srcDst, loadAs<float>(srcDst) + Source::one(src));
  }
}

/// All ones in the lanes that the next four bytes of the mask do not select.
inline __m128 unselectedFour(const unsigned char* mask) {
  __m128i lanes = cmpeq_epi8(loadLow<4>(mask), zeroes<__m128i>());
  lanes = unpacklo_epi8(lanes, lanes);
  return asFloats(unpacklo_epi16(lanes, lanes));
}

template <class Source, bool aligned>
inline void addSelectedFour(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst) {
  const __m128 addend = _mm_andnot_ps(unselectedFour(mask), Source::four(src));
  const Vector16 before = aligned ? Vector16::loadAligned(srcDst) : Vector16::load(srcDst);
  const Vector16 sum{asIntegers(asFloats(before.bits) + addend)};
  if constexpr (aligned) {
    sum.storeAligned(srcDst);
  } else {
    sum.store(srcDst);
  }
}

/// `pixels`, a multiple of four, of a row.
template <class Source, bool aligned>
inline void addSelectedFours(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst,
                             std::int64_t pixels) {
  for (std::int64_t i = 0; i < pixels; i += 4) {
    addSelectedFour<Source, aligned>(src + i * Source::pixelBytes, mask + i, srcDst + 4 * i);
  }
}

/// 16 pixels per iteration, then 12, 8 or 4, then at most three.
template <class Source, bool aligned>
inline void addSelectedBody(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst,
                            std::int64_t pixels) {
  for (; pixels >= 16; pixels -= 16) {
    addSelectedFours<Source, aligned>(src, mask, srcDst, 16);
    src += 16 * Source::pixelBytes;
    mask += 16;
    srcDst += 64;
  }
  const std::int64_t rest = pixels & ~std::int64_t{3};
  addSelectedFours<Source, aligned>(src, mask, srcDst, rest);
  addSelectedScalar<Source>(src + rest * Source::pixelBytes, mask + rest, srcDst + 4 * rest, pixels - rest);
}

struct SelectedRow {
  template <class Source>
  static void add(const unsigned char* src, const unsigned char* mask, unsigned char* srcDst,
                  std::int64_t pixels) {
    const std::int64_t peel = planSelectingRow(addressOf(srcDst), pixels).peel;
    addSelectedScalar<Source>(src, mask, srcDst, peel);
    src += peel * Source::pixelBytes;
    mask += peel;
    srcDst += 4 * peel;
    if (isAligned(srcDst, Vector16::size)) {
      addSelectedBody<Source, true>(src, mask, srcDst, pixels - peel);
    } else {
      addSelectedBody<Source, false>(src, mask, srcDst, pixels - peel);
    }
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Accumulate
