#pragma once

// Vectors of pixels and their extremes, in every width that the variant has. Loads and stores take any
// address. A `Partial` stands for the first lanes: loads and stores with one access no other pixel. The other
// lanes of a vector loaded so are unspecified.
//
// Neighbouring pixels come from registers where the vectors are computed there, and always for vectors as
// long as a cache line, since each load at another address would cross two lines.
//
// The order of operands matters for floats: where the comparison fails, the result is the second one. The
// accumulated extreme is the first operand and the pixel the second, so that the next pixel replaces a NaN.

#include <cstdint>
#include <type_traits>

#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/simd/neighbours.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// All lanes of a vector.
struct AllLanes {};
constexpr bool areAll(AllLanes) { return true; }
template <class Partial>
constexpr bool areAll(const Partial&) {
  return false;
}

/// The first lanes of a vector, by their number of bytes, where there are no mask registers.
struct FirstBytes {
  std::int64_t bytes;
};

template <class V>
struct IntegerBits {
  using type = decltype(V::bits);
};
/// The first lanes of a vector of pixels T: a mask register where there is one.
template <class T, bool masks>
struct PartialOf {
  using type = FirstBytes;
};
#ifdef __AVX512BW__
template <>
struct PartialOf<u8, true> {
  using type = __mmask64;
};
template <>
struct PartialOf<float, true> {
  using type = __mmask16;
};
#endif

/// Of bytes and of floats.
inline __m128i maximum(__m128i a, __m128i b) { return _mm_max_epu8(a, b); }
inline __m128i minimum(__m128i a, __m128i b) { return _mm_min_epu8(a, b); }
inline __m128 maximum(__m128 a, __m128 b) { return _mm_max_ps(a, b); }
inline __m128 minimum(__m128 a, __m128 b) { return _mm_min_ps(a, b); }
#ifdef __AVX__
inline __m256 maximum(__m256 a, __m256 b) { return _mm256_max_ps(a, b); }
inline __m256 minimum(__m256 a, __m256 b) { return _mm256_min_ps(a, b); }
#endif
#ifdef __AVX2__
inline __m256i maximum(__m256i a, __m256i b) { return _mm256_max_epu8(a, b); }
inline __m256i minimum(__m256i a, __m256i b) { return _mm256_min_epu8(a, b); }
#endif
#ifdef __AVX512BW__
inline __m512i maximum(__m512i a, __m512i b) { return _mm512_max_epu8(a, b); }
inline __m512i minimum(__m512i a, __m512i b) { return _mm512_min_epu8(a, b); }
inline __m512 maximum(__m512 a, __m512 b) { return _mm512_max_ps(a, b); }
inline __m512 minimum(__m512 a, __m512 b) { return _mm512_min_ps(a, b); }
#endif

/// The first or the last lane in all lanes, of bytes and of floats.
#ifdef __SSSE3__
inline __m128i repeatFirst(__m128i a) { return _mm_shuffle_epi8(a, _mm_setzero_si128()); }
inline __m128i repeatLast(__m128i a) { return _mm_shuffle_epi8(a, _mm_set1_epi8(15)); }
#endif
inline __m128 repeatFirst(__m128 a) { return _mm_shuffle_ps(a, a, 0); }
inline __m128 repeatLast(__m128 a) { return _mm_shuffle_ps(a, a, 0xFF); }
#ifdef __AVX__
inline __m256 repeatFirst(__m256 a) { return _mm256_permute_ps(_mm256_permute2f128_ps(a, a, 0), 0); }
inline __m256 repeatLast(__m256 a) { return _mm256_permute_ps(_mm256_permute2f128_ps(a, a, 0x11), 0xFF); }
#endif
#ifdef __AVX2__
inline __m256i repeatFirst(__m256i a) { return _mm256_broadcastb_epi8(_mm256_castsi256_si128(a)); }
inline __m256i repeatLast(__m256i a) {
  return _mm256_shuffle_epi8(_mm256_permute4x64_epi64(a, 0xFF), _mm256_set1_epi8(15));
}
#endif
#ifdef __AVX512BW__
inline __m512i repeatFirst(__m512i a) { return _mm512_broadcastb_epi8(_mm512_castsi512_si128(a)); }
inline __m512i repeatLast(__m512i a) {
  return _mm512_shuffle_epi8(_mm512_shuffle_i32x4(a, a, 0xFF), _mm512_set1_epi8(15));
}
inline __m512 repeatFirst(__m512 a) { return _mm512_broadcastss_ps(_mm512_castps512_ps128(a)); }
inline __m512 repeatLast(__m512 a) { return _mm512_permutexvar_ps(_mm512_set1_epi32(15), a); }
#endif

/// The pixels of type T, bytes or floats, of a vector V.
template <class T, class V, bool masks = V::size == 64>
struct PixelLanes {
  using Pixel = T;
  using Vector = V;
  static constexpr bool areBytes = sizeof(T) == 1;
  using Bits = typename std::conditional_t<areBytes, IntegerBits<V>, VectorOfFloatsIn<V::size>>::type;
  using Partial = typename PartialOf<T, masks>::type;
  static constexpr int count = V::size / static_cast<int>(sizeof(T));
  static constexpr bool hasMasks = masks;
  static constexpr int lineVectors = 64 / V::size, linePixels = lineVectors * count;  ///< of a cache line
  static constexpr bool areLines = lineVectors == 1;
  Bits bits;

  static Partial first(std::int64_t n) {
    if constexpr (masks) return firstLanes<Partial>(n);
    if constexpr (!masks) return {n * std::int64_t{sizeof(T)}};
  }
  static PixelLanes load(const T* p, AllLanes = {}) {
    if constexpr (areBytes) return {V::load(p).bits};
    if constexpr (!areBytes) return {loadFloats<Bits>(p)};
  }
  static PixelLanes load(const T* p, Partial lanes) {
    if constexpr (masks && areBytes) return {loadMasked(lanes, p)};
    if constexpr (masks && !areBytes) return {loadMaskedFloats(lanes, p)};
    if constexpr (V::size == 32) return {__builtin_bit_cast(Bits, loadFirst32(p, lanes.bytes))};
    if constexpr (V::size == 16) return {__builtin_bit_cast(Bits, loadFirst16(p, lanes.bytes))};
  }
  void store(T* p, AllLanes = {}) const {
    if constexpr (areBytes) V{bits}.store(p);
    if constexpr (!areBytes) storeFloats(p, bits);
  }
  void store(T* p, Partial lanes) const {
    if constexpr (masks) storeMasked(lanes, p, bits);
    if constexpr (!masks) storeFirst(p, __builtin_bit_cast(V, bits), lanes.bytes);
  }
  void stream(T* p) const { __builtin_bit_cast(V, bits).stream(p); }

  static PixelLanes broadcast(T value) {
    if constexpr (areBytes) return {V::broadcast(value).bits};
    if constexpr (!areBytes) return {broadcastFloats<Bits>(value)};
  }
  static PixelLanes largest(PixelLanes a, PixelLanes b) { return {maximum(a.bits, b.bits)}; }
  static PixelLanes smallest(PixelLanes a, PixelLanes b) { return {minimum(a.bits, b.bits)}; }

  /// The pixels `n` columns after those of `a`; `next` is the vector after `a`. `reach` is the largest
  /// distance for which the caller needs them: up to 4 for floats, below 16 for bytes.
  template <int n, int reach>
  static PixelLanes following(PixelLanes a, PixelLanes next) {
    if constexpr (areBytes) return {followingBytes<n>(a.bits, next.bits)};
    if constexpr (!areBytes) return {followingFloats<n, reach>(a.bits, next.bits)};
  }
  /// The pixels `n` columns before those of `a`; `previous` is the vector before `a`.
  template <int n, int reach>
  static PixelLanes before(PixelLanes a, PixelLanes previous) {
    return following<count - n, reach>(previous, a);
  }
};

using ByteLanes16 = PixelLanes<u8, Vector16>;

/// An operation: how it combines pixels, and its neutral pixel, the initial value of every result.
struct Dilation {
  static constexpr u8 neutral(u8) { return 0; }
  static constexpr float neutral(float) { return -3.4028235e38f; }
  template <class Lanes>
  static Lanes combine(Lanes extreme, Lanes pixels) {
    return Lanes::largest(extreme, pixels);
  }
  template <class T>
  static T combinePixel(T extreme, T pixel) {
    return extreme > pixel ? extreme : pixel;
  }
};
struct Erosion {
  static constexpr u8 neutral(u8) { return 255; }
  static constexpr float neutral(float) { return 3.4028235e38f; }
  template <class Lanes>
  static Lanes combine(Lanes extreme, Lanes pixels) {
    return Lanes::smallest(extreme, pixels);
  }
  template <class T>
  static T combinePixel(T extreme, T pixel) {
    return extreme < pixel ? extreme : pixel;
  }
};

template <class Operation, class Lanes>
inline Lanes neutralLanes() {
  return Lanes::broadcast(Operation::neutral(typename Lanes::Pixel{}));
}

/// The neutral pixels combined with the first ones. Bytes cannot exceed the neutral one; floats can, by
/// infinities.
template <class Operation, class Lanes>
inline Lanes firstExtreme(Lanes pixels) {
  if constexpr (sizeof(typename Lanes::Pixel) == 1) return pixels;
  return Operation::combine(neutralLanes<Operation, Lanes>(), pixels);
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
