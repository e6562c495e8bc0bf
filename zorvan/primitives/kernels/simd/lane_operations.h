#pragma once

// Operations on vectors under one name for every width that the variant being built has, so that an algorithm
// is written once. They are named as the instructions: the operation and its lanes. Bitwise operations on
// integers and + - * of floats are the language's own operators on the vectors.
//
// Interleaving and packing work within 16 bytes each; packing puts back in order what interleaving with
// `unpacklo` and `unpackhi` took apart, at every width.

#include <type_traits>

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

#define ZORVAN_LANES_SHIFT(name) ZORVAN_LANES_SHIFT_UP_TO_32(name) ZORVAN_LANES_SHIFT_OF_64(name)
#define ZORVAN_LANES_PAIR(name) ZORVAN_LANES_PAIR_UP_TO_32(name) ZORVAN_LANES_PAIR_OF_64(name)
#ifdef __AVX2__
#define ZORVAN_LANES_PAIR_UP_TO_32(name)                                 \
  inline __m128i name(__m128i a, __m128i b) { return _mm_##name(a, b); } \
  inline __m256i name(__m256i a, __m256i b) { return _mm256_##name(a, b); }
#define ZORVAN_LANES_SHIFT_UP_TO_32(name)                                        \
  inline __m128i name(__m128i a, __m128i count) { return _mm_##name(a, count); } \
  inline __m256i name(__m256i a, __m128i count) { return _mm256_##name(a, count); }
#else
#define ZORVAN_LANES_PAIR_UP_TO_32(name) \
  inline __m128i name(__m128i a, __m128i b) { return _mm_##name(a, b); }
#define ZORVAN_LANES_SHIFT_UP_TO_32(name) \
  inline __m128i name(__m128i a, __m128i count) { return _mm_##name(a, count); }
#endif
#ifdef __AVX512BW__
#define ZORVAN_LANES_PAIR_OF_64(name) \
  inline __m512i name(__m512i a, __m512i b) { return _mm512_##name(a, b); }
#define ZORVAN_LANES_SHIFT_OF_64(name) \
  inline __m512i name(__m512i a, __m128i count) { return _mm512_##name(a, count); }
#else
#define ZORVAN_LANES_PAIR_OF_64(name)
#define ZORVAN_LANES_SHIFT_OF_64(name)
#endif

ZORVAN_LANES_PAIR(adds_epu8)
ZORVAN_LANES_PAIR(adds_epu16)
ZORVAN_LANES_PAIR(adds_epi16)
ZORVAN_LANES_PAIR(subs_epu8)
ZORVAN_LANES_PAIR(subs_epu16)
ZORVAN_LANES_PAIR(subs_epi16)
ZORVAN_LANES_PAIR(subs_epi8)
ZORVAN_LANES_PAIR(add_epi8)
ZORVAN_LANES_PAIR(add_epi16)
ZORVAN_LANES_PAIR(add_epi32)
ZORVAN_LANES_PAIR(add_epi64)
ZORVAN_LANES_PAIR(sub_epi8)
ZORVAN_LANES_PAIR(sub_epi16)
ZORVAN_LANES_PAIR(sub_epi32)
ZORVAN_LANES_PAIR(avg_epu16)
ZORVAN_LANES_PAIR(mullo_epi16)
ZORVAN_LANES_PAIR(mulhi_epi16)
ZORVAN_LANES_PAIR(mulhi_epu16)
ZORVAN_LANES_PAIR(madd_epi16)
ZORVAN_LANES_PAIR(min_epu8)
ZORVAN_LANES_PAIR(max_epu8)
ZORVAN_LANES_PAIR(min_epi16)
ZORVAN_LANES_PAIR(max_epi16)
#ifdef __SSE4_1__
ZORVAN_LANES_PAIR(min_epu16)
ZORVAN_LANES_PAIR(max_epu16)
#endif
ZORVAN_LANES_PAIR(sad_epu8)
#ifdef __SSSE3__
ZORVAN_LANES_PAIR(maddubs_epi16)
#endif
ZORVAN_LANES_PAIR_UP_TO_32(cmpeq_epi8)
ZORVAN_LANES_PAIR_UP_TO_32(cmpeq_epi16)
ZORVAN_LANES_PAIR_UP_TO_32(cmpgt_epi32)
#ifdef __SSSE3__
ZORVAN_LANES_PAIR(shuffle_epi8)
#endif
ZORVAN_LANES_PAIR(unpacklo_epi8)
ZORVAN_LANES_PAIR(unpackhi_epi8)
ZORVAN_LANES_PAIR(unpacklo_epi16)
ZORVAN_LANES_PAIR(unpackhi_epi16)
ZORVAN_LANES_PAIR(unpacklo_epi32)
ZORVAN_LANES_PAIR(unpackhi_epi32)
ZORVAN_LANES_PAIR(packus_epi16)
ZORVAN_LANES_PAIR(packs_epi32)
ZORVAN_LANES_SHIFT(sll_epi16)
ZORVAN_LANES_SHIFT(sll_epi32)
ZORVAN_LANES_SHIFT(srl_epi16)
ZORVAN_LANES_SHIFT(srl_epi32)
ZORVAN_LANES_SHIFT(srl_epi64)
ZORVAN_LANES_SHIFT(sra_epi32)
#undef ZORVAN_LANES_PAIR
#undef ZORVAN_LANES_PAIR_UP_TO_32
#undef ZORVAN_LANES_PAIR_OF_64
#undef ZORVAN_LANES_SHIFT
#undef ZORVAN_LANES_SHIFT_UP_TO_32
#undef ZORVAN_LANES_SHIFT_OF_64

inline __m128 asFloats(__m128i x) { return _mm_castsi128_ps(x); }
inline __m128i asIntegers(__m128 x) { return _mm_castps_si128(x); }
inline __m128 rsqrt_ps(__m128 x) { return _mm_rsqrt_ps(x); }
inline __m128 cvtepi32_ps(__m128i x) { return _mm_cvtepi32_ps(x); }
inline __m128i cvttps_epi32(__m128 x) { return _mm_cvttps_epi32(x); }
inline unsigned movemask_epi8(__m128i x) { return static_cast<unsigned>(_mm_movemask_epi8(x)); }
#ifdef __AVX__
inline __m256 asFloats(__m256i x) { return _mm256_castsi256_ps(x); }
inline __m256i asIntegers(__m256 x) { return _mm256_castps_si256(x); }
inline __m256 rsqrt_ps(__m256 x) { return _mm256_rsqrt_ps(x); }
inline __m256 cvtepi32_ps(__m256i x) { return _mm256_cvtepi32_ps(x); }
inline __m256i cvttps_epi32(__m256 x) { return _mm256_cvttps_epi32(x); }
#endif
#ifdef __AVX2__
inline unsigned movemask_epi8(__m256i x) { return static_cast<unsigned>(_mm256_movemask_epi8(x)); }
#endif
#ifdef __AVX512F__
inline __m512 asFloats(__m512i x) { return _mm512_castsi512_ps(x); }
inline __m512i asIntegers(__m512 x) { return _mm512_castps_si512(x); }
#endif

inline __m128 min_ps(__m128 a, __m128 b) { return _mm_min_ps(a, b); }
inline __m128 max_ps(__m128 a, __m128 b) { return _mm_max_ps(a, b); }
#ifdef __AVX__
inline __m256 min_ps(__m256 a, __m256 b) { return _mm256_min_ps(a, b); }
inline __m256 max_ps(__m256 a, __m256 b) { return _mm256_max_ps(a, b); }
#endif
#ifdef __AVX512F__
inline __m512 min_ps(__m512 a, __m512 b) { return _mm512_min_ps(a, b); }
inline __m512 max_ps(__m512 a, __m512 b) { return _mm512_max_ps(a, b); }
#endif

/// The lower or the higher of each two pixels of type T. Unsigned words need SSE4.1.
template <class T, class V>
inline V minimum(V a, V b) {
  if constexpr (std::is_same_v<T, u8>) return min_epu8(a, b);
  if constexpr (std::is_same_v<T, u16>) return min_epu16(a, b);
  if constexpr (std::is_same_v<T, s16>) return min_epi16(a, b);
  if constexpr (std::is_same_v<T, float>) return min_ps(a, b);
}
template <class T, class V>
inline V maximum(V a, V b) {
  if constexpr (std::is_same_v<T, u8>) return max_epu8(a, b);
  if constexpr (std::is_same_v<T, u16>) return max_epu16(a, b);
  if constexpr (std::is_same_v<T, s16>) return max_epi16(a, b);
  if constexpr (std::is_same_v<T, float>) return max_ps(a, b);
}

#ifdef __AVX2__
template <int bits>
inline __m256i srli_epi16(__m256i x) {
  return _mm256_srli_epi16(x, bits);
}
template <int bits>
inline __m256i srli_epi32(__m256i x) {
  return _mm256_srli_epi32(x, bits);
}
template <int bits>
inline __m256i slli_epi32(__m256i x) {
  return _mm256_slli_epi32(x, bits);
}
#endif
#ifdef __AVX512BW__
template <int bits>
inline __m512i srli_epi16(__m512i x) {
  return _mm512_srli_epi16(x, bits);
}
template <int bits>
inline __m512i srli_epi32(__m512i x) {
  return _mm512_srli_epi32(x, bits);
}
template <int bits>
inline __m512i slli_epi32(__m512i x) {
  return _mm512_slli_epi32(x, bits);
}
#endif

/// `a` where all bits of `mask` are set and `b` where none is.
inline __m128i select(__m128i mask, __m128i a, __m128i b) { return (mask & a) | _mm_andnot_si128(mask, b); }

/// Shifts by a constant.
template <int count>
inline __m128i srli_epi16(__m128i x) {
  return _mm_srli_epi16(x, count);
}
template <int count>
inline __m128i srai_epi32(__m128i x) {
  return _mm_srai_epi32(x, count);
}
#ifdef __AVX2__
template <int count>
inline __m256i srai_epi32(__m256i x) {
  return _mm256_srai_epi32(x, count);
}
#endif
#ifdef __AVX512BW__
template <int count>
inline __m512i srai_epi32(__m512i x) {
  return _mm512_srai_epi32(x, count);
}
#endif

inline __m128i signs_epi16(__m128i x) { return _mm_srai_epi16(x, 15); }
/// The low halves of the 64-bit lanes of two vectors, in the order that `unpacklo_epi32` and
/// `unpackhi_epi32` took them apart.
inline __m128i packLow_epi64(__m128i a, __m128i b) {
  return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), _MM_SHUFFLE(2, 0, 2, 0)));
}
#ifdef __AVX2__
inline __m256i signs_epi16(__m256i x) { return _mm256_srai_epi16(x, 15); }
inline __m256i packLow_epi64(__m256i a, __m256i b) {
  return _mm256_castps_si256(
      _mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), _MM_SHUFFLE(2, 0, 2, 0)));
}
#endif

#ifdef __AVX2__
/// Moves the bytes of each 16 bytes into the same order.
inline __m256i shuffleEach16(__m256i x, __m128i order) {
  return _mm256_shuffle_epi8(x, _mm256_broadcastsi128_si256(order));
}
#endif
#ifdef __AVX512BW__
inline __m512i shuffleEach16(__m512i x, __m128i order) {
  return _mm512_shuffle_epi8(x, _mm512_broadcast_i32x4(order));
}
#endif
template <class I>
inline I broadcastBytes(int value) {
  if constexpr (sizeof(I) == 16) return _mm_set1_epi8(static_cast<char>(value));
#ifdef __AVX2__
  if constexpr (sizeof(I) == 32) return _mm256_set1_epi8(static_cast<char>(value));
#endif
#ifdef __AVX512F__
  if constexpr (sizeof(I) == 64) return _mm512_set1_epi8(static_cast<char>(value));
#endif
}
template <class I>
inline I broadcastWords(int value) {
  if constexpr (sizeof(I) == 16) return _mm_set1_epi16(static_cast<short>(value));
#ifdef __AVX2__
  if constexpr (sizeof(I) == 32) return _mm256_set1_epi16(static_cast<short>(value));
#endif
#ifdef __AVX512F__
  if constexpr (sizeof(I) == 64) return _mm512_set1_epi16(static_cast<short>(value));
#endif
}
template <class I>
inline I broadcastDwords(int value) {
  if constexpr (sizeof(I) == 16) return _mm_set1_epi32(value);
#ifdef __AVX2__
  if constexpr (sizeof(I) == 32) return _mm256_set1_epi32(value);
#endif
#ifdef __AVX512F__
  if constexpr (sizeof(I) == 64) return _mm512_set1_epi32(value);
#endif
}
template <class F>
inline F broadcastFloats(float value) {
  if constexpr (sizeof(F) == 16) return _mm_set1_ps(value);
#ifdef __AVX__
  if constexpr (sizeof(F) == 32) return _mm256_set1_ps(value);
#endif
#ifdef __AVX512F__
  if constexpr (sizeof(F) == 64) return _mm512_set1_ps(value);
#endif
}
template <class I>
inline I broadcastQwords(std::int64_t value) {
  if constexpr (sizeof(I) == 16) return _mm_set1_epi64x(value);
#ifdef __AVX2__
  if constexpr (sizeof(I) == 32) return _mm256_set1_epi64x(value);
#endif
}
template <class I>
inline I allOnes() {
  return broadcastDwords<I>(-1);
}
template <class I>
inline I zeroes() {
  return broadcastDwords<I>(0);
}

/// Bytes or words, by their type.
template <class I, class T>
inline I broadcastPixels(T value) {
  if constexpr (sizeof(T) == 1) return broadcastBytes<I>(value);
  if constexpr (sizeof(T) == 2) return broadcastWords<I>(value);
}

/// Whether any two lanes of type T, a byte or a word, are equal.
template <class T>
inline bool anyEqual(__m128i a, __m128i b) {
  return _mm_movemask_epi8(sizeof(T) == 1 ? cmpeq_epi8(a, b) : cmpeq_epi16(a, b)) != 0;
}
#ifdef __AVX2__
template <class T>
inline bool anyEqual(__m256i a, __m256i b) {
  return _mm256_movemask_epi8(sizeof(T) == 1 ? cmpeq_epi8(a, b) : cmpeq_epi16(a, b)) != 0;
}
#endif
#ifdef __AVX512BW__
template <class T>
inline bool anyEqual(__m512i a, __m512i b) {
  return sizeof(T) == 1 ? _mm512_cmpeq_epi8_mask(a, b) != 0 : _mm512_cmpeq_epi16_mask(a, b) != 0;
}
#endif

#ifdef __AVX2__
inline __m128i lowHalf(__m256i x) { return _mm256_castsi256_si128(x); }
inline __m128i highHalf(__m256i x) { return _mm256_extracti128_si256(x, 1); }
inline __m128 lowHalf(__m256 x) { return _mm256_castps256_ps128(x); }
inline __m128 highHalf(__m256 x) { return _mm256_extractf128_ps(x, 1); }
#endif
#ifdef __AVX512BW__
inline __m256i lowHalf(__m512i x) { return _mm512_castsi512_si256(x); }
inline __m256i highHalf(__m512i x) { return _mm512_extracti64x4_epi64(x, 1); }
inline __m256 lowHalf(__m512 x) { return _mm512_castps512_ps256(x); }
inline __m256 highHalf(__m512 x) { return _mm512_extractf32x8_ps(x, 1); }
#endif

/// One pixel of type T from all lanes: `join` makes one of each two.
template <class T, class Join>
inline T fold(__m128i x, Join join) {
  x = join(x, _mm_srli_si128(x, 8));
  x = join(x, _mm_srli_si128(x, 4));
  if constexpr (sizeof(T) <= 2) x = join(x, _mm_srli_si128(x, 2));
  if constexpr (sizeof(T) == 1) x = join(x, _mm_srli_si128(x, 1));
  return static_cast<T>(_mm_cvtsi128_si32(x));
}
template <class T, class Join>
inline float fold(__m128 x, Join join) {
  x = join(x, _mm_movehl_ps(x, x));
  return _mm_cvtss_f32(join(x, _mm_shuffle_ps(x, x, 1)));
}

/// The lower of unsigned words; the instruction for it came after SSE2.
template <class I>
inline I lower_epu16(I a, I b) {
#ifdef __SSE4_1__
  if constexpr (sizeof(I) == 16) return _mm_min_epu16(a, b);
#endif
#ifdef __AVX2__
  if constexpr (sizeof(I) == 32) return _mm256_min_epu16(a, b);
#endif
#ifndef __SSE4_1__
  return _mm_sub_epi16(a, _mm_subs_epu16(a, b));
#endif
}

/// Packs signed 32-bit lanes to unsigned words with saturation; the instruction for it came after SSE2. Lanes
/// lie 32768 at least above the lowest value.
template <class I>
inline I packUnsigned_epi32(I a, I b) {
#ifdef __SSE4_1__
  if constexpr (sizeof(I) == 16) return _mm_packus_epi32(a, b);
#endif
#ifdef __AVX2__
  if constexpr (sizeof(I) == 32) return _mm256_packus_epi32(a, b);
#endif
#ifndef __SSE4_1__
  const __m128i middle = _mm_set1_epi32(32768);
  return _mm_packs_epi32(_mm_sub_epi32(a, middle), _mm_sub_epi32(b, middle)) ^ _mm_set1_epi16(-32768);
#endif
}

}  // namespace
}  // namespace Zorvan::Primitives
