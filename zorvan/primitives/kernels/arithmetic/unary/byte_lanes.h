#pragma once

// Operations on lanes that squares and roots of bytes need beyond the common ones.

#include "zorvan/primitives/kernels/simd/lane_operations.h"

namespace Zorvan::Primitives {
namespace {

#define ZORVAN_BYTE_PAIR(name) \
  inline __m128i name(__m128i a, __m128i b) { return _mm_##name(a, b); }
ZORVAN_BYTE_PAIR(min_epu8)
ZORVAN_BYTE_PAIR(add_epi8)
ZORVAN_BYTE_PAIR(sub_epi8)
#undef ZORVAN_BYTE_PAIR

#ifdef __AVX2__
#define ZORVAN_BYTE_PAIR(name) \
  inline __m256i name(__m256i a, __m256i b) { return _mm256_##name(a, b); }
ZORVAN_BYTE_PAIR(min_epu8)
ZORVAN_BYTE_PAIR(add_epi8)
ZORVAN_BYTE_PAIR(sub_epi8)
#undef ZORVAN_BYTE_PAIR
#endif

#ifdef __AVX512BW__
#define ZORVAN_BYTE_PAIR(name) \
  inline __m512i name(__m512i a, __m512i b) { return _mm512_##name(a, b); }
ZORVAN_BYTE_PAIR(min_epu8)
ZORVAN_BYTE_PAIR(add_epi8)
ZORVAN_BYTE_PAIR(sub_epi8)
#undef ZORVAN_BYTE_PAIR
inline __m512i sll_epi16(__m512i a, __m128i count) { return _mm512_sll_epi16(a, count); }
inline __m512i srl_epi16(__m512i a, __m128i count) { return _mm512_srl_epi16(a, count); }
#endif

/// The same byte or word in all lanes.
template <class I, class Lane>
inline I everywhere(Lane value) {
  if constexpr (sizeof(I) == 16) return Vector16::broadcast(value).bits;
#ifdef __AVX__
  if constexpr (sizeof(I) == 32) return Vector32::broadcast(value).bits;
#endif
#ifdef __AVX512F__
  if constexpr (sizeof(I) == 64) return Vector64::broadcast(value).bits;
#endif
}
template <class I>
inline I everyByte(int value) {
  return everywhere<I>(static_cast<std::uint8_t>(value));
}
template <class I>
inline I everyWord(int value) {
  return everywhere<I>(static_cast<std::uint16_t>(value));
}

}  // namespace
}  // namespace Zorvan::Primitives
