#pragma once

// Square roots of 16-bit pixels by the processor's estimate of the reciprocal root, from one image to another
// or in place. Any address.
//
// The truncated product of a pixel and its estimate is the root's integer part; where the root is close to an
// integer it may differ by one. A comparison of integers then selects the nearest of this value and the next.

#include "zorvan/primitives/kernels/simd/lane_operations.h"

namespace Zorvan::Primitives::Unary {
namespace {

inline __m128 toFloats(__m128i x) { return _mm_cvtepi32_ps(x); }
inline __m128i truncated(__m128 x) { return _mm_cvttps_epi32(x); }
inline __m128 reciprocalRoot(__m128 x) { return _mm_rsqrt_ps(x); }
inline __m128 lower(__m128 x, float limit) { return _mm_min_ps(x, _mm_set1_ps(limit)); }
inline __m128 times(__m128 x, float factor) { return _mm_mul_ps(x, _mm_set1_ps(factor)); }
inline __m128 times(__m128 x, __m128 y) { return _mm_mul_ps(x, y); }
inline __m128 plus(__m128 x, float term) { return _mm_add_ps(x, _mm_set1_ps(term)); }
inline __m128i above(__m128i a, __m128i b) { return _mm_cmpgt_epi32(a, b); }
inline __m128i squared(__m128i low15Bits) { return _mm_madd_epi16(low15Bits, low15Bits); }
inline __m128i positive_epi16(__m128i x) { return _mm_max_epi16(x, _mm_setzero_si128()); }
inline bool anyNegativeWord(__m128i x) { return (_mm_movemask_epi8(x) & 0xAAAA) != 0; }
#ifdef __AVX2__
inline __m256 toFloats(__m256i x) { return _mm256_cvtepi32_ps(x); }
inline __m256i truncated(__m256 x) { return _mm256_cvttps_epi32(x); }
inline __m256 reciprocalRoot(__m256 x) { return _mm256_rsqrt_ps(x); }
inline __m256 lower(__m256 x, float limit) { return _mm256_min_ps(x, _mm256_set1_ps(limit)); }
inline __m256 times(__m256 x, float factor) { return _mm256_mul_ps(x, _mm256_set1_ps(factor)); }
inline __m256 times(__m256 x, __m256 y) { return _mm256_mul_ps(x, y); }
inline __m256 plus(__m256 x, float term) { return _mm256_add_ps(x, _mm256_set1_ps(term)); }
inline __m256i above(__m256i a, __m256i b) { return _mm256_cmpgt_epi32(a, b); }
inline __m256i squared(__m256i low15Bits) { return _mm256_madd_epi16(low15Bits, low15Bits); }
inline __m256i positive_epi16(__m256i x) { return _mm256_max_epi16(x, _mm256_setzero_si256()); }
inline bool anyNegativeWord(__m256i x) {
  return (static_cast<unsigned>(_mm256_movemask_epi8(x)) & 0xAAAAAAAAU) != 0;
}
#endif

/// Pixels as floats, 1 instead of 0: the estimate of 0 is infinite.
template <class I>
inline auto oneAtLeast(I x) {
  return toFloats(sub_epi32(x, above(broadcastDwords<I>(1), x)));
}
template <class I>
inline I unlessZero(I x, I result) {
  return result & above(x, zeroes<I>());
}

// Roots of pixels in 32-bit lanes, one class for each form of scaling.

/// f = 0.
struct PlainRoot {
  template <class I>
  I of(I x) const {
    const auto pixels = oneAtLeast(x);
    const I q = truncated(times(pixels, reciprocalRoot(pixels)));
    const I up = above(sub_epi32(x, squared(q)), q);
    return unlessZero(x, sub_epi32(q, up));
  }
};

/// f from -1 down to -14, k = -f. Results have up to 16 bits, for which the estimate is refined. The
/// comparison takes the pixel times 4^k; where that exceeds 32 bits the result saturates.
class RaisedRoot {
 public:
  RaisedRoot(int f, int highest)
      : k_(-f),
        highest_(highest),
        saturatesAbove_(lastBelow(highest, -f)),
        scale_(static_cast<float>(1 << -f)) {}

  template <class I>
  I of(I x) const {
    const auto pixels = oneAtLeast(x);
    const auto y = reciprocalRoot(pixels);
    const auto t = times(pixels, y);
    const auto root = times(times(t, -0.5F), plus(times(y, t), -3.0F));
    const I q = truncated(lower(times(root, scale_), static_cast<float>(highest_)));
    const I square = mullo_epi16(q, q) | sll_epi32(mulhi_epu16(q, q), _mm_cvtsi32_si128(16));
    const I up = above(sub_epi32(sll_epi32(x, _mm_cvtsi32_si128(2 * k_)), square), q);
    const I saturates = above(x, broadcastDwords<I>(saturatesAbove_));
    const I nearest = sub_epi32(q, up);
    return unlessZero(x, (nearest & (saturates ^ allOnes<I>())) | (saturates & broadcastDwords<I>(highest_)));
  }

 private:
  /// The last pixel whose root is nearest to a value below the highest.
  static int lastBelow(std::int64_t highest, int k) {
    return static_cast<int>((highest * highest - highest) >> (2 * k));
  }

  int k_, highest_, saturatesAbove_;
  float scale_;
};

/// f from 1 to 8. The middle between two results is an integer before scaling, so that there are ties: they
/// go to even.
class LoweredRoot {
 public:
  explicit LoweredRoot(int f) : f_(f), scale_(1.0F / static_cast<float>(1 << f)) {}

  template <class I>
  I of(I x) const {
    const auto pixels = oneAtLeast(x);
    const I q = truncated(times(times(pixels, reciprocalRoot(pixels)), scale_));
    const I one = broadcastDwords<I>(1);
    const I half = sll_epi32(add_epi32(add_epi32(q, q), one), _mm_cvtsi32_si128(f_ - 1));
    const I up = above(x, sub_epi32(squared(half), q & one));
    return unlessZero(x, sub_epi32(q, up));
  }

 private:
  int f_;
  float scale_;
};

template <class T, class Root, class I>
inline I rootLanes(const Root& root, I pixels) {
  const I x = std::is_signed_v<T> ? positive_epi16(pixels) : pixels;
  return packUnsigned_epi32(root.of(unpacklo_epi16(x, zeroes<I>())), root.of(unpackhi_epi16(x, zeroes<I>())));
}

// Scale factors for which no root has to be computed.

struct AllPositiveSaturate {};
struct AllRoundToZero {};

template <class T, class I>
inline I rootLanes(AllPositiveSaturate, I pixels) {
  if constexpr (std::is_signed_v<T>) {
    const I none = cmpeq_epi16(positive_epi16(pixels), zeroes<I>());
    return (none ^ allOnes<I>()) & broadcastWords<I>(32767);
  } else {
    return cmpeq_epi16(pixels, zeroes<I>()) ^ allOnes<I>();
  }
}
template <class T, class I>
inline I rootLanes(AllRoundToZero, I) {
  return zeroes<I>();
}

/// Returns whether a pixel of the row is negative.
template <class Vector, class T, class Root>
inline bool rootWordsRow(const Root& root, const unsigned char* src, unsigned char* dst, std::int64_t n) {
  constexpr std::int64_t lanes = Vector::size / 2;
  auto signs = Vector::broadcast(std::uint16_t{0}).bits;
  for (; n >= lanes; src += Vector::size, dst += Vector::size, n -= lanes) {
    const auto pixels = Vector::load(src).bits;
    signs |= pixels;
    Vector{rootLanes<T>(root, pixels)}.store(dst);
  }
  if (n > 0) {  // on a vector that is filled up with zeros
    T rest[lanes] = {};
    for (std::int64_t i = 0; i < n; ++i) rest[i] = loadAs<T>(src + 2 * i);
    const auto pixels = Vector::load(rest).bits;
    signs |= pixels;
    Vector{rootLanes<T>(root, pixels)}.store(rest);
    for (std::int64_t i = 0; i < n; ++i) storeAs(dst + 2 * i, rest[i]);
  }
  return std::is_signed_v<T> && anyNegativeWord(signs);
}

/// Calls `use(root)` with the root scaled by `f`.
template <class T, class Use>
inline void withRootScaling(int f, Use use) {
  constexpr int highest = std::is_signed_v<T> ? 32767 : 65535;
  if (f < -14) return use(AllPositiveSaturate{});
  if (f < 0) return use(RaisedRoot(f, highest));
  if (f == 0) return use(PlainRoot{});
  if (f <= 8) return use(LoweredRoot(f));
  use(AllRoundToZero{});
}

}  // namespace
}  // namespace Zorvan::Primitives::Unary
