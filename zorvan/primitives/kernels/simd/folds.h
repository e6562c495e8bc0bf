#pragma once

// Horizontal sums: the high half of a vector is added to the low half until one lane is left. And vertical
// sums of lanes that are widened to doubles first.

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

inline std::int32_t sumOfDwords(__m128i lanes) {
  lanes = _mm_add_epi32(lanes, _mm_srli_si128(lanes, 8));
  return _mm_cvtsi128_si32(_mm_add_epi32(lanes, _mm_srli_si128(lanes, 4)));
}
inline std::int64_t sumOfQwords(__m128i lanes) {
  return _mm_cvtsi128_si64(_mm_add_epi64(lanes, _mm_srli_si128(lanes, 8)));
}
inline double sumOf(__m128d lanes) { return _mm_cvtsd_f64(_mm_add_sd(lanes, _mm_unpackhi_pd(lanes, lanes))); }
inline float sumOf(__m128 lanes) {
  lanes = _mm_add_ps(lanes, _mm_movehl_ps(lanes, lanes));
  return _mm_cvtss_f32(_mm_add_ss(lanes, _mm_shuffle_ps(lanes, lanes, 1)));
}

#ifdef __AVX__
inline double sumOf(__m256d lanes) {
  return sumOf(_mm_add_pd(_mm256_castpd256_pd128(lanes), _mm256_extractf128_pd(lanes, 1)));
}
inline float sumOf(__m256 lanes) {
  return sumOf(_mm_add_ps(_mm256_castps256_ps128(lanes), _mm256_extractf128_ps(lanes, 1)));
}
#endif

#ifdef __AVX2__
inline std::int64_t sumOfQwords(__m256i lanes) {
  return sumOfQwords(_mm_add_epi64(_mm256_castsi256_si128(lanes), _mm256_extracti128_si256(lanes, 1)));
}
/// `total` with signed 32-bit integers added.
inline __m256d addWidened(__m256d total, __m256i dwords) {
  total = _mm256_add_pd(total, _mm256_cvtepi32_pd(_mm256_castsi256_si128(dwords)));
  return _mm256_add_pd(total, _mm256_cvtepi32_pd(_mm256_extracti128_si256(dwords, 1)));
}
inline __m256d addWidened(__m256d total, __m256 floats) {
  total = _mm256_add_pd(total, _mm256_cvtps_pd(_mm256_castps256_ps128(floats)));
  return _mm256_add_pd(total, _mm256_cvtps_pd(_mm256_extractf128_ps(floats, 1)));
}
#endif

#ifdef __AVX512BW__
inline double sumOf(__m512d lanes) {
  return sumOf(_mm256_add_pd(_mm512_castpd512_pd256(lanes), _mm512_extractf64x4_pd(lanes, 1)));
}
inline float sumOf(__m512 lanes) {
  return sumOf(_mm256_add_ps(_mm512_castps512_ps256(lanes), _mm512_extractf32x8_ps(lanes, 1)));
}
inline std::int64_t sumOfQwords(__m512i lanes) { return _mm512_reduce_add_epi64(lanes); }
inline __m512d addWidened(__m512d total, __m512i dwords) {
  total = _mm512_add_pd(total, _mm512_cvtepi32_pd(_mm512_castsi512_si256(dwords)));
  return _mm512_add_pd(total, _mm512_cvtepi32_pd(_mm512_extracti64x4_epi64(dwords, 1)));
}
inline __m512d addWidened(__m512d total, __m512 floats) {
  total = _mm512_add_pd(total, _mm512_cvtps_pd(_mm512_castps512_ps256(floats)));
  return _mm512_add_pd(total, _mm512_cvtps_pd(_mm512_extractf32x8_ps(floats, 1)));
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives
