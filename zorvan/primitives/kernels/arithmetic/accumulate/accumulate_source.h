#pragma once

// Loads pixels of a source as floats, in vectors of every width that the variant being built has. All
// conversions are exact. Any address.

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Accumulate {
namespace {

template <class Pixel>
struct FloatSource {
  static constexpr int pixelBytes = sizeof(Pixel);

  static float one(const unsigned char* src) { return static_cast<float>(loadAs<Pixel>(src)); }

  static __m128 four(const unsigned char* src) {
    if constexpr (pixelBytes == 4) {
      return _mm_castsi128_ps(Vector16::load(src).bits);
    } else {
      const __m128i zero = _mm_setzero_si128();
      __m128i pixels;
      if constexpr (pixelBytes == 2) {
        pixels = _mm_loadu_si64(src);
      } else {
        pixels = _mm_unpacklo_epi8(_mm_cvtsi32_si128(loadAs<int>(src)), zero);
      }
      return _mm_cvtepi32_ps(_mm_unpacklo_epi16(pixels, zero));
    }
  }

#ifdef __AVX__
  static __m256 eight(const unsigned char* src) {
    if constexpr (pixelBytes == 4) {
      return _mm256_castsi256_ps(Vector32::load(src).bits);
    } else {
#ifdef __AVX2__
      const __m256i pixels = pixelBytes == 2 ? _mm256_cvtepu16_epi32(Vector16::load(src).bits)
                                             : _mm256_cvtepu8_epi32(_mm_loadu_si64(src));
      return _mm256_cvtepi32_ps(pixels);
#else
      return _mm256_insertf128_ps(_mm256_castps128_ps256(four(src)), four(src + 4 * pixelBytes), 1);
#endif
    }
  }
#endif

#ifdef __AVX512F__
  static __m512 sixteen(const unsigned char* src, __mmask16 lanes) {
    if constexpr (pixelBytes == 4) return _mm512_maskz_loadu_ps(lanes, src);
    if constexpr (pixelBytes == 2) {
      return _mm512_cvtepi32_ps(_mm512_cvtepu16_epi32(_mm256_maskz_loadu_epi16(lanes, src)));
    }
    if constexpr (pixelBytes == 1) {
      return _mm512_cvtepi32_ps(_mm512_cvtepu8_epi32(_mm_maskz_loadu_epi8(lanes, src)));
    }
  }
  static __m512 sixteen(const unsigned char* src) {
    if constexpr (pixelBytes == 4) return _mm512_castsi512_ps(Vector64::load(src).bits);
    if constexpr (pixelBytes == 2) {
      return _mm512_cvtepi32_ps(_mm512_cvtepu16_epi32(Vector32::load(src).bits));
    }
    if constexpr (pixelBytes == 1) {
      return _mm512_cvtepi32_ps(_mm512_cvtepu8_epi32(Vector16::load(src).bits));
    }
  }
#endif
};

}  // namespace
}  // namespace Zorvan::Primitives::Accumulate
