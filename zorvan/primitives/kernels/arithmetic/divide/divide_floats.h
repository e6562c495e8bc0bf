#pragma once

// Quotients of float pixels.
//
// Rows are peeled to a boundary of the destination, then run in vectors. All variants but the newest take 8
// pixels at a time and multiply by the processor's estimate of the reciprocal, refined by two Newton steps;
// an error of a few units in the last place remains. Where the estimate of a divisor is not usable (a NaN, or
// a magnitude without a normal reciprocal) all 8 pixels are divided. The newest variant divides, 16 pixels at
// a time. In every variant vectors with a divisor of 0 go pixel by pixel.

#include "zorvan/primitives/kernels/arithmetic/divide/divide_plan.h"
#include "zorvan/primitives/kernels/arithmetic/divide/divide_row.h"
#include "zorvan/primitives/kernels/common/extreme_values.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// A numerator over 0 of either sign is infinite with the sign of the numerator; 0 over 0 is a NaN.
inline float divideFloat(float divisor, float numerator, bool& anyZero) {
  if (divisor == 0) {
    anyZero = true;
    return numerator > 0 ? infinite<float> : numerator < 0 ? -infinite<float> : quietNaN<float>;
  }
  return numerator / divisor;
}

/// Pixels from `i` to `end`.
inline void divideFloats(const unsigned char* divisors, const unsigned char* numerators, unsigned char* dst,
                         std::int64_t i, std::int64_t end, bool& anyZero) {
  for (; i < end; ++i) {
    storeAs(dst + 4 * i,
            divideFloat(loadAs<float>(divisors + 4 * i), loadAs<float>(numerators + 4 * i), anyZero));
  }
}

/// The reciprocal is refined, not the quotient as for integers: that would overflow for large floats.
template <class F>
inline F productWithReciprocal(F numerator, F divisor) {
  const F r = reciprocalEstimate(divisor);
  const F e = broadcastFloats<F>(1) - divisor * r;
  return numerator * (r + e * (r + e * r));
}

/// Lanes with the sign bit set where the estimate is not usable: magnitudes below 2^-126, and those from
/// 2^125 on, infinity and NaN among them. Above 2^126 the estimate is 0, and just below it may be 0.
inline __m128i unusableDivisors(__m128 divisor) {
  const __m128i smallestNormal = _mm_set1_epi32(0x00800000), usableSpan = _mm_set1_epi32(0x7D800000 - 1);
  const __m128i magnitude = _mm_castps_si128(divisor) & _mm_set1_epi32(0x7FFFFFFF);
  const __m128i above = _mm_sub_epi32(magnitude, smallestNormal);
  return above | _mm_cmpgt_epi32(above, usableSpan);
}
inline int signMask(__m128i x) { return _mm_movemask_ps(_mm_castsi128_ps(x)); }
inline int zeroMask(__m128 x) { return _mm_movemask_ps(_mm_cmpeq_ps(x, _mm_setzero_ps())); }

#ifdef __AVX2__
inline __m256i unusableDivisors(__m256 divisor) {
  const __m256i smallestNormal = _mm256_set1_epi32(0x00800000),
                usableSpan = _mm256_set1_epi32(0x7D800000 - 1);
  const __m256i magnitude = _mm256_castps_si256(divisor) & _mm256_set1_epi32(0x7FFFFFFF);
  const __m256i above = _mm256_sub_epi32(magnitude, smallestNormal);
  return above | _mm256_cmpgt_epi32(above, usableSpan);
}
inline int signMask(__m256i x) { return _mm256_movemask_ps(_mm256_castsi256_ps(x)); }
inline int zeroMask(__m256 x) {
  return _mm256_movemask_ps(_mm256_cmp_ps(x, _mm256_setzero_ps(), _CMP_EQ_OQ));
}
using QuotientLanes = FloatLanes<32>;
#else
using QuotientLanes = FloatLanes<16>;
#endif

/// 8 pixels, one of which at least has a divisor without a usable estimate.
[[gnu::noinline]] inline void divideEightFloats(const unsigned char* divisors,
                                                const unsigned char* numerators, unsigned char* dst,
                                                bool& anyZero) {
  const __m128 d0 = loadAs<__m128>(divisors), d1 = loadAs<__m128>(divisors + 16);
  if ((zeroMask(d0) | zeroMask(d1)) != 0) return divideFloats(divisors, numerators, dst, 0, 8, anyZero);
  const __m128 n0 = loadAs<__m128>(numerators), n1 = loadAs<__m128>(numerators + 16);
  storeAs(dst, n0 / d0);
  storeAs(dst + 16, n1 / d1);
}

/// Returns whether any divisor of the row was 0.
inline bool divideFloatRow(const unsigned char* divisors, const unsigned char* numerators, unsigned char* dst,
                           std::int64_t n) {
  constexpr int vectors = 32 / sizeof(QuotientLanes), size = sizeof(QuotientLanes);
  bool anyZero = false;
  const std::int64_t peel =
      peelOfFloats(reinterpret_cast<std::uintptr_t>(divisors), reinterpret_cast<std::uintptr_t>(numerators),
                   reinterpret_cast<std::uintptr_t>(dst), n, 16);
  divideFloats(divisors, numerators, dst, 0, peel, anyZero);
  std::int64_t i = peel;
  for (; i + 8 <= n; i += 8) {
    QuotientLanes d[vectors], x[vectors];
    int unusable = 0;
    for (int j = 0; j < vectors; ++j) {
      d[j] = loadAs<QuotientLanes>(divisors + 4 * i + j * size);
      x[j] = loadAs<QuotientLanes>(numerators + 4 * i + j * size);
      unusable |= signMask(unusableDivisors(d[j]));
    }
    if (unusable != 0) [[unlikely]] {
      divideEightFloats(divisors + 4 * i, numerators + 4 * i, dst + 4 * i, anyZero);
      continue;
    }
    for (int j = 0; j < vectors; ++j) storeAs(dst + 4 * i + j * size, productWithReciprocal(x[j], d[j]));
  }
  divideFloats(divisors, numerators, dst, i, n, anyZero);
  return anyZero;
}

#ifdef __AVX512F__
/// Up to 16 pixels, at least one divisor of which is 0. Rare: kept out of the loops, whose registers it would
/// take.
[[gnu::cold, gnu::noinline]] inline void divideWithZero(const unsigned char* divisors,
                                                        const unsigned char* numerators, unsigned char* dst,
                                                        std::int64_t count) {
  bool anyZero = false;
  divideFloats(divisors, numerators, dst, 0, count, anyZero);
}

/// Up to 16 pixels. Lanes outside the mask are divided by 1 and not stored.
inline void divideMaskedFloats(const unsigned char* divisors, const unsigned char* numerators,
                               unsigned char* dst, __mmask16 mask, int count, bool& anyZero) {
  const __m512 d = _mm512_mask_loadu_ps(_mm512_set1_ps(1), mask, divisors);
  if (_mm512_cmp_ps_mask(d, _mm512_setzero_ps(), _CMP_EQ_OQ) != 0) [[unlikely]] {
    anyZero = true;
    return divideWithZero(divisors, numerators, dst, count);
  }
  _mm512_mask_storeu_ps(dst, mask, _mm512_div_ps(_mm512_maskz_loadu_ps(mask, numerators), d));
}

/// Divides vectors of 16 pixels and returns true, unless a divisor is 0: then it writes nothing.
template <int vectors>
inline bool divideFloatsWithoutZero(const unsigned char* divisors, const unsigned char* numerators,
                                    unsigned char* dst) {
  __m512 d[vectors];
  __mmask16 zeroes = 0;
  for (int j = 0; j < vectors; ++j) {
    d[j] = _mm512_loadu_ps(divisors + 64 * j);
    zeroes = static_cast<__mmask16>(zeroes | _mm512_cmp_ps_mask(d[j], _mm512_setzero_ps(), _CMP_EQ_OQ));
  }
  if (zeroes != 0) [[unlikely]]
    return false;
  for (int j = 0; j < vectors; ++j) {
    _mm512_storeu_ps(dst + 64 * j, _mm512_div_ps(_mm512_loadu_ps(numerators + 64 * j), d[j]));
  }
  return true;
}

/// A multiple of 16 pixels from `i` to `end`.
inline void divideFloatVectors(const unsigned char* divisors, const unsigned char* numerators,
                               unsigned char* dst, std::int64_t i, std::int64_t end, bool& anyZero) {
  for (; i != end; i += 16) {
    if (divideFloatsWithoutZero<1>(divisors + 4 * i, numerators + 4 * i, dst + 4 * i)) continue;
    anyZero = true;
    divideWithZero(divisors + 4 * i, numerators + 4 * i, dst + 4 * i, 16);
  }
}

[[gnu::cold, gnu::noinline]] inline void divide64WithZero(const unsigned char* divisors,
                                                          const unsigned char* numerators,
                                                          unsigned char* dst) {
  bool anyZero = false;
  divideFloatVectors(divisors, numerators, dst, 0, 64, anyZero);
}

/// A multiple of 64 pixels, unrolled by 4.
inline void divideFloatsUnrolled(const unsigned char* divisors, const unsigned char* numerators,
                                 unsigned char* dst, std::int64_t i, std::int64_t end, bool& anyZero) {
  for (; i != end; i += 64) {
    if (divideFloatsWithoutZero<4>(divisors + 4 * i, numerators + 4 * i, dst + 4 * i)) continue;
    anyZero = true;
    divide64WithZero(divisors + 4 * i, numerators + 4 * i, dst + 4 * i);
  }
}

/// Returns whether any divisor of the row was 0. `whole`: the row is a multiple of 64 pixels without a peel.
template <bool whole>
inline bool divideFloatRowMasked(const unsigned char* divisors, const unsigned char* numerators,
                                 unsigned char* dst, std::int64_t n) {
  bool anyZero = false;
  if constexpr (whole) {
    divideFloatsUnrolled(divisors, numerators, dst, 0, n, anyZero);
    return anyZero;
  }
  const auto firstOnes = [](std::int64_t count) { return static_cast<__mmask16>((1 << count) - 1); };
  const std::int64_t peel =
      peelOfFloats(reinterpret_cast<std::uintptr_t>(divisors), reinterpret_cast<std::uintptr_t>(numerators),
                   reinterpret_cast<std::uintptr_t>(dst), n, 64);
  if (peel != 0) {
    divideMaskedFloats(divisors, numerators, dst, firstOnes(peel), static_cast<int>(peel), anyZero);
  }
  const std::int64_t unrolled = peel + ((n - peel) & ~63), vectors = peel + ((n - peel) & ~15);
  divideFloatsUnrolled(divisors, numerators, dst, peel, unrolled, anyZero);
  divideFloatVectors(divisors, numerators, dst, unrolled, vectors, anyZero);
  if (vectors != n) {
    divideMaskedFloats(divisors + 4 * vectors, numerators + 4 * vectors, dst + 4 * vectors,
                       firstOnes(n - vectors), static_cast<int>(n - vectors), anyZero);
  }
  return anyZero;
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives
