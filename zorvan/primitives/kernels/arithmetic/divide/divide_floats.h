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
#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/simd/partial.h"

namespace Zorvan::Primitives::Division {
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
inline void dividePixels(const float* divisors, const float* numerators, float* dst, std::int64_t i,
                         std::int64_t end, bool& anyZero) {
  for (; i < end; ++i) {
    storeAs(dst + i, divideFloat(loadAs<float>(divisors + i), loadAs<float>(numerators + i), anyZero));
  }
}

/// Lanes with all bits set where the estimate is not usable: magnitudes below 2^-126, and those from 2^125
/// on, infinity and NaN among them. Above 2^126 the estimate is 0, and just below it may be 0.
///
/// Twice the bits have no sign. Moved so that 2^-126 becomes the lowest integer, they need one comparison.
/// The error of the estimate would show the same in less time, but to compute it from a divisor of 0 raises
/// the flag for invalid operations, or a trap.
template <class I>
inline I unusableDivisors(I divisorBits) {
  const I magnitude = add_epi32(divisorBits, divisorBits);
  const I fromLowest = add_epi32(magnitude, broadcastDwords<I>(0x7F000000));
  return cmpgt_epi32(fromLowest, broadcastDwords<I>(0x7AFFFFFF));
}
inline int zeroMask(__m128 x) { return _mm_movemask_ps(_mm_cmpeq_ps(x, _mm_setzero_ps())); }
inline int signMask(__m128i x) { return _mm_movemask_ps(asFloats(x)); }
#ifdef __AVX2__
inline int signMask(__m256i x) { return _mm256_movemask_ps(asFloats(x)); }
using QuotientLanes = VectorOfFloats<32>;
#else
using QuotientLanes = VectorOfFloats<16>;
#endif

/// 8 pixels, one of which at least has a divisor without a usable estimate.
[[gnu::noinline]] inline void divideEightFloats(const float* divisors, const float* numerators, float* dst,
                                                bool& anyZero) {
  const __m128 d0 = loadAs<__m128>(divisors), d1 = loadAs<__m128>(divisors + 4);
  if ((zeroMask(d0) | zeroMask(d1)) != 0) return dividePixels(divisors, numerators, dst, 0, 8, anyZero);
  const __m128 n0 = loadAs<__m128>(numerators), n1 = loadAs<__m128>(numerators + 4);
  storeAs(dst, n0 / d0);
  storeAs(dst + 4, n1 / d1);
}

/// Vectors of pixels. Returns false and writes nothing if the estimate of a divisor is not usable. There is
/// one branch for all vectors, because the test takes about as long as the quotients.
///
/// The reciprocal is refined, not the quotient as for integers: that would overflow for large floats.
template <int vectors>
inline bool divideByEstimates(const float* divisors, const float* numerators, float* dst) {
  constexpr int lanes = sizeof(QuotientLanes) / 4;
  QuotientLanes d[vectors];
  for (int j = 0; j < vectors; ++j) d[j] = loadAs<QuotientLanes>(divisors + j * lanes);
  auto unusable = unusableDivisors(asIntegers(d[0]));
  for (int j = 1; j < vectors; ++j) unusable = unusable | unusableDivisors(asIntegers(d[j]));
  if (signMask(unusable) != 0) [[unlikely]]
    return false;
  for (int j = 0; j < vectors; ++j) {
    const auto numerator = loadAs<QuotientLanes>(numerators + j * lanes);
    const QuotientLanes r = reciprocalEstimate(d[j]);
    const QuotientLanes e = broadcastFloats<QuotientLanes>(1) - d[j] * r;
    storeAs(dst + j * lanes, numerator * (r + e * (r + e * r)));
  }
  return true;
}

constexpr int unrolledQuotients = 4 * sizeof(QuotientLanes) / 4;  // floats in 4 vectors

/// A multiple of 8 pixels from `begin` to `end`.
inline void divideEights(const float* divisors, const float* numerators, float* dst, std::int64_t begin,
                         std::int64_t end, bool& anyZero) {
  for (std::int64_t i = begin; i != end; i += 8) {
    if (divideByEstimates<32 / sizeof(QuotientLanes)>(divisors + i, numerators + i, dst + i)) continue;
    divideEightFloats(divisors + i, numerators + i, dst + i, anyZero);
  }
}

/// The pixels of an iteration, some of which have a divisor without a usable estimate.
[[gnu::cold, gnu::noinline]] inline bool divideUnrolledByEights(const float* divisors,
                                                                const float* numerators, float* dst) {
  bool anyZero = false;
  divideEights(divisors, numerators, dst, 0, unrolledQuotients, anyZero);
  return anyZero;
}

/// Returns whether any divisor of the row was 0. `whole`: the row has no peel and no tail.
template <bool whole>
inline bool divideFloatRow(const float* divisors, const float* numerators, float* dst, std::int64_t n) {
  bool anyZero = false;
  std::int64_t i = 0;
  if constexpr (!whole) {
    i = peelOfFloats(addressOf(divisors), addressOf(numerators), addressOf(dst), n, 16);
    dividePixels(divisors, numerators, dst, 0, i, anyZero);
  }
  for (; i + unrolledQuotients <= n; i += unrolledQuotients) {
    if (divideByEstimates<4>(divisors + i, numerators + i, dst + i)) continue;
    anyZero |= divideUnrolledByEights(divisors + i, numerators + i, dst + i);
  }
  if constexpr (!whole) {
    const std::int64_t tail = i + ((n - i) & ~7);
    divideEights(divisors, numerators, dst, i, tail, anyZero);
    dividePixels(divisors, numerators, dst, tail, n, anyZero);
  }
  return anyZero;
}

#ifdef __AVX512F__
/// Up to 16 pixels, at least one divisor of which is 0. Rare: kept out of the loops, whose registers it would
/// take.
[[gnu::cold, gnu::noinline]] inline void divideWithZero(const float* divisors, const float* numerators,
                                                        float* dst, std::int64_t count) {
  bool anyZero = false;
  dividePixels(divisors, numerators, dst, 0, count, anyZero);
}

/// Up to 16 pixels. Lanes after them are divided by 1 and not stored.
inline void divideFirstFloats(const float* divisors, const float* numerators, float* dst, std::int64_t count,
                              bool& anyZero) {
  const auto lanes = firstLanes<__mmask16>(count);
  const __m512 d = loadMasked(lanes, divisors, broadcastFloats<__m512>(1));
  if (_mm512_cmp_ps_mask(d, _mm512_setzero_ps(), _CMP_EQ_OQ) != 0) [[unlikely]] {
    anyZero = true;
    return divideWithZero(divisors, numerators, dst, count);
  }
  storeMasked(lanes, dst, loadMaskedFloats(lanes, numerators) / d);
}

/// Divides vectors of 16 pixels and returns true, unless a divisor is 0: then it writes nothing.
template <int vectors>
inline bool divideFloatsWithoutZero(const float* divisors, const float* numerators, float* dst) {
  __m512 d[vectors];
  __mmask16 zeroes = 0;
  for (int j = 0; j < vectors; ++j) {
    d[j] = loadAs<__m512>(divisors + 16 * j);
    zeroes = static_cast<__mmask16>(zeroes | _mm512_cmp_ps_mask(d[j], _mm512_setzero_ps(), _CMP_EQ_OQ));
  }
  if (zeroes != 0) [[unlikely]]
    return false;
  for (int j = 0; j < vectors; ++j) storeAs(dst + 16 * j, loadAs<__m512>(numerators + 16 * j) / d[j]);
  return true;
}

/// A multiple of 16 pixels from `i` to `end`.
inline void divideFloatVectors(const float* divisors, const float* numerators, float* dst, std::int64_t i,
                               std::int64_t end, bool& anyZero) {
  for (; i != end; i += 16) {
    if (divideFloatsWithoutZero<1>(divisors + i, numerators + i, dst + i)) continue;
    anyZero = true;
    divideWithZero(divisors + i, numerators + i, dst + i, 16);
  }
}

[[gnu::cold, gnu::noinline]] inline void divide64WithZero(const float* divisors, const float* numerators,
                                                          float* dst) {
  bool anyZero = false;
  divideFloatVectors(divisors, numerators, dst, 0, 64, anyZero);
}

/// A multiple of 64 pixels, unrolled by 4.
inline void divideFloatsUnrolled(const float* divisors, const float* numerators, float* dst, std::int64_t i,
                                 std::int64_t end, bool& anyZero) {
  for (; i != end; i += 64) {
    if (divideFloatsWithoutZero<4>(divisors + i, numerators + i, dst + i)) continue;
    anyZero = true;
    divide64WithZero(divisors + i, numerators + i, dst + i);
  }
}

/// Returns whether any divisor of the row was 0. `whole`: the row is a multiple of 64 pixels without a peel.
template <bool whole>
inline bool divideFloatRowMasked(const float* divisors, const float* numerators, float* dst, std::int64_t n) {
  bool anyZero = false;
  if constexpr (whole) {
    divideFloatsUnrolled(divisors, numerators, dst, 0, n, anyZero);
    return anyZero;
  }
  const std::int64_t peel = peelOfFloats(addressOf(divisors), addressOf(numerators), addressOf(dst), n, 64);
  if (peel != 0) divideFirstFloats(divisors, numerators, dst, peel, anyZero);
  const std::int64_t unrolled = peel + ((n - peel) & ~63), vectors = peel + ((n - peel) & ~15);
  divideFloatsUnrolled(divisors, numerators, dst, peel, unrolled, anyZero);
  divideFloatVectors(divisors, numerators, dst, unrolled, vectors, anyZero);
  if (vectors != n) {
    divideFirstFloats(divisors + vectors, numerators + vectors, dst + vectors, n - vectors, anyZero);
  }
  return anyZero;
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Division
