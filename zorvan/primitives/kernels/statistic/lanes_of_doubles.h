#pragma once

// Totals in lanes of doubles, to which lanes of integers and floats are added.

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Statistic {
namespace {

inline double sumOf(__m128d total) { return _mm_cvtsd_f64(_mm_add_sd(total, _mm_unpackhi_pd(total, total))); }

#ifdef __AVX2__
inline double sumOf(__m256d total) {
  return sumOf(_mm_add_pd(_mm256_castpd256_pd128(total), _mm256_extractf128_pd(total, 1)));
}
/// The total with eight signed integers added.
inline __m256d plus(__m256d total, __m256i dwords) {
  total = _mm256_add_pd(total, _mm256_cvtepi32_pd(_mm256_castsi256_si128(dwords)));
  return _mm256_add_pd(total, _mm256_cvtepi32_pd(_mm256_extracti128_si256(dwords, 1)));
}
inline __m256d plus(__m256d total, __m256 floats) {
  total = _mm256_add_pd(total, _mm256_cvtps_pd(_mm256_castps256_ps128(floats)));
  return _mm256_add_pd(total, _mm256_cvtps_pd(_mm256_extractf128_ps(floats, 1)));
}
#endif

#ifdef __AVX512BW__
inline double sumOf(__m512d total) {
  return sumOf(_mm256_add_pd(_mm512_castpd512_pd256(total), _mm512_extractf64x4_pd(total, 1)));
}
inline __m512d plus(__m512d total, __m512i dwords) {
  total = _mm512_add_pd(total, _mm512_cvtepi32_pd(_mm512_castsi512_si256(dwords)));
  return _mm512_add_pd(total, _mm512_cvtepi32_pd(_mm512_extracti64x4_epi64(dwords, 1)));
}
inline __m512d plus(__m512d total, __m512 floats) {
  total = _mm512_add_pd(total, _mm512_cvtps_pd(_mm512_castps512_ps256(floats)));
  return _mm512_add_pd(total, _mm512_cvtps_pd(_mm512_extractf32x8_ps(floats, 1)));
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
