#pragma once

// Quotients of integer pixels, 8 at a time, by the processor's estimate of the reciprocal: all variants but
// the newest.
//
// Peel and tail are divided pixel by pixel. In vectors the product of numerator and estimate is refined by
// two Newton steps; a tie may be rounded to the other side than by a division. Where a vector has 8
// quotients, those of a whole vector of pixels are computed together.

#include "zorvan/primitives/kernels/arithmetic/divide/divide_pixels.h"
#include "zorvan/primitives/kernels/common/scaling.h"
#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/simd/partial.h"

namespace Zorvan::Primitives::Division {
namespace {

inline __m128 reciprocalEstimate(__m128 x) { return _mm_rcp_ps(x); }
inline __m128 clamped(__m128 x, float lowest, float highest) {
  return _mm_min_ps(_mm_max_ps(x, _mm_set1_ps(lowest)), _mm_set1_ps(highest));
}
inline __m128 where0(__m128 x, __m128 value) { return _mm_and_ps(_mm_cmpeq_ps(x, _mm_setzero_ps()), value); }
#ifdef __AVX2__
inline __m256 reciprocalEstimate(__m256 x) { return _mm256_rcp_ps(x); }
inline __m256 clamped(__m256 x, float lowest, float highest) {
  return _mm256_min_ps(_mm256_max_ps(x, _mm256_set1_ps(lowest)), _mm256_set1_ps(highest));
}
inline __m256 where0(__m256 x, __m256 value) {
  return _mm256_and_ps(_mm256_cmp_ps(x, _mm256_setzero_ps(), _CMP_EQ_OQ), value);
}
#endif

template <class F>
inline F estimatedQuotient(F numerator, F divisor) {
  const F r = reciprocalEstimate(divisor);
  const F e = broadcastFloats<F>(1) - divisor * r;
  const F q0 = numerator * r;
  const F q1 = q0 + e * q0;
  return q1 + (e * e) * q1;
}

/// Eight pixels as words.
template <class T>
inline __m128i loadEight(const T* p) {
  if constexpr (sizeof(T) == 1) {
    return unpacklo_epi8(loadLow<8>(p), _mm_setzero_si128());
  } else {
    return loadLow<16>(p);
  }
}
/// Eight 32-bit lanes.
struct EightDwords {
  __m128i low, high;
};
/// Lanes lie within the limits of the type; those of bytes saturate.
template <class T>
inline void storeEight(T* p, EightDwords lanes) {
  if constexpr (sizeof(T) == 1) {
    const __m128i words = packs_epi32(lanes.low, lanes.high);
    storeLow<8>(p, packus_epi16(words, words));
  } else if constexpr (std::is_signed_v<T>) {
    storeLow<16>(p, packs_epi32(lanes.low, lanes.high));
  } else {
    storeLow<16>(p, packUnsigned_epi32(lanes.low, lanes.high));
  }
}

/// Quotients of bytes stay below 2^31, at most 2^15 times a numerator, and saturate when they are packed.
template <class T, class F>
inline F limitedQuotient(F numerator, F divisor) {
  const F q = estimatedQuotient(numerator, divisor);
  if constexpr (sizeof(T) == 1) return q;
  return clamped(q, lowest<T>, highest<T>);
}

template <class T, class F>
inline F quotients(F numerator, F divisor, const QuotientFactors& factors, bool zeroes) {
  divisor = divisor * broadcastFloats<F>(factors.divisor);
  if (zeroes) divisor = divisor + where0(divisor, broadcastFloats<F>(factors.forZero));
  return limitedQuotient<T>(numerator * broadcastFloats<F>(factors.numerator), divisor);
}

template <class T>
inline EightDwords divideEight(__m128i divisors, __m128i numerators, const QuotientFactors& factors,
                               bool zeroes) {
  using Words = std::conditional_t<std::is_signed_v<T>, s16, u16>;
#ifdef __AVX2__
  const auto floats = [](__m128i words) {
    if constexpr (std::is_signed_v<Words>) return _mm256_cvtepi32_ps(_mm256_cvtepi16_epi32(words));
    return _mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(words));
  };
  const __m256i q = _mm256_cvtps_epi32(quotients<T>(floats(numerators), floats(divisors), factors, zeroes));
  return {_mm256_castsi256_si128(q), _mm256_extracti128_si256(q, 1)};
#else
  const auto d = widened<Words>(divisors), n = widened<Words>(numerators);
  const auto divide = [&](__m128i divisor, __m128i numerator) {
    return _mm_cvtps_epi32(
        quotients<T>(_mm_cvtepi32_ps(numerator), _mm_cvtepi32_ps(divisor), factors, zeroes));
  };
  return {divide(d.low, n.low), divide(d.high, n.high)};
#endif
}

#ifdef __AVX2__
/// 8 quotients. Divisors of 0 without a sign are replaced by one instruction: another divisor below the
/// replacement has a saturated quotient too. `zeroes`: whether there may be one with a sign.
template <Quotients form, class T>
inline __m256i divideDwords(__m256i divisors, __m256i numerators, const QuotientFactors& factors,
                            bool zeroes) {
  __m256 d = cvtepi32_ps(divisors), n = cvtepi32_ps(numerators);
  if constexpr (form == Quotients::scaledDivisor) d = d * broadcastFloats<__m256>(factors.divisor);
  if constexpr (form == Quotients::scaledNumerator) n = n * broadcastFloats<__m256>(factors.numerator);
  const __m256 forZero = broadcastFloats<__m256>(factors.forZero);
  if constexpr (!std::is_signed_v<T>) {
    d = max_ps(d, forZero);
  } else if (zeroes) {
    d = d + where0(d, forZero);
  }
  return _mm256_cvtps_epi32(limitedQuotient<T>(n, d));
}
/// 16 quotients, packed as `Packed`.
template <Quotients form, class T, class Packed>
inline __m256i divideWords(__m256i divisors, __m256i numerators, const QuotientFactors& factors,
                           bool zeroes) {
  using Word = std::conditional_t<std::is_signed_v<T>, s16, u16>;
  const auto d = widened<Word>(divisors), n = widened<Word>(numerators);
  return narrowed<Packed, __m256i>({divideDwords<form, T>(d.low, n.low, factors, zeroes),
                                    divideDwords<form, T>(d.high, n.high, factors, zeroes)});
}
/// The quotients of a vector of pixels.
template <Quotients form, class T>
inline __m256i divideVector(__m256i divisors, __m256i numerators, const QuotientFactors& factors,
                            bool zeroes) {
  if constexpr (sizeof(T) == 2) {
    return divideWords<form, T, T>(divisors, numerators, factors, zeroes);
  } else {
    const auto d = widened<u8>(divisors), n = widened<u8>(numerators);
    return narrowed<u8, __m256i>({divideWords<form, T, s16>(d.low, n.low, factors, zeroes),
                                  divideWords<form, T, s16>(d.high, n.high, factors, zeroes)});
  }
}
template <class T>
inline __m256i whereEqual0(__m256i pixels) {
  return sizeof(T) == 1 ? cmpeq_epi8(pixels, zeroes<__m256i>()) : cmpeq_epi16(pixels, zeroes<__m256i>());
}

/// Divides whole vectors of a row from pixel `i` on and returns the place after them.
template <Quotients form, class T>
inline std::int64_t divideVectors(const T* divisors, const T* numerators, T* dst, std::int64_t i,
                                  std::int64_t n, const QuotientFactors& factors, bool& anyZero) {
  constexpr int pixels = 32 / sizeof(T);
  if (n - i < pixels) return i;
  __m256i zeroDivisors = zeroes<__m256i>();
  for (; i + pixels <= n; i += pixels) {
    const auto d = loadAs<__m256i>(divisors + i), x = loadAs<__m256i>(numerators + i);
    const __m256i equal0 = whereEqual0<T>(d);
    zeroDivisors = zeroDivisors | equal0;
    const bool hasZero = std::is_signed_v<T> && movemask_epi8(equal0) != 0;
    storeAs(dst + i, divideVector<form, T>(d, x, factors, hasZero));
  }
  anyZero |= movemask_epi8(zeroDivisors) != 0;
  return i;
}
#endif

/// Returns whether any divisor of the row was 0.
template <Quotients form, class T>
inline bool divideRow(const T* divisors, const T* numerators, T* dst, std::int64_t n,
                      const QuotientFactors& factors) {
  bool anyZero = false;
  std::int64_t i = 0;
  const auto pixelsUpTo = [&](std::int64_t end) {
    for (; i < end; ++i) {
      const T d = loadAs<T>(divisors + i), x = loadAs<T>(numerators + i);
      storeAs(dst + i, dividePixel(d, x, factors, anyZero));
    }
  };
  pixelsUpTo(peelOfIntegers(addressOf(dst), n, sizeof(T)));
#ifdef __AVX2__
  i = divideVectors<form>(divisors, numerators, dst, i, n, factors, anyZero);
#endif
  for (; i + 8 <= n; i += 8) {
    const __m128i d = loadEight(divisors + i), x = loadEight(numerators + i);
    const bool zeroes = _mm_movemask_epi8(cmpeq_epi16(d, _mm_setzero_si128())) != 0;
    anyZero |= zeroes;
    storeEight(dst + i, divideEight<T>(d, x, factors, zeroes));
  }
  pixelsUpTo(n);
  return anyZero;
}

}  // namespace
}  // namespace Zorvan::Primitives::Division
