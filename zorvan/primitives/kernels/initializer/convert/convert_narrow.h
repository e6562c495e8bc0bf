#pragma once

// Groups of 32-bit signed pixels, limited to 0 to 255, as bytes: the steps that the row loops are made of.
//
// Two saturating packs do the limiting. Signed to 16 bits first: what lies beyond saturates on its own side
// of 0 to 255, so the unsigned pack behind it still sees the right side. Every group loads all its pixels
// before its one store, so a row may be narrowed in place.

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

inline void narrow1(const unsigned char* src, unsigned char* dst) {
  const int value = loadAs<int>(src);
  *dst = static_cast<unsigned char>(value < 0 ? 0 : value > 255 ? 255 : value);
}

inline __m128i narrowLow(__m128i words) { return _mm_packus_epi16(words, words); }

inline void narrow2(const unsigned char* src, unsigned char* dst) {
  const __m128i pixels = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(src));
  const __m128i bytes = narrowLow(_mm_packs_epi32(pixels, pixels));
  storeAs(dst, static_cast<std::uint16_t>(_mm_cvtsi128_si32(bytes)));
}

inline void narrow4(const unsigned char* src, unsigned char* dst) {
  const __m128i pixels = Vector16::load(src).bits;
  storeAs(dst, _mm_cvtsi128_si32(narrowLow(_mm_packs_epi32(pixels, pixels))));
}

template <bool alignedSrc>
inline __m128i load4Pixels(const unsigned char* src) {
  if constexpr (alignedSrc) return Vector16::loadAligned(src).bits;
  return Vector16::load(src).bits;
}

/// Eight pixels as words.
template <bool alignedSrc>
inline __m128i narrowToWords(const unsigned char* src) {
  return _mm_packs_epi32(load4Pixels<alignedSrc>(src), load4Pixels<alignedSrc>(src + 16));
}

template <bool alignedSrc = false>
inline void narrow8(const unsigned char* src, unsigned char* dst) {
  _mm_storel_epi64(reinterpret_cast<__m128i*>(dst), narrowLow(narrowToWords<alignedSrc>(src)));
}

template <bool alignedSrc = false>
inline Vector16 narrow16(const unsigned char* src) {
  return {_mm_packus_epi16(narrowToWords<alignedSrc>(src), narrowToWords<alignedSrc>(src + 32))};
}

/// A run in groups of four, then singly.
inline void narrowByFours(const unsigned char* src, unsigned char* dst, std::int64_t n) {
  for (; n >= 4; src += 16, dst += 4, n -= 4) narrow4(src, dst);
  for (; n > 0; src += 4, ++dst, --n) narrow1(src, dst);
}

#ifdef __AVX2__
/// The two newest variants' groups: 64, 32, 16 pixels, and fewer than 16.
struct NarrowGroups32 {
  static void sixtyFour(const unsigned char* src, unsigned char* dst) {
    thirtyTwo(src, dst);
    thirtyTwo(src + 128, dst + 32);
  }

  static void thirtyTwo(const unsigned char* src, unsigned char* dst) {
    const __m256i low = _mm256_packs_epi32(Vector32::load(src).bits, Vector32::load(src + 32).bits);
    const __m256i high = _mm256_packs_epi32(Vector32::load(src + 64).bits, Vector32::load(src + 96).bits);
    // The packs work within halves: groups of four pixels come out in the order 0 2 4 6 1 3 5 7.
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    Vector32{_mm256_permutevar8x32_epi32(_mm256_packus_epi16(low, high), order)}.store(dst);
  }

  static void sixteen(const unsigned char* src, unsigned char* dst) { narrow16(src).store(dst); }

  /// In pieces of 8, 4, 2 and 1, by the bits of `n`.
  static void fewer(const unsigned char* src, unsigned char* dst, std::int64_t n) {
    if (n & 8) narrow8(src, dst), src += 32, dst += 8;
    if (n & 4) narrow4(src, dst), src += 16, dst += 4;
    if (n & 2) narrow2(src, dst), src += 8, dst += 2;
    if (n & 1) narrow1(src, dst);
  }
};
#endif

#ifdef __AVX512F__
struct NarrowGroups64 {
  /// One shuffle for 16 pixels, half of what two groups of 32 take: the shuffles bound this loop in the
  /// cache.
  static void sixtyFour(const unsigned char* src, unsigned char* dst) {
    const __m512i low = _mm512_packs_epi32(Vector64::load(src).bits, Vector64::load(src + 64).bits);
    const __m512i high = _mm512_packs_epi32(Vector64::load(src + 128).bits, Vector64::load(src + 192).bits);
    // The packs work within quarters: of the groups of four pixels, quarter q gets q, 4 + q, 8 + q, 12 + q.
    const __m512i order = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
    Vector64{_mm512_permutexvar_epi32(order, _mm512_packus_epi16(low, high))}.store(dst);
  }

  static void thirtyTwo(const unsigned char* src, unsigned char* dst) {
    const __m512i words = _mm512_packs_epi32(Vector64::load(src).bits, Vector64::load(src + 64).bits);
    const __m256i low = _mm512_castsi512_si256(words);
    const __m256i high = _mm512_extracti64x4_epi64(words, 1);
    // Groups of four pixels come out in the order 0 4 2 6 1 5 3 7.
    const __m256i order = _mm256_setr_epi32(0, 4, 2, 6, 1, 5, 3, 7);
    Vector32{_mm256_permutevar8x32_epi32(_mm256_packus_epi16(low, high), order)}.store(dst);
  }

  static void sixteen(const unsigned char* src, unsigned char* dst) {
    const __m512i pixels = _mm512_max_epi32(Vector64::load(src).bits, _mm512_setzero_si512());
    Vector16{_mm512_cvtusepi32_epi8(pixels)}.store(dst);
  }

  /// All at once, the others masked out.
  static void fewer(const unsigned char* src, unsigned char* dst, std::int64_t n) {
    const __mmask16 lanes = static_cast<__mmask16>(_bzhi_u32(0xffff, static_cast<unsigned>(n)));
    const __m512i pixels = _mm512_maskz_loadu_epi32(lanes, src);
    const __m512i positive = _mm512_max_epi32(pixels, _mm512_setzero_si512());
    _mm_mask_storeu_epi8(dst, lanes, _mm512_cvtusepi32_epi8(positive));
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives
