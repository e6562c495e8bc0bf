#pragma once

// The lanes of two adjacent vectors from some lane of the first one on, in registers: the neighbours of
// pixels whose vectors are computed, or whose loads at other addresses would cross cache lines.

#include <cstdint>

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

// ---- bytes ----

/// The bytes `n` after those of `a`; `next` is the vector after `a`.
#ifdef __SSSE3__
template <int n>
inline __m128i followingBytes(__m128i a, __m128i next) {
  return _mm_alignr_epi8(next, a, n);
}
#endif
#ifdef __AVX2__
template <int n>
inline __m256i followingBytes(__m256i a, __m256i next) {
  const __m256i middle = _mm256_permute2x128_si256(a, next, 0x21);
  if constexpr (n < 16) return _mm256_alignr_epi8(middle, a, n);
  if constexpr (n >= 16) return _mm256_alignr_epi8(next, middle, n - 16);
}
#endif
#ifdef __AVX512BW__
/// `n` is a multiple of 4, below 16 or above 48.
template <int n>
inline __m512i followingBytes(__m512i a, __m512i next) {
  static_assert(n % 4 == 0 || n < 16 || n > 48);
  if constexpr (n % 4 == 0) return _mm512_alignr_epi32(next, a, n / 4);
  if constexpr (n < 16) return _mm512_alignr_epi8(_mm512_alignr_epi32(next, a, 4), a, n);
  return _mm512_alignr_epi8(next, _mm512_alignr_epi32(next, a, 12), n & 15);
}
#endif

// ---- floats ----

/// The floats `n` after those of `a`, from 0 to 4. The compiler shares shuffles between distances; for a
/// `reach` of 1 alone, one shift of bytes is shorter.
template <int n, int reach>
inline __m128 followingFloats(__m128 a, __m128 next) {
#ifdef __SSSE3__
  if constexpr (reach == 1) {
    return _mm_castsi128_ps(_mm_alignr_epi8(_mm_castps_si128(next), _mm_castps_si128(a), 4 * n));
  }
#endif
  const __m128 two = _mm_shuffle_ps(a, next, _MM_SHUFFLE(1, 0, 3, 2));
  if constexpr (n == 1) return _mm_shuffle_ps(a, two, _MM_SHUFFLE(2, 1, 2, 1));
  if constexpr (n == 3) return _mm_shuffle_ps(two, next, _MM_SHUFFLE(2, 1, 2, 1));
  return n == 0 ? a : n == 2 ? two : next;
}
#ifdef __AVX__
/// The same in each 16 bytes.
template <int n, int reach>
inline __m256 followingFloatsOfHalves(__m256 a, __m256 next) {
#ifdef __AVX2__
  if constexpr (reach == 1) {
    return _mm256_castsi256_ps(_mm256_alignr_epi8(_mm256_castps_si256(next), _mm256_castps_si256(a), 4 * n));
  }
#endif
  const __m256 two = _mm256_shuffle_ps(a, next, _MM_SHUFFLE(1, 0, 3, 2));
  if constexpr (n == 1) return _mm256_shuffle_ps(a, two, _MM_SHUFFLE(2, 1, 2, 1));
  if constexpr (n == 3) return _mm256_shuffle_ps(two, next, _MM_SHUFFLE(2, 1, 2, 1));
  return n == 0 ? a : n == 2 ? two : next;
}
template <int n, int reach>
inline __m256 followingFloats(__m256 a, __m256 next) {
  const __m256 middle = _mm256_permute2f128_ps(a, next, 0x21);
  if constexpr (n < 4) return followingFloatsOfHalves<n, reach>(a, middle);
  if constexpr (n >= 4) return followingFloatsOfHalves<n - 4, reach>(middle, next);
}
#endif
#ifdef __AVX512F__
template <int n, int>
inline __m512 followingFloats(__m512 a, __m512 next) {
  return _mm512_castsi512_ps(_mm512_alignr_epi32(_mm512_castps_si512(next), _mm512_castps_si512(a), n));
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives
