#pragma once

// Vectors of float pixels in every width that the variant being built has.

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Laplace {
namespace {

template <class Vector>
struct FloatOperations;

template <>
struct FloatOperations<Vector16> {
  using Floats = __m128;
  static Floats of(Vector16 v) { return _mm_castsi128_ps(v.bits); }
  static Vector16 vector(Floats v) { return {_mm_castps_si128(v)}; }
  static Floats add(Floats a, Floats b) { return _mm_add_ps(a, b); }
  static Floats sub(Floats a, Floats b) { return _mm_sub_ps(a, b); }
  static Floats times(float factor, Floats v) { return _mm_mul_ps(_mm_set1_ps(factor), v); }
  static Floats negative(Floats v) { return _mm_xor_ps(v, _mm_set1_ps(-0.0F)); }
};

#ifdef __AVX__
template <>
struct FloatOperations<Vector32> {
  using Floats = __m256;
  static Floats of(Vector32 v) { return _mm256_castsi256_ps(v.bits); }
  static Vector32 vector(Floats v) { return {_mm256_castps_si256(v)}; }
  static Floats add(Floats a, Floats b) { return _mm256_add_ps(a, b); }
  static Floats sub(Floats a, Floats b) { return _mm256_sub_ps(a, b); }
  static Floats times(float factor, Floats v) { return _mm256_mul_ps(_mm256_set1_ps(factor), v); }
  static Floats negative(Floats v) { return _mm256_xor_ps(v, _mm256_set1_ps(-0.0F)); }
};
#endif

#ifdef __AVX512DQ__
template <>
struct FloatOperations<Vector64> {
  using Floats = __m512;
  static Floats of(Vector64 v) { return _mm512_castsi512_ps(v.bits); }
  static Vector64 vector(Floats v) { return {_mm512_castps_si512(v)}; }
  static Floats add(Floats a, Floats b) { return _mm512_add_ps(a, b); }
  static Floats sub(Floats a, Floats b) { return _mm512_sub_ps(a, b); }
  static Floats times(float factor, Floats v) { return _mm512_mul_ps(_mm512_set1_ps(factor), v); }
  static Floats negative(Floats v) { return _mm512_xor_ps(v, _mm512_set1_ps(-0.0F)); }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Laplace
