#pragma once

// Quotients of integer pixels, 64 at a time, by the 14-bit estimate of the reciprocal: the newest variant.
//
// Vectors of 16 floats from the first pixel on. The tail is loaded and stored under masks: no pixel is
// divided alone. The Newton step uses fused multiplications and additions.

#include "zorvan/primitives/kernels/arithmetic/divide/divide_pixels.h"
#include "zorvan/primitives/kernels/simd/partial.h"

#ifdef __AVX512BW__
namespace Zorvan::Primitives::Division {
namespace {

/// One Newton step on `q`, the product of a numerator and the estimate `r` of the divisor's reciprocal. A
/// second step, `q + e * e * q`, would change nothing: `e` is at most 2^-14, so it adds less than half of the
/// last bit.
inline __m512 refinedQuotient(__m512 q, __m512 divisor, __m512 r) {
  const __m512 e = _mm512_fnmadd_ps(divisor, r, _mm512_set1_ps(1));
  return _mm512_fmadd_ps(e, q, q);
}

template <class T>
struct Sixteen;

/// Sixteen pixels as 32-bit lanes; those outside the mask are `other`. Words also as four times sixteen.
template <>
struct Sixteen<u8> {
  static __m512i load(const u8* p, __mmask16 mask, char other) {
    return _mm512_cvtepu8_epi32(loadMasked(mask, p, _mm_set1_epi8(other)));
  }
  static void store(u8* p, __mmask16 mask, __m512i lanes) { storeMasked_cvtusepi32_epi8(mask, p, lanes); }
  static bool anyZeroOf64(const u8* p) {
    const auto x = loadAs<__m512i>(p);
    return _mm512_testn_epi8_mask(x, x) != 0;
  }
};

template <class T>
struct SixteenWords {
  static __m512i widened(__m256i words) {
    return std::is_signed_v<T> ? _mm512_cvtepi16_epi32(words) : _mm512_cvtepu16_epi32(words);
  }
  static void load64(const T* p, __m512i (&lanes)[4]) {
    for (int i = 0; i < 4; ++i) lanes[i] = widened(loadAs<__m256i>(p + 16 * i));
  }
  static __m512i load(const T* p, __mmask16 mask, short other) {
    return widened(loadMasked(mask, p, _mm256_set1_epi16(other)));
  }
  /// The lanes fit into words.
  static void store(T* p, __mmask16 mask, __m512i lanes) { storeMasked_cvtepi32_epi16(mask, p, lanes); }
  static bool anyZeroOf64(const T* p) {
    const auto x = loadAs<__m512i>(p), y = loadAs<__m512i>(p + 32);
    return (_mm512_testn_epi16_mask(x, x) | _mm512_testn_epi16_mask(y, y)) != 0;
  }
  static void store64(T* p, const __m512i (&lanes)[4]) {
    for (int i = 0; i < 4; ++i) storeAs(p + 16 * i, _mm512_cvtepi32_epi16(lanes[i]));
  }
};
template <>
struct Sixteen<u16> : SixteenWords<u16> {};
template <>
struct Sixteen<s16> : SixteenWords<s16> {};

/// Divides the lanes. `zeroes`: some divisor may be 0.
template <class T, Quotients form, bool zeroes>
inline __m512i divideSixteen(__m512i divisors, __m512i numerators, const QuotientFactors& factors) {
  __m512 d = _mm512_cvtepi32_ps(divisors), x = _mm512_cvtepi32_ps(numerators);
  if constexpr (form == Quotients::scaledDivisor) d = _mm512_mul_ps(d, _mm512_set1_ps(factors.divisor));
  if constexpr (form == Quotients::scaledNumerator) x = _mm512_mul_ps(x, _mm512_set1_ps(factors.numerator));
  if constexpr (zeroes) {
    const float forZero = sizeof(T) == 1 ? 0.001F : factors.forZero;
    const __mmask16 isZero = _mm512_testn_epi32_mask(divisors, divisors);
    d = _mm512_mask_add_ps(d, isZero, d, _mm512_set1_ps(forZero));
  }
  const __m512 r = _mm512_rcp14_ps(d);
  __m512 q = refinedQuotient(_mm512_mul_ps(x, r), d, r);
  // Quotients of bytes that are not scaled up stay below 2^31 and saturate when they are packed.
  if constexpr (sizeof(T) > 1 || form == Quotients::scaledNumerator) {
    q = _mm512_min_ps(q, _mm512_set1_ps(highest<T>));
  }
  if constexpr (std::is_signed_v<T>) q = _mm512_max_ps(q, _mm512_set1_ps(lowest<T>));
  return _mm512_cvtps_epi32(q);
}

// Bytes become floats without a conversion: placed in the fraction of 1 they are 1 + unit * byte. Numerators
// stay so: their 1 is subtracted in the product. The unit is the same in numerator and divisor, and only the
// divisor is scaled: exact powers of two that change no bit of a quotient.

/// Masks of every fourth byte from the first, second, third and fourth on. Made once for all rows, and hidden
/// from the compiler, which would make them again at each use.
class FourthBytes {
 public:
  __mmask64 from(int i) const { return i == 0 ? first_ : i == 1 ? second_ : i == 2 ? third_ : fourth_; }

 private:
  static __mmask64 unknown(__mmask64 mask) {
    asm("" : "+k"(mask));
    return mask;
  }

  __mmask64 first_ = unknown(0x1111111111111111), second_ = unknown(0x2222222222222222),
            third_ = unknown(0x4444444444444444), fourth_ = unknown(0x8888888888888888);
};

/// The value of the lowest bit of the byte at place `i` of its dword.
constexpr float byteUnit(int i) { return powerOfTwo(i == 1 ? -15 : -23); }

inline __m512 onePlusBytes(__m512i pixels, int i, const FourthBytes& fourthBytes) {
  const __m512i one = _mm512_castps_si512(_mm512_set1_ps(1));
  if (i < 2) return _mm512_castsi512_ps(_mm512_mask_blend_epi8(fourthBytes.from(i), one, pixels));
  const __m512i down = _mm512_set4_epi32(12 + i, 8 + i, 4 + i, i);
  return _mm512_castsi512_ps(_mm512_mask_shuffle_epi8(one, fourthBytes.from(0), pixels, down));
}

/// Divides 64 bytes. `zeroes`: some divisor may be 0.
template <Quotients form, bool zeroes>
[[gnu::always_inline]] inline void divideBytes64(const u8* divisors, const u8* numerators, u8* dst,
                                                 const QuotientFactors& factors,
                                                 const FourthBytes& fourthBytes) {
  const auto d = loadAs<__m512i>(divisors), n = loadAs<__m512i>(numerators);
  const __m512i up = _mm512_set4_epi32(0x0C0C0C0C, 0x08080808, 0x04040404, 0);
  __m512i result = _mm512_setzero_si512();
  for (int i = 0; i < 4; ++i) {
    __m512 divisor = _mm512_sub_ps(onePlusBytes(d, i, fourthBytes), _mm512_set1_ps(1));
    if constexpr (form != Quotients::plain) {
      divisor = _mm512_mul_ps(divisor, _mm512_set1_ps(factors.whole));
    }
    if constexpr (zeroes) {
      const __mmask16 isZero = _mm512_cmp_ps_mask(divisor, _mm512_setzero_ps(), _CMP_EQ_OQ);
      divisor = _mm512_mask_add_ps(divisor, isZero, divisor, _mm512_set1_ps(0.001F * byteUnit(i)));
    }
    const __m512 r = _mm512_rcp14_ps(divisor);
    __m512 q = refinedQuotient(_mm512_fmsub_ps(onePlusBytes(n, i, fourthBytes), r, r), divisor, r);
    // Without both, no quotient exceeds its numerator.
    if constexpr (zeroes || form == Quotients::scaledNumerator) q = _mm512_min_ps(q, _mm512_set1_ps(255));
    const __m512i bytes = _mm512_cvtps_epi32(q);
    result = i == 0 ? bytes : _mm512_mask_shuffle_epi8(result, fourthBytes.from(i), bytes, up);
  }
  storeAs(dst, result);
}

template <Quotients form, bool zeroes, class T>
[[gnu::always_inline]] inline void divide64(const T* divisors, const T* numerators, T* dst,
                                            const QuotientFactors& factors, const FourthBytes& fourthBytes) {
  if constexpr (sizeof(T) == 1) {
    divideBytes64<form, zeroes>(divisors, numerators, dst, factors, fourthBytes);
  } else {
    __m512i d[4], x[4];
    Sixteen<T>::load64(divisors, d);
    Sixteen<T>::load64(numerators, x);
    for (int i = 0; i < 4; ++i) x[i] = divideSixteen<T, form, zeroes>(d[i], x[i], factors);
    Sixteen<T>::store64(dst, x);
  }
}

/// Returns whether any divisor of the row was 0.
template <Quotients form, class T>
inline bool divideMaskedRow(const T* divisors, const T* numerators, T* dst, std::int64_t n,
                            const QuotientFactors& factors, const FourthBytes& fourthBytes) {
  bool anyZero = false;
  std::int64_t i = 0;
  const auto isClean = [&] { return !Sixteen<T>::anyZeroOf64(divisors + i); };
  const auto divide = [&](auto zeroes) {
    divide64<form, decltype(zeroes)::value>(divisors + i, numerators + i, dst + i, factors, fourthBytes);
  };
  while (n - i >= 64) {
    for (; n - i >= 64 && isClean(); i += 64) divide(std::false_type{});
    for (; n - i >= 64 && !isClean(); i += 64) {
      anyZero = true;
      divide(std::true_type{});
    }
  }
  for (; i < n; i += 16) {
    const auto mask = firstLanes<__mmask16>(n - i);
    const __m512i d = Sixteen<T>::load(divisors + i, mask, 1);
    const __m512i x = Sixteen<T>::load(numerators + i, mask, 0);
    anyZero |= _mm512_testn_epi32_mask(d, d) != 0;
    Sixteen<T>::store(dst + i, mask, divideSixteen<T, form, true>(d, x, factors));
  }
  return anyZero;
}

}  // namespace
}  // namespace Zorvan::Primitives::Division
#endif
