#pragma once

// Vectors of values blended into rows, selected by the bytes of a mask.

#include "zorvan/primitives/kernels/simd/stores.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Masked {
namespace {

/// The top bit of each byte: whether its pixel is selected.
inline __m128i raiseMask(__m128i mask) { return _mm_adds_epu8(mask, _mm_set1_epi8(0x7F)); }

/// `blend`: the selected bytes of `value` and the others of `kept`. `spreadTopBits` makes from the top bits
/// what `blend` selects by.
#ifdef __SSE4_1__
inline __m128i spreadTopBits(__m128i raised) { return raised; }
inline __m128i blend(__m128i selected, __m128i value, __m128i kept) {
  return _mm_blendv_epi8(kept, value, selected);
}
#else
inline __m128i spreadTopBits(__m128i raised) { return _mm_cmpgt_epi8(_mm_setzero_si128(), raised); }
inline __m128i blend(__m128i selected, __m128i value, __m128i kept) {
  return _mm_or_si128(_mm_and_si128(selected, value), _mm_andnot_si128(selected, kept));
}
#endif

/// `selected`: from `spreadTopBits`, one lane for each pixel.
inline void blendInto(u8* dst, __m128i selected, Vector16 value) {
  Vector16{blend(selected, value.bits, Vector16::load(dst).bits)}.store(dst);
}

#ifdef __AVX2__
inline void blendInto(u8* dst, __m256i selected, Vector32 value) {
  Vector32{_mm256_blendv_epi8(Vector32::load(dst).bits, value.bits, selected)}.store(dst);
}
#endif

/// A block of one vector V. `bits`: one bit for each of its pixels, `all` where each is selected; `lanes()`:
/// what `blendInto` selects by.
template <class V, Stores stores, class Source, class Lanes>
inline void blendVector(Source source, u8* dst, int bits, int all, Lanes lanes) {
  if (bits == 0) return;
  const auto value = source.template at<V>(0);
  if (bits == all) return storeVector<stores>(value, dst);
  blendInto(dst, lanes(), value);
}

}  // namespace
}  // namespace Zorvan::Primitives::Masked
