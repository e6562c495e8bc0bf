#pragma once

// Groups of 32-bit signed pixels, saturated to 0 to 255, as bytes: what the row loops are made of.
//
// Two packs saturate. The first, to signed words, keeps each value on its side of 0 to 255, so that the
// second, to unsigned bytes, is right. Every group loads all its pixels before its one store, so a row may be
// narrowed in place.

#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Convert {
namespace {

inline void narrow1(const u8* src, u8* dst) {
  const int value = loadAs<int>(src);
  *dst = static_cast<u8>(value < 0 ? 0 : value > 255 ? 255 : value);
}

inline __m128i narrowLow(__m128i words) { return _mm_packus_epi16(words, words); }

inline void narrow2(const u8* src, u8* dst) {
  const __m128i pixels = loadLow<8>(src);
  storeLow<2>(dst, narrowLow(_mm_packs_epi32(pixels, pixels)));
}

inline void narrow4(const u8* src, u8* dst) {
  const __m128i pixels = Vector16::load(src).bits;
  storeLow<4>(dst, narrowLow(_mm_packs_epi32(pixels, pixels)));
}

/// Eight pixels as words.
template <bool alignedSrc>
inline __m128i narrowToWords(const u8* src) {
  return _mm_packs_epi32(loadVector<Vector16, alignedSrc>(src).bits,
                         loadVector<Vector16, alignedSrc>(src + 16).bits);
}

template <bool alignedSrc = false>
inline void narrow8(const u8* src, u8* dst) {
  storeLow<8>(dst, narrowLow(narrowToWords<alignedSrc>(src)));
}

template <bool alignedSrc = false>
inline Vector16 narrow16(const u8* src) {
  return {_mm_packus_epi16(narrowToWords<alignedSrc>(src), narrowToWords<alignedSrc>(src + 32))};
}

/// Four pixels per iteration, then single pixels.
inline void narrowByFours(const u8* src, u8* dst, std::int64_t n) {
  for (; n >= 4; src += 16, dst += 4, n -= 4) narrow4(src, dst);
  for (; n > 0; src += 4, ++dst, --n) narrow1(src, dst);
}

#ifdef __AVX2__
/// Of the two newest variants: 64, 32, 16 pixels, and fewer than 16.
struct NarrowGroups32 {
  static void sixtyFour(const u8* src, u8* dst) {
    thirtyTwo(src, dst);
    thirtyTwo(src + 128, dst + 32);
  }

  static void thirtyTwo(const u8* src, u8* dst) {
    const __m256i low = _mm256_packs_epi32(Vector32::load(src).bits, Vector32::load(src + 32).bits);
    const __m256i high = _mm256_packs_epi32(Vector32::load(src + 64).bits, Vector32::load(src + 96).bits);
    // The packs work within halves: groups of four pixels come out in the order 0 2 4 6 1 3 5 7.
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    Vector32{_mm256_permutevar8x32_epi32(_mm256_packus_epi16(low, high), order)}.store(dst);
  }

  static void sixteen(const u8* src, u8* dst) { narrow16(src).store(dst); }

  /// By the bits of `n`.
  static void fewer(const u8* src, u8* dst, std::int64_t n) {
    if (n & 8) narrow8(src, dst), src += 32, dst += 8;
    if (n & 4) narrow4(src, dst), src += 16, dst += 4;
    if (n & 2) narrow2(src, dst), src += 8, dst += 2;
    if (n & 1) narrow1(src, dst);
  }
};
#endif

#ifdef __AVX512F__
struct NarrowGroups64 {
  /// One shuffle for 16 pixels, half as many as in two groups of 32: shuffles limit this loop's speed while
  /// the image is in the cache.
  static void sixtyFour(const u8* src, u8* dst) {
    const __m512i low = _mm512_packs_epi32(Vector64::load(src).bits, Vector64::load(src + 64).bits);
    const __m512i high = _mm512_packs_epi32(Vector64::load(src + 128).bits, Vector64::load(src + 192).bits);
    // The packs work within quarters: of the groups of four pixels, quarter q holds q, 4 + q, 8 + q, 12 + q.
    const __m512i order = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
    Vector64{_mm512_permutexvar_epi32(order, _mm512_packus_epi16(low, high))}.store(dst);
  }

  static void thirtyTwo(const u8* src, u8* dst) {
    const __m512i words = _mm512_packs_epi32(Vector64::load(src).bits, Vector64::load(src + 64).bits);
    const __m256i low = _mm512_castsi512_si256(words);
    const __m256i high = _mm512_extracti64x4_epi64(words, 1);
    // Groups of four pixels come out in the order 0 4 2 6 1 5 3 7.
    const __m256i order = _mm256_setr_epi32(0, 4, 2, 6, 1, 5, 3, 7);
    Vector32{_mm256_permutevar8x32_epi32(_mm256_packus_epi16(low, high), order)}.store(dst);
  }

  static void sixteen(const u8* src, u8* dst) {
    const __m512i pixels = _mm512_max_epi32(Vector64::load(src).bits, _mm512_setzero_si512());
    Vector16{_mm512_cvtusepi32_epi8(pixels)}.store(dst);
  }

  /// All of them at once under a mask register.
  static void fewer(const u8* src, u8* dst, std::int64_t n) {
    const auto lanes = firstLanes<__mmask16>(n);
    const __m512i positive = _mm512_max_epi32(loadMasked(lanes, src), _mm512_setzero_si512());
    storeMasked(lanes, dst, _mm512_cvtusepi32_epi8(positive));
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Convert
