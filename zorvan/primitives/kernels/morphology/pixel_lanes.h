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

struct ByteLanes16 {
  using Pixel = std::uint8_t;
  using Partial = FirstBytes;
  static constexpr int count = 16;
  static constexpr bool hasMasks = false;
  static constexpr bool areLines = false;
  __m128i bits;

  static Partial first(std::int64_t n) { return {n}; }
  static ByteLanes16 load(const Pixel* p, AllLanes = {}) { return {Vector16::load(p).bits}; }
  static ByteLanes16 load(const Pixel* p, Partial lanes) { return {loadFirst16(p, lanes.bytes)}; }
  void store(Pixel* p, AllLanes = {}) const { Vector16{bits}.store(p); }
  void store(Pixel* p, Partial lanes) const { storeFirst(p, Vector16{bits}, lanes.bytes); }

  static ByteLanes16 broadcast(Pixel value) { return {Vector16::broadcast(value).bits}; }
  static ByteLanes16 largest(ByteLanes16 a, ByteLanes16 b) { return {_mm_max_epu8(a.bits, b.bits)}; }
  static ByteLanes16 smallest(ByteLanes16 a, ByteLanes16 b) { return {_mm_min_epu8(a.bits, b.bits)}; }

#ifdef __SSSE3__
  /// The pixels `n` columns after those of `a`, `n` below 16; `next` is the vector after `a`.
  template <int n, int>
  static ByteLanes16 following(ByteLanes16 a, ByteLanes16 next) {
    return {_mm_alignr_epi8(next.bits, a.bits, n)};
  }
  /// The pixels `n` columns before those of `a`, `n` below 16; `previous` is the vector before `a`.
  template <int n, int>
  static ByteLanes16 before(ByteLanes16 a, ByteLanes16 previous) {
    return {_mm_alignr_epi8(a.bits, previous.bits, 16 - n)};
  }
#endif
  /// `a` where all bits of `mask` are set and `b` where none is.
  static ByteLanes16 select(ByteLanes16 mask, ByteLanes16 a, ByteLanes16 b) {
    return {_mm_or_si128(_mm_and_si128(mask.bits, a.bits), _mm_andnot_si128(mask.bits, b.bits))};
  }
};

/// The floats `n` columns after those of `a`, `n` up to 4; `next` is the vector after `a`. The compiler
/// shares shuffles between distances; for a `reach` of 1 alone, one shift of bytes is shorter.
template <int n, int reach>
inline __m128 followingFloats(__m128 a, __m128 next) {
#ifdef __SSSE3__
  if constexpr (reach == 1) {
    return _mm_castsi128_ps(_mm_alignr_epi8(_mm_castps_si128(next), _mm_castps_si128(a), 4 * n));
  }
#endif
  const __m128 two = _mm_shuffle_ps(a, next, _MM_SHUFFLE(1, 0, 3, 2));
  if constexpr (n == 1) return _mm_shuffle_ps(a, two, _MM_SHUFFLE(2, 1, 2, 1));
  if constexpr (n == 3) return _mm_shuffle_ps(two, next, _MM_SHUFFLE(2, 1, 2, 1));
  return n == 0 ? a : n == 2 ? two : next;
}

struct FloatLanes16 {
  using Pixel = float;
  using Partial = FirstBytes;
  static constexpr int count = 4;
  static constexpr bool hasMasks = false;
  static constexpr bool areLines = false;
  __m128 bits;

  static Partial first(std::int64_t n) { return {4 * n}; }
  static FloatLanes16 load(const Pixel* p, AllLanes = {}) { return {_mm_loadu_ps(p)}; }
  static FloatLanes16 load(const Pixel* p, Partial lanes) {
    return {_mm_castsi128_ps(loadFirst16(p, lanes.bytes))};
  }
  void store(Pixel* p, AllLanes = {}) const { _mm_storeu_ps(p, bits); }
  void store(Pixel* p, Partial lanes) const { storeFirst(p, Vector16{_mm_castps_si128(bits)}, lanes.bytes); }

  static FloatLanes16 broadcast(Pixel value) { return {_mm_set1_ps(value)}; }
  static FloatLanes16 largest(FloatLanes16 a, FloatLanes16 b) { return {_mm_max_ps(a.bits, b.bits)}; }
  static FloatLanes16 smallest(FloatLanes16 a, FloatLanes16 b) { return {_mm_min_ps(a.bits, b.bits)}; }

  template <int n, int reach>
  static FloatLanes16 following(FloatLanes16 a, FloatLanes16 next) {
    return {followingFloats<n, reach>(a.bits, next.bits)};
  }
  template <int n, int reach>
  static FloatLanes16 before(FloatLanes16 a, FloatLanes16 previous) {
    return following<4 - n, reach>(previous, a);
  }
  static FloatLanes16 select(FloatLanes16 mask, FloatLanes16 a, FloatLanes16 b) {
    return {_mm_or_ps(_mm_and_ps(mask.bits, a.bits), _mm_andnot_ps(mask.bits, b.bits))};
  }
};

#ifdef __AVX__
/// The same in each 16 bytes.
template <int n, int reach>
inline __m256 followingFloats(__m256 a, __m256 next) {
#ifdef __AVX2__
  if constexpr (reach == 1) {
    return _mm256_castsi256_ps(_mm256_alignr_epi8(_mm256_castps_si256(next), _mm256_castps_si256(a), 4 * n));
  }
#endif
  const __m256 two = _mm256_shuffle_ps(a, next, _MM_SHUFFLE(1, 0, 3, 2));
  if constexpr (n == 1) return _mm256_shuffle_ps(a, two, _MM_SHUFFLE(2, 1, 2, 1));
  if constexpr (n == 3) return _mm256_shuffle_ps(two, next, _MM_SHUFFLE(2, 1, 2, 1));
  return n == 0 ? a : n == 2 ? two : next;
}

struct FloatLanes32 {
  using Pixel = float;
  using Partial = FirstBytes;
  static constexpr int count = 8;
  static constexpr bool hasMasks = false;
  static constexpr bool areLines = false;
  __m256 bits;

  static Partial first(std::int64_t n) { return {4 * n}; }
  static FloatLanes32 load(const Pixel* p, AllLanes = {}) { return {_mm256_loadu_ps(p)}; }
  static FloatLanes32 load(const Pixel* p, Partial lanes) {
    if (lanes.bytes < 16) {
      return {_mm256_zextps128_ps256(_mm_castsi128_ps(loadFirst16(p, lanes.bytes)))};
    }
    const __m128 high = _mm_castsi128_ps(loadFirst16(p + 4, lanes.bytes - 16));
    return {_mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(p)), high, 1)};
  }
  void store(Pixel* p, AllLanes = {}) const { _mm256_storeu_ps(p, bits); }
  void store(Pixel* p, Partial lanes) const {
    const FloatLanes16 low{_mm256_castps256_ps128(bits)};
    if (lanes.bytes < 16) return low.store(p, lanes);
    low.store(p);
    FloatLanes16{_mm256_extractf128_ps(bits, 1)}.store(p + 4, FirstBytes{lanes.bytes - 16});
  }

  static FloatLanes32 broadcast(Pixel value) { return {_mm256_set1_ps(value)}; }
  static FloatLanes32 largest(FloatLanes32 a, FloatLanes32 b) { return {_mm256_max_ps(a.bits, b.bits)}; }
  static FloatLanes32 smallest(FloatLanes32 a, FloatLanes32 b) { return {_mm256_min_ps(a.bits, b.bits)}; }

  static __m256 middle(FloatLanes32 a, FloatLanes32 next) {
    return _mm256_permute2f128_ps(a.bits, next.bits, 0x21);
  }
  /// `n` up to 4.
  template <int n, int reach>
  static FloatLanes32 following(FloatLanes32 a, FloatLanes32 next) {
    return {followingFloats<n, reach>(a.bits, middle(a, next))};
  }
  template <int n, int reach>
  static FloatLanes32 before(FloatLanes32 a, FloatLanes32 previous) {
    return {followingFloats<4 - n, reach>(middle(previous, a), a.bits)};
  }
  static FloatLanes32 select(FloatLanes32 mask, FloatLanes32 a, FloatLanes32 b) {
    return {_mm256_blendv_ps(b.bits, a.bits, mask.bits)};
  }
};
#endif

#ifdef __AVX2__
struct ByteLanes32 {
  using Pixel = std::uint8_t;
  using Partial = FirstBytes;
  static constexpr int count = 32;
  static constexpr bool hasMasks = false;
  static constexpr bool areLines = false;
  __m256i bits;

  static Partial first(std::int64_t n) { return {n}; }
  static ByteLanes32 load(const Pixel* p, AllLanes = {}) { return {Vector32::load(p).bits}; }
  static ByteLanes32 load(const Pixel* p, Partial lanes) { return {loadFirst32(p, lanes.bytes)}; }
  void store(Pixel* p, AllLanes = {}) const { Vector32{bits}.store(p); }
  void store(Pixel* p, Partial lanes) const { storeFirst(p, Vector32{bits}, lanes.bytes); }

  static ByteLanes32 broadcast(Pixel value) { return {Vector32::broadcast(value).bits}; }
  static ByteLanes32 largest(ByteLanes32 a, ByteLanes32 b) { return {_mm256_max_epu8(a.bits, b.bits)}; }
  static ByteLanes32 smallest(ByteLanes32 a, ByteLanes32 b) { return {_mm256_min_epu8(a.bits, b.bits)}; }

  static __m256i middle(ByteLanes32 a, ByteLanes32 next) {
    return _mm256_permute2x128_si256(a.bits, next.bits, 0x21);
  }
  template <int n, int>
  static ByteLanes32 following(ByteLanes32 a, ByteLanes32 next) {
    return {_mm256_alignr_epi8(middle(a, next), a.bits, n)};
  }
  template <int n, int>
  static ByteLanes32 before(ByteLanes32 a, ByteLanes32 previous) {
    return {_mm256_alignr_epi8(a.bits, middle(previous, a), 16 - n)};
  }
  static ByteLanes32 select(ByteLanes32 mask, ByteLanes32 a, ByteLanes32 b) {
    return {_mm256_blendv_epi8(b.bits, a.bits, mask.bits)};
  }
};
#endif

#ifdef __AVX512BW__
struct ByteLanes64 {
  using Pixel = std::uint8_t;
  using Partial = __mmask64;
  static constexpr int count = 64;
  static constexpr bool hasMasks = true;
  static constexpr bool areLines = true;
  __m512i bits;

  static Partial first(std::int64_t n) { return ~std::uint64_t{0} >> (-n & 63); }
  static ByteLanes64 load(const Pixel* p, AllLanes = {}) { return {Vector64::load(p).bits}; }
  static ByteLanes64 load(const Pixel* p, Partial lanes) { return {_mm512_maskz_loadu_epi8(lanes, p)}; }
  void store(Pixel* p, AllLanes = {}) const { Vector64{bits}.store(p); }
  void store(Pixel* p, Partial lanes) const { _mm512_mask_storeu_epi8(p, lanes, bits); }
  void stream(Pixel* p) const { Vector64{bits}.stream(p); }

  static ByteLanes64 broadcast(Pixel value) { return {Vector64::broadcast(value).bits}; }
  static ByteLanes64 largest(ByteLanes64 a, ByteLanes64 b) { return {_mm512_max_epu8(a.bits, b.bits)}; }
  static ByteLanes64 smallest(ByteLanes64 a, ByteLanes64 b) { return {_mm512_min_epu8(a.bits, b.bits)}; }

  template <int n, int>
  static ByteLanes64 following(ByteLanes64 a, ByteLanes64 next) {
    if constexpr (n % 4 == 0) return {_mm512_alignr_epi32(next.bits, a.bits, n / 4)};
    return {_mm512_alignr_epi8(_mm512_alignr_epi32(next.bits, a.bits, 4), a.bits, n % 16)};
  }
  template <int n, int>
  static ByteLanes64 before(ByteLanes64 a, ByteLanes64 previous) {
    const __m512i middle = _mm512_alignr_epi32(a.bits, previous.bits, 12);
    if constexpr (n % 4 == 0) return {_mm512_alignr_epi32(a.bits, previous.bits, 16 - n / 4)};
    return {_mm512_alignr_epi8(a.bits, middle, 16 - n % 16)};
  }

  /// The last `n` lanes, from one to all but one.
  static Partial last(std::int64_t n) { return ~std::uint64_t{0} << (-n & 63); }
  /// `a` in the given lanes and `b` in the others.
  static ByteLanes64 blend(Partial lanes, ByteLanes64 a, ByteLanes64 b) {
    return {_mm512_mask_blend_epi8(lanes, b.bits, a.bits)};
  }
  /// The position of a lane, to be broadcast.
  struct Place {
    __m512i dwords, bytes;
  };
  static Place place(std::int64_t i) {
    return {_mm512_set1_epi32(static_cast<int>(i >> 2)), _mm512_set1_epi8(static_cast<char>(i & 3))};
  }
  static ByteLanes64 broadcastLane(ByteLanes64 a, Place from) {
    return {_mm512_shuffle_epi8(_mm512_permutexvar_epi32(from.dwords, a.bits), from.bytes)};
  }
  static ByteLanes64 broadcastFirst(ByteLanes64 a) {
    return {_mm512_broadcastb_epi8(_mm512_castsi512_si128(a.bits))};
  }
};

struct FloatLanes64 {
  using Pixel = float;
  using Partial = __mmask16;
  static constexpr int count = 16;
  static constexpr bool hasMasks = true;
  static constexpr bool areLines = true;
  __m512 bits;

  static Partial first(std::int64_t n) { return static_cast<Partial>(0xFFFFu >> (-n & 15)); }
  static FloatLanes64 load(const Pixel* p, AllLanes = {}) { return {_mm512_loadu_ps(p)}; }
  static FloatLanes64 load(const Pixel* p, Partial lanes) { return {_mm512_maskz_loadu_ps(lanes, p)}; }
  void store(Pixel* p, AllLanes = {}) const { _mm512_storeu_ps(p, bits); }
  void store(Pixel* p, Partial lanes) const { _mm512_mask_storeu_ps(p, lanes, bits); }
  void stream(Pixel* p) const { _mm512_stream_ps(p, bits); }

  static FloatLanes64 broadcast(Pixel value) { return {_mm512_set1_ps(value)}; }
  static FloatLanes64 largest(FloatLanes64 a, FloatLanes64 b) {
    return {_mm512_maskz_max_ps(0xFFFF, a.bits, b.bits)};
  }
  static FloatLanes64 smallest(FloatLanes64 a, FloatLanes64 b) {
    return {_mm512_maskz_min_ps(0xFFFF, a.bits, b.bits)};
  }

  template <int n, int>
  static FloatLanes64 following(FloatLanes64 a, FloatLanes64 next) {
    return {_mm512_castsi512_ps(
        _mm512_alignr_epi32(_mm512_castps_si512(next.bits), _mm512_castps_si512(a.bits), n))};
  }
  template <int n, int>
  static FloatLanes64 before(FloatLanes64 a, FloatLanes64 previous) {
    return following<16 - n, 0>(previous, a);
  }

  static Partial last(std::int64_t n) { return static_cast<Partial>(0xFFFFu << (16 - n)); }
  static FloatLanes64 blend(Partial lanes, FloatLanes64 a, FloatLanes64 b) {
    return {_mm512_mask_blend_ps(lanes, b.bits, a.bits)};
  }
  struct Place {
    __m512i dwords;
  };
  static Place place(std::int64_t i) { return {_mm512_set1_epi32(static_cast<int>(i))}; }
  static FloatLanes64 broadcastLane(FloatLanes64 a, Place from) {
    return {_mm512_permutexvar_ps(from.dwords, a.bits)};
  }
  static FloatLanes64 broadcastFirst(FloatLanes64 a) {
    return {_mm512_broadcastss_ps(_mm512_castps512_ps128(a.bits))};
  }
};
#endif

/// An operation: how it combines pixels, and its neutral pixel, the initial value of every result.
struct Dilation {
  static constexpr std::uint8_t neutral(std::uint8_t) { return 0; }
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
  static constexpr std::uint8_t neutral(std::uint8_t) { return 255; }
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
