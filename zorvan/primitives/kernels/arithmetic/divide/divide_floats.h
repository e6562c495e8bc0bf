#pragma once

// Quotients of float pixels.
//
// Rows run pixel by pixel to a boundary of the destination, then in blocks. All variants but the newest take
// 8 pixels in a block and divide by the processor's estimate of the reciprocal after two Newton steps, whose
// error of a few units in the last place stays; the newest divides 16 in a block. A block with a divisor that
// the estimate cannot serve (not a number, or of a magnitude that has no normal reciprocal) is divided as it
// stands. A block with a divisor of 0 is divided pixel by pixel.

#include "zorvan/primitives/kernels/arithmetic/divide/divide_plan.h"
#include "zorvan/primitives/kernels/arithmetic/divide/divide_row.h"
#include "zorvan/primitives/kernels/common/extreme_values.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// Over 0 of either sign the quotient is infinite with the sign of the numerator, and nothing over nothing is
/// no number.
inline float divideFloat(float divisor, float numerator, bool& anyZero) {
  if (divisor == 0) {
    anyZero = true;
    return numerator > 0 ? infinite<float> : numerator < 0 ? -infinite<float> : quietNaN<float>;
  }
  return numerator / divisor;
}

/// `end` in pixels, as `i`.
inline void divideFloats(const unsigned char* divisors, const unsigned char* numerators, unsigned char* dst,
                         std::int64_t i, std::int64_t end, bool& anyZero) {
  for (; i < end; ++i) {
    storeAs(dst + 4 * i,
            divideFloat(loadAs<float>(divisors + 4 * i), loadAs<float>(numerators + 4 * i), anyZero));
  }
}

/// Numerator times reciprocal: unlike integers, floats leave no room for a quotient refined as a whole.
template <class F>
inline F productWithReciprocal(F numerator, F divisor) {
  const F r = reciprocalEstimate(divisor);
  const F e = broadcastFloats<F>(1) - divisor * r;
  return numerator * (r + e * (r + e * r));
}

/// Lanes with the sign bit set where the estimate does not serve: magnitudes below 2^-126, and from 2^125 on,
/// infinity and what is no number among them. Beyond 2^126 the estimate is 0, and just below it may be.
inline __m128i unservedDivisors(__m128 divisor) {
  const __m128i smallestNormal = _mm_set1_epi32(0x00800000), servedSpan = _mm_set1_epi32(0x7D800000 - 1);
  const __m128i magnitude = _mm_castps_si128(divisor) & _mm_set1_epi32(0x7FFFFFFF);
  const __m128i above = _mm_sub_epi32(magnitude, smallestNormal);
  return above | _mm_cmpgt_epi32(above, servedSpan);
}
inline int signMask(__m128i x) { return _mm_movemask_ps(_mm_castsi128_ps(x)); }
inline int zeroMask(__m128 x) { return _mm_movemask_ps(_mm_cmpeq_ps(x, _mm_setzero_ps())); }

#ifdef __AVX2__
inline __m256i unservedDivisors(__m256 divisor) {
  const __m256i smallestNormal = _mm256_set1_epi32(0x00800000),
                servedSpan = _mm256_set1_epi32(0x7D800000 - 1);
  const __m256i magnitude = _mm256_castps_si256(divisor) & _mm256_set1_epi32(0x7FFFFFFF);
  const __m256i above = _mm256_sub_epi32(magnitude, smallestNormal);
  return above | _mm256_cmpgt_epi32(above, servedSpan);
}
inline int signMask(__m256i x) { return _mm256_movemask_ps(_mm256_castsi256_ps(x)); }
inline int zeroMask(__m256 x) {
  return _mm256_movemask_ps(_mm256_cmp_ps(x, _mm256_setzero_ps(), _CMP_EQ_OQ));
}
using FloatLanes = __m256;
#else
using FloatLanes = __m128;
#endif

/// A block of 8 pixels with some divisor that the estimate does not serve.
[[gnu::noinline]] inline void divideUnservedBlock(const unsigned char* divisors,
                                                  const unsigned char* numerators, unsigned char* dst,
                                                  bool& anyZero) {
  const __m128 d0 = loadAs<__m128>(divisors), d1 = loadAs<__m128>(divisors + 16);
  if ((zeroMask(d0) | zeroMask(d1)) != 0) return divideFloats(divisors, numerators, dst, 0, 8, anyZero);
  const __m128 n0 = loadAs<__m128>(numerators), n1 = loadAs<__m128>(numerators + 16);
  storeAs(dst, n0 / d0);
  storeAs(dst + 16, n1 / d1);
}

/// Gives back whether any divisor of the row was 0.
inline bool divideFloatRow(const unsigned char* divisors, const unsigned char* numerators, unsigned char* dst,
                           std::int64_t n) {
  constexpr int vectors = 32 / sizeof(FloatLanes), size = sizeof(FloatLanes);
  bool anyZero = false;
  const std::int64_t peel = floatsBeforeQuotients(reinterpret_cast<std::uintptr_t>(divisors),
                                                  reinterpret_cast<std::uintptr_t>(numerators),
                                                  reinterpret_cast<std::uintptr_t>(dst), n, 16);
  divideFloats(divisors, numerators, dst, 0, peel, anyZero);
  std::int64_t i = peel;
  for (; i + 8 <= n; i += 8) {
    FloatLanes d[vectors], x[vectors];
    int unserved = 0;
    for (int j = 0; j < vectors; ++j) {
      d[j] = loadAs<FloatLanes>(divisors + 4 * i + j * size);
      x[j] = loadAs<FloatLanes>(numerators + 4 * i + j * size);
      unserved |= signMask(unservedDivisors(d[j]));
    }
    if (unserved != 0) [[unlikely]] {
      divideUnservedBlock(divisors + 4 * i, numerators + 4 * i, dst + 4 * i, anyZero);
      continue;
    }
    for (int j = 0; j < vectors; ++j) storeAs(dst + 4 * i + j * size, productWithReciprocal(x[j], d[j]));
  }
  divideFloats(divisors, numerators, dst, i, n, anyZero);
  return anyZero;
}

#ifdef __AVX512F__
/// Up to 16 pixels with a divisor of 0 among them. It is seldom, and its registers would be missed elsewhere.
[[gnu::cold, gnu::noinline]] inline void divideBlockWithZero(const unsigned char* divisors,
                                                             const unsigned char* numerators,
                                                             unsigned char* dst, std::int64_t count) {
  bool anyZero = false;
  divideFloats(divisors, numerators, dst, 0, count, anyZero);
}

/// Up to 16 pixels; those that the mask leaves out are divided by 1 and not stored.
inline void divideFloatBlock(const unsigned char* divisors, const unsigned char* numerators,
                             unsigned char* dst, __mmask16 mask, int count, bool& anyZero) {
  const __m512 d = _mm512_mask_loadu_ps(_mm512_set1_ps(1), mask, divisors);
  if (_mm512_cmp_ps_mask(d, _mm512_setzero_ps(), _CMP_EQ_OQ) != 0) [[unlikely]] {
    anyZero = true;
    return divideBlockWithZero(divisors, numerators, dst, count);
  }
  _mm512_mask_storeu_ps(dst, mask, _mm512_div_ps(_mm512_maskz_loadu_ps(mask, numerators), d));
}

/// Divides so many vectors of 16 unless some divisor of theirs is 0: then it writes nothing and says so.
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

/// Whole blocks of 16 pixels from `i` to `end`.
inline void divideFloatBlocks(const unsigned char* divisors, const unsigned char* numerators,
                              unsigned char* dst, std::int64_t i, std::int64_t end, bool& anyZero) {
  for (; i != end; i += 16) {
    if (divideFloatsWithoutZero<1>(divisors + 4 * i, numerators + 4 * i, dst + 4 * i)) continue;
    anyZero = true;
    divideBlockWithZero(divisors + 4 * i, numerators + 4 * i, dst + 4 * i, 16);
  }
}

[[gnu::cold, gnu::noinline]] inline void divideTurnWithZero(const unsigned char* divisors,
                                                            const unsigned char* numerators,
                                                            unsigned char* dst) {
  bool anyZero = false;
  divideFloatBlocks(divisors, numerators, dst, 0, 64, anyZero);
}

/// Whole turns of four blocks.
inline void divideFloatTurns(const unsigned char* divisors, const unsigned char* numerators,
                             unsigned char* dst, std::int64_t i, std::int64_t end, bool& anyZero) {
  for (; i != end; i += 64) {
    if (divideFloatsWithoutZero<4>(divisors + 4 * i, numerators + 4 * i, dst + 4 * i)) continue;
    anyZero = true;
    divideTurnWithZero(divisors + 4 * i, numerators + 4 * i, dst + 4 * i);
  }
}

/// Gives back whether any divisor of the row was 0. `whole`: the row is so many turns and nothing else.
template <bool whole>
inline bool divideFloatRowMasked(const unsigned char* divisors, const unsigned char* numerators,
                                 unsigned char* dst, std::int64_t n) {
  bool anyZero = false;
  if constexpr (whole) {
    divideFloatTurns(divisors, numerators, dst, 0, n, anyZero);
    return anyZero;
  }
  const auto firstOnes = [](std::int64_t count) { return static_cast<__mmask16>((1 << count) - 1); };
  const std::int64_t peel = floatsBeforeQuotients(reinterpret_cast<std::uintptr_t>(divisors),
                                                  reinterpret_cast<std::uintptr_t>(numerators),
                                                  reinterpret_cast<std::uintptr_t>(dst), n, 64);
  if (peel != 0) {
    divideFloatBlock(divisors, numerators, dst, firstOnes(peel), static_cast<int>(peel), anyZero);
  }
  const std::int64_t turns = peel + ((n - peel) & ~63), blocks = peel + ((n - peel) & ~15);
  divideFloatTurns(divisors, numerators, dst, peel, turns, anyZero);
  divideFloatBlocks(divisors, numerators, dst, turns, blocks, anyZero);
  if (blocks != n) {
    divideFloatBlock(divisors + 4 * blocks, numerators + 4 * blocks, dst + 4 * blocks, firstOnes(n - blocks),
                     static_cast<int>(n - blocks), anyZero);
  }
  return anyZero;
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives
