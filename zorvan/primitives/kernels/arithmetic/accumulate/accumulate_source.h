#pragma once

// Loads pixels of a source as floats, in vectors of every width that the variant being built has. All
// conversions are exact. Any address.

#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/simd/partial.h"

namespace Zorvan::Primitives::Accumulate {
namespace {

template <class Pixel>
struct FloatSource {
  static constexpr int pixelBytes = sizeof(Pixel);

  static float one(const unsigned char* src) { return static_cast<float>(loadAs<Pixel>(src)); }

  static __m128 four(const unsigned char* src) {
    if constexpr (pixelBytes == 4) {
      return asFloats(Vector16::load(src).bits);
    } else {
      const __m128i zero = zeroes<__m128i>();
      __m128i pixels = loadLow<4 * pixelBytes>(src);
      if constexpr (pixelBytes == 1) pixels = unpacklo_epi8(pixels, zero);
      return cvtepi32_ps(unpacklo_epi16(pixels, zero));
    }
  }

#ifdef __AVX__
  static __m256 eight(const unsigned char* src) {
    if constexpr (pixelBytes == 4) {
      return asFloats(Vector32::load(src).bits);
    } else {
#ifdef __AVX2__
      const __m128i pixels = loadLow<8 * pixelBytes>(src);
      return cvtepi32_ps(pixelBytes == 2 ? _mm256_cvtepu16_epi32(pixels) : _mm256_cvtepu8_epi32(pixels));
#else
      return _mm256_insertf128_ps(_mm256_castps128_ps256(four(src)), four(src + 4 * pixelBytes), 1);
#endif
    }
  }
#endif

#ifdef __AVX512F__
  static __m512 sixteen(const unsigned char* src, __mmask16 lanes) {
    if constexpr (pixelBytes == 4) return loadMaskedFloats(lanes, src);
    if constexpr (pixelBytes == 2) {
      return _mm512_cvtepi32_ps(_mm512_cvtepu16_epi32(loadMaskedWords(lanes, src)));
    }
    if constexpr (pixelBytes == 1) {
      return _mm512_cvtepi32_ps(_mm512_cvtepu8_epi32(loadMaskedBytes(lanes, src)));
    }
  }
  static __m512 sixteen(const unsigned char* src) {
    if constexpr (pixelBytes == 4) return asFloats(Vector64::load(src).bits);
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
