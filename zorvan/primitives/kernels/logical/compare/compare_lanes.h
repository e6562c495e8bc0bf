#pragma once

// Comparisons of pixels with a constant, of a vector or a single pixel at a time. A lane of the outcome is
// all ones if the operator holds, else zero. Types with lanes of 32 bytes are those of the two newest
// variants.

#include <type_traits>

#include "zorvan/primitives/kernels/logical/compare/compare_plan.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Compare {
namespace {

template <Operator op, class T>
inline bool holdsFor(T x, T value) {
  if constexpr (op == Operator::less) return x < value;
  if constexpr (op == Operator::lessEqual) return x <= value;
  if constexpr (op == Operator::equal) return x == value;
  if constexpr (op == Operator::greaterEqual) return value <= x;
  if constexpr (op == Operator::greater) return value < x;
}

/// Floats, ordered: every operator is false if either side is a NaN.
template <Operator op>
struct OrderedFloats {
  using Pixel = float;
  float value;

  bool one(float x) const { return holdsFor<op>(x, value); }
  __m128i lanes(__m128i bits) const {
    const __m128 x = _mm_castsi128_ps(bits), v = _mm_set1_ps(value);
    __m128 result;
    if constexpr (op == Operator::less) result = _mm_cmplt_ps(x, v);
    if constexpr (op == Operator::lessEqual) result = _mm_cmple_ps(x, v);
    if constexpr (op == Operator::equal) result = _mm_cmpeq_ps(x, v);
    if constexpr (op == Operator::greaterEqual) result = _mm_cmple_ps(v, x);
    if constexpr (op == Operator::greater) result = _mm_cmplt_ps(v, x);
    return _mm_castps_si128(result);
  }
};

/// Integers by the processor's comparison of signed ones: of unsigned ones both sides have their top bits
/// flipped.
template <class T, Operator op>
struct Integers {
  using Pixel = T;
  T value;

  bool one(T x) const { return holdsFor<op>(x, value); }
  __m128i lanes(__m128i x) const {
    const __m128i v = flipped(spread(value));
    x = flipped(x);
    if constexpr (op == Operator::less) return above(v, x);
    if constexpr (op == Operator::lessEqual) return opposite(above(x, v));
    if constexpr (op == Operator::equal) return same(x, v);
    if constexpr (op == Operator::greaterEqual) return opposite(above(v, x));
    if constexpr (op == Operator::greater) return above(x, v);
  }

 private:
  static __m128i spread(T pixel) {
    return Vector16::broadcast(static_cast<std::make_unsigned_t<T>>(pixel)).bits;
  }
  static __m128i flipped(__m128i x) {
    constexpr auto topBit = static_cast<std::make_unsigned_t<T>>(1U << (8 * sizeof(T) - 1));
    return std::is_unsigned_v<T> ? _mm_xor_si128(x, Vector16::broadcast(topBit).bits) : x;
  }
  static __m128i above(__m128i a, __m128i b) {
    return sizeof(T) == 1 ? _mm_cmpgt_epi8(a, b) : _mm_cmpgt_epi16(a, b);
  }
  static __m128i same(__m128i a, __m128i b) {
    return sizeof(T) == 1 ? _mm_cmpeq_epi8(a, b) : _mm_cmpeq_epi16(a, b);
  }
  static __m128i opposite(__m128i a) { return _mm_xor_si128(a, _mm_set1_epi32(-1)); }
};
template <Operator op>
using Bytes = Integers<u8, op>;
template <Operator op>
using SignedWords = Integers<s16, op>;
template <Operator op>
using Words = Integers<u16, op>;

#ifdef __AVX2__
/// Floats whose upper two operators are the negations of the lower two: if either side is a NaN, a pixel is
/// greater, and greater or equal.
template <Operator op>
struct NanAboveFloats {
  using Pixel = float;
  float value;

  static constexpr int predicate = op == Operator::less           ? _CMP_LT_OS
                                   : op == Operator::lessEqual    ? _CMP_LE_OS
                                   : op == Operator::equal        ? _CMP_EQ_OQ
                                   : op == Operator::greaterEqual ? _CMP_NLT_US
                                                                  : _CMP_NLE_US;

  bool one(float x) const {
    if constexpr (op == Operator::greaterEqual) return !(x < value);
    if constexpr (op == Operator::greater) return !(x <= value);
    return holdsFor<op>(x, value);
  }
  __m128i lanes(__m128i x) const {
    return _mm_castps_si128(_mm_cmp_ps(_mm_castsi128_ps(x), _mm_set1_ps(value), predicate));
  }
  __m256i lanes(__m256i x) const {
    return _mm256_castps_si256(_mm256_cmp_ps(_mm256_castsi256_ps(x), _mm256_set1_ps(value), predicate));
  }
};

/// Bytes by saturating subtraction, whose difference is 0 unless the minuend is larger. The operators without
/// equality are those with it at the next value, which exists: `neverHolds` tests for the others before.
template <Operator op>
struct SaturatedBytes {
  using Pixel = u8;
  u8 value;

  bool one(u8 x) const { return holdsFor<op>(x, value); }
  __m128i lanes(__m128i x) const {
    const __m128i v = Vector16::broadcast(limit()).bits;
    if constexpr (op == Operator::equal) return _mm_cmpeq_epi8(x, v);
    return _mm_cmpeq_epi8(isUpper ? _mm_subs_epu8(v, x) : _mm_subs_epu8(x, v), _mm_setzero_si128());
  }
  __m256i lanes(__m256i x) const {
    const __m256i v = Vector32::broadcast(limit()).bits;
    if constexpr (op == Operator::equal) return _mm256_cmpeq_epi8(x, v);
    return _mm256_cmpeq_epi8(isUpper ? _mm256_subs_epu8(v, x) : _mm256_subs_epu8(x, v),
                             _mm256_setzero_si256());
  }

 private:
  static constexpr bool isUpper = op == Operator::greater || op == Operator::greaterEqual;
  u8 limit() const {
    return static_cast<u8>(op == Operator::less ? value - 1 : op == Operator::greater ? value + 1 : value);
  }
};

/// Unsigned words by the maximum and the minimum of pixel and constant.
template <Operator op>
struct MinMaxWords : Words<op> {
  using Words<op>::lanes;
  __m256i lanes(__m256i x) const {
    const __m256i v = Vector32::broadcast(this->value).bits;
    if constexpr (op == Operator::less) return opposite(_mm256_cmpeq_epi16(_mm256_max_epu16(x, v), x));
    if constexpr (op == Operator::lessEqual) return _mm256_cmpeq_epi16(_mm256_min_epu16(x, v), x);
    if constexpr (op == Operator::equal) return _mm256_cmpeq_epi16(x, v);
    if constexpr (op == Operator::greaterEqual) return _mm256_cmpeq_epi16(_mm256_max_epu16(x, v), x);
    if constexpr (op == Operator::greater) return opposite(_mm256_cmpeq_epi16(_mm256_min_epu16(x, v), x));
  }

 private:
  static __m256i opposite(__m256i a) { return _mm256_xor_si256(a, _mm256_set1_epi32(-1)); }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Compare
