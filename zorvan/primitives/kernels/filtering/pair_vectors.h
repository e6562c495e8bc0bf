#pragma once

// Arithmetic on the even and the odd 8-bit or 16-bit pixels of a vector separately, in lanes of twice their
// width: no pixel changes its lane. The multiplications of pairs (`maddubs`, `madd`) widen, weight and add
// two neighbouring pixels in one instruction.

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Laplace {
namespace {

/// Two weights in one lane, for the multiplications of pairs.
constexpr std::int16_t byteWeights(int even, int odd) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>((odd & 0xFF) << 8 | (even & 0xFF)));
}
constexpr std::int32_t wordWeights(int even, int odd) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(odd & 0xFFFF) << 16 |
                                   static_cast<std::uint32_t>(even & 0xFFFF));
}

/// The instructions of one width.
template <class Vector>
struct PairOperations;

template <>
struct PairOperations<Vector16> {
  using Bits = __m128i;

  static Bits add16(Bits a, Bits b) { return _mm_add_epi16(a, b); }
  static Bits sub16(Bits a, Bits b) { return _mm_sub_epi16(a, b); }
  static Bits add32(Bits a, Bits b) { return _mm_add_epi32(a, b); }
  static Bits sub32(Bits a, Bits b) { return _mm_sub_epi32(a, b); }

  static Bits evenBytes(Bits v) { return _mm_and_si128(v, _mm_set1_epi16(0xFF)); }
  static Bits oddBytes(Bits v) { return _mm_srli_epi16(v, 8); }
  static Bits oddWords(Bits v) { return _mm_srai_epi32(v, 16); }

  template <int factor>
  static Bits times(Bits v) {
    return factor == 1 ? v : _mm_mullo_epi16(v, _mm_set1_epi16(factor));
  }
  template <int even, int odd>
  static Bits weightBytes(Bits v) {
#ifdef __SSSE3__
    return _mm_maddubs_epi16(v, _mm_set1_epi16(byteWeights(even, odd)));
#else
    if constexpr (even == 0) return times<odd>(oddBytes(v));
    if constexpr (odd == 0) return times<even>(evenBytes(v));
    return _mm_add_epi16(times<even>(evenBytes(v)), times<odd>(oddBytes(v)));
#endif
  }
  template <int even, int odd>
  static Bits weightWords(Bits v) {
    return _mm_madd_epi16(v, _mm_set1_epi32(wordWeights(even, odd)));
  }

  /// Saturates and brings even and odd pixels back into turn.
  static Bits joinBytes(Bits even, Bits odd) {
    const Bits packed = _mm_packus_epi16(even, odd);
    return _mm_unpacklo_epi8(packed, _mm_srli_si128(packed, 8));
  }
  static Bits joinWords(Bits even, Bits odd) {
    const Bits packed = _mm_packs_epi32(even, odd);
    return _mm_unpacklo_epi16(packed, _mm_srli_si128(packed, 8));
  }
};

#ifdef __AVX2__
template <>
struct PairOperations<Vector32> {
  using Bits = __m256i;

  static Bits add16(Bits a, Bits b) { return _mm256_add_epi16(a, b); }
  static Bits sub16(Bits a, Bits b) { return _mm256_sub_epi16(a, b); }
  static Bits add32(Bits a, Bits b) { return _mm256_add_epi32(a, b); }
  static Bits sub32(Bits a, Bits b) { return _mm256_sub_epi32(a, b); }

  static Bits evenBytes(Bits v) { return _mm256_and_si256(v, _mm256_set1_epi16(0xFF)); }
  static Bits oddBytes(Bits v) { return _mm256_srli_epi16(v, 8); }
  static Bits oddWords(Bits v) { return _mm256_srai_epi32(v, 16); }

  template <int even, int odd>
  static Bits weightBytes(Bits v) {
    return _mm256_maddubs_epi16(v, _mm256_set1_epi16(byteWeights(even, odd)));
  }
  template <int even, int odd>
  static Bits weightWords(Bits v) {
    return _mm256_madd_epi16(v, _mm256_set1_epi32(wordWeights(even, odd)));
  }

  static Bits joinBytes(Bits even, Bits odd) {
    const Bits order =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15));
    return _mm256_shuffle_epi8(_mm256_packus_epi16(even, odd), order);
  }
  static Bits joinWords(Bits even, Bits odd) {
    const Bits order =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15));
    return _mm256_shuffle_epi8(_mm256_packs_epi32(even, odd), order);
  }
};
#endif

#ifdef __AVX512BW__
template <>
struct PairOperations<Vector64> {
  using Bits = __m512i;

  static Bits add16(Bits a, Bits b) { return _mm512_add_epi16(a, b); }
  static Bits sub16(Bits a, Bits b) { return _mm512_sub_epi16(a, b); }
  static Bits add32(Bits a, Bits b) { return _mm512_add_epi32(a, b); }
  static Bits sub32(Bits a, Bits b) { return _mm512_sub_epi32(a, b); }

  static Bits evenBytes(Bits v) { return _mm512_and_si512(v, _mm512_set1_epi16(0xFF)); }
  static Bits oddBytes(Bits v) { return _mm512_srli_epi16(v, 8); }
  static Bits oddWords(Bits v) { return _mm512_srai_epi32(v, 16); }

  template <int even, int odd>
  static Bits weightBytes(Bits v) {
    return _mm512_maddubs_epi16(v, _mm512_set1_epi16(byteWeights(even, odd)));
  }
  template <int even, int odd>
  static Bits weightWords(Bits v) {
    return _mm512_madd_epi16(v, _mm512_set1_epi32(wordWeights(even, odd)));
  }

  static Bits joinBytes(Bits even, Bits odd) {
    const Bits order =
        _mm512_broadcast_i32x4(_mm_setr_epi8(0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15));
    return _mm512_shuffle_epi8(_mm512_packus_epi16(even, odd), order);
  }
  static Bits joinWords(Bits even, Bits odd) {
    const Bits order =
        _mm512_broadcast_i32x4(_mm_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15));
    return _mm512_shuffle_epi8(_mm512_packs_epi32(even, odd), order);
  }
};
#endif

/// Sums of the even and of the odd pixels of a vector.
template <class V>
struct Pair {
  V even, odd;
};

template <class T, class V>
struct PairLanes;

template <class V>
struct PairLanes<u8, V> {
  using Operations = PairOperations<V>;
  static V add(V a, V b) { return {Operations::add16(a.bits, b.bits)}; }
  static V sub(V a, V b) { return {Operations::sub16(a.bits, b.bits)}; }
  static V even(V v) { return {Operations::evenBytes(v.bits)}; }
  static V odd(V v) { return {Operations::oddBytes(v.bits)}; }
  template <int even, int odd>
  static V weight(V v) {
    return {Operations::template weightBytes<even, odd>(v.bits)};
  }
  static V join(Pair<V> sums) { return {Operations::joinBytes(sums.even.bits, sums.odd.bits)}; }
};

template <class V>
struct PairLanes<s16, V> {
  using Operations = PairOperations<V>;
  static V add(V a, V b) { return {Operations::add32(a.bits, b.bits)}; }
  static V sub(V a, V b) { return {Operations::sub32(a.bits, b.bits)}; }
  static V even(V v) { return {Operations::template weightWords<1, 0>(v.bits)}; }
  static V odd(V v) { return {Operations::oddWords(v.bits)}; }
  template <int even, int odd>
  static V weight(V v) {
    return {Operations::template weightWords<even, odd>(v.bits)};
  }
  static V join(Pair<V> sums) { return {Operations::joinWords(sums.even.bits, sums.odd.bits)}; }
};

}  // namespace
}  // namespace Zorvan::Primitives::Laplace
