#pragma once

// Arithmetic on the even and the odd 8-bit or 16-bit pixels of a vector separately, in lanes of twice their
// width: no pixel changes its lane. The multiplications of pairs (`maddubs`, `madd`) widen, weight and add
// two neighbouring pixels in one instruction.

#include "zorvan/primitives/kernels/simd/lane_operations.h"

namespace Zorvan::Primitives::Laplace {
namespace {

/// Two weights in one lane, for the multiplications of pairs.
constexpr s16 byteWeights(int even, int odd) {
  return static_cast<s16>(static_cast<u16>((odd & 0xFF) << 8 | (even & 0xFF)));
}
constexpr std::int32_t wordWeights(int even, int odd) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(odd & 0xFFFF) << 16 |
                                   static_cast<std::uint32_t>(even & 0xFFFF));
}

/// Sums of the even and of the odd pixels of a vector.
template <class V>
struct Pair {
  V even, odd;
};

template <class T, class V>
struct PairLanes;

template <class V>
struct PairLanes<u8, V> {
  using I = decltype(V::bits);

  static V add(V a, V b) { return {add_epi16(a.bits, b.bits)}; }
  static V sub(V a, V b) { return {sub_epi16(a.bits, b.bits)}; }
  static V even(V v) { return {v.bits & broadcastWords<I>(0xFF)}; }
  static V odd(V v) { return {srli_epi16<8>(v.bits)}; }

  template <int evenWeight, int oddWeight>
  static V weight(V v) {
#ifdef __SSSE3__
    return {maddubs_epi16(v.bits, broadcastWords<I>(byteWeights(evenWeight, oddWeight)))};
#else
    if constexpr (evenWeight == 0) return times<oddWeight>(odd(v));
    if constexpr (oddWeight == 0) return times<evenWeight>(even(v));
    return add(times<evenWeight>(even(v)), times<oddWeight>(odd(v)));
#endif
  }

  static V join(Pair<V> sums) {
    const I packed = packus_epi16(sums.even.bits, sums.odd.bits);
    if constexpr (V::size == 16) return {unpacklo_epi8(packed, _mm_srli_si128(packed, 8))};
#ifdef __AVX2__
    if constexpr (V::size > 16)
      return {shuffleEach16(packed, _mm_setr_epi8(0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15))};
#endif
  }

 private:
  template <int factor>
  static V times(V v) {
    if constexpr (factor == 1) return v;
    return {mullo_epi16(v.bits, broadcastWords<I>(factor))};
  }
};

template <class V>
struct PairLanes<s16, V> {
  using I = decltype(V::bits);

  static V add(V a, V b) { return {add_epi32(a.bits, b.bits)}; }
  static V sub(V a, V b) { return {sub_epi32(a.bits, b.bits)}; }
  static V even(V v) { return weight<1, 0>(v); }
  static V odd(V v) { return {srai_epi32<16>(v.bits)}; }

  template <int evenWeight, int oddWeight>
  static V weight(V v) {
    return {madd_epi16(v.bits, broadcastDwords<I>(wordWeights(evenWeight, oddWeight)))};
  }

  static V join(Pair<V> sums) {
    const I packed = packs_epi32(sums.even.bits, sums.odd.bits);
    if constexpr (V::size == 16) return {unpacklo_epi16(packed, _mm_srli_si128(packed, 8))};
#ifdef __AVX2__
    if constexpr (V::size > 16)
      return {shuffleEach16(packed, _mm_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15))};
#endif
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Laplace
