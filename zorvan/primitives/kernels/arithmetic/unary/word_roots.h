#pragma once

// Square roots of 16-bit pixels by the processor's estimate of the reciprocal root, from one image to another
// or in place. Any address.
//
// The truncated product of a pixel and its estimate is the root's integer part; where the root is close to an
// integer it may differ by one. A comparison of integers then selects the nearest of this value and the next.

#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/simd/partial.h"

namespace Zorvan::Primitives::Unary {
namespace {

/// Pixels as floats, 1 instead of 0: the estimate of 0 is infinite.
template <class I>
inline auto oneAtLeast(I x) {
  return cvtepi32_ps(sub_epi32(x, cmpgt_epi32(broadcastDwords<I>(1), x)));
}
template <class I>
inline I unlessZero(I x, I result) {
  return result & cmpgt_epi32(x, zeroes<I>());
}

// Roots of pixels in 32-bit lanes, one class for each form of scaling.

/// f = 0.
struct PlainRoot {
  template <class I>
  I of(I x) const {
    const auto pixels = oneAtLeast(x);
    const I q = cvttps_epi32(pixels * rsqrt_ps(pixels));
    const I up = cmpgt_epi32(sub_epi32(x, madd_epi16(q, q)), q);  // `q` has fewer than 16 bits
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
    const auto y = rsqrt_ps(pixels);
    const auto t = pixels * y;
    const auto root = t * -0.5F * (y * t - 3.0F);
    const auto highest = broadcastFloats<decltype(y)>(static_cast<float>(highest_));
    const I q = cvttps_epi32(min_ps(root * scale_, highest));
    const I square = mullo_epi16(q, q) | sll_epi32(mulhi_epu16(q, q), _mm_cvtsi32_si128(16));
    const I up = cmpgt_epi32(sub_epi32(sll_epi32(x, _mm_cvtsi32_si128(2 * k_)), square), q);
    const I saturates = cmpgt_epi32(x, broadcastDwords<I>(saturatesAbove_));
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
    const I q = cvttps_epi32(pixels * rsqrt_ps(pixels) * scale_);
    const I one = broadcastDwords<I>(1);
    const I half = sll_epi32(add_epi32(add_epi32(q, q), one), _mm_cvtsi32_si128(f_ - 1));
    const I up = cmpgt_epi32(x, sub_epi32(madd_epi16(half, half), q & one));
    return unlessZero(x, sub_epi32(q, up));
  }

 private:
  int f_;
  float scale_;
};

template <class T, class Root, class I>
inline I rootLanes(const Root& root, I pixels) {
  const I x = std::is_signed_v<T> ? max_epi16(pixels, zeroes<I>()) : pixels;
  return packUnsigned_epi32(root.of(unpacklo_epi16(x, zeroes<I>())), root.of(unpackhi_epi16(x, zeroes<I>())));
}

// Scale factors for which no root has to be computed.

struct AllPositiveSaturate {};
struct AllRoundToZero {};

template <class T, class I>
inline I rootLanes(AllPositiveSaturate, I pixels) {
  if constexpr (std::is_signed_v<T>) {
    const I none = cmpeq_epi16(max_epi16(pixels, zeroes<I>()), zeroes<I>());
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
  auto signs = Vector::broadcast(u16{0}).bits;
  for (; n >= lanes; src += Vector::size, dst += Vector::size, n -= lanes) {
    const auto pixels = Vector::load(src).bits;
    signs |= pixels;
    Vector{rootLanes<T>(root, pixels)}.store(dst);
  }
  if (n > 0) {
    const auto pixels = loadFirst<Vector>(src, 2 * n).bits;
    signs |= pixels;
    storeFirst(dst, Vector{rootLanes<T>(root, pixels)}, 2 * n);
  }
  return std::is_signed_v<T> && (movemask_epi8(signs) & 0xAAAAAAAA) != 0;
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
