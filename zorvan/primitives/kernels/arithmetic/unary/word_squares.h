#pragma once

// Squares of 16-bit pixels, scaled in 32-bit lanes, from one image to another or in place. Any address.

#include "zorvan/primitives/kernels/common/scaling.h"

namespace Zorvan::Primitives::Unary {
namespace {

/// An exact scaling takes exact squares, the others take squares that are saturated to the pixel type.
template <class T, class Scaling, class I>
inline I squareLanes(const Scaling& scaling, I x) {
  constexpr bool isSigned = std::is_signed_v<T>;
  const I low = mullo_epi16(x, x), high = isSigned ? mulhi_epi16(x, x) : mulhi_epu16(x, x);
  const Halves<I> squares{unpacklo_epi16(low, high), unpackhi_epi16(low, high)};
  if constexpr (Scaling::exact) {
    return scaling.template lanes<I>(squares);
  } else if constexpr (isSigned) {
    return scaling.lanes(packs_epi32(squares.low, squares.high));
  } else {
    return scaling.lanes(low | (cmpeq_epi16(high, zeroes<I>()) ^ allOnes<I>()));
  }
}

template <class Vector, class T, class Scaling>
inline void squareWordsRow(const Scaling& scaling, const unsigned char* src, unsigned char* dst,
                           std::int64_t n) {
  constexpr std::int64_t lanes = Vector::size / 2;
  for (; n >= lanes; src += Vector::size, dst += Vector::size, n -= lanes) {
    Vector{squareLanes<T>(scaling, Vector::load(src).bits)}.store(dst);
  }
  for (; n > 0; src += 2, dst += 2, --n) {
    const std::int64_t x = loadAs<T>(src);
    storeAs(dst, scaling.pixel(x * x));
  }
}

/// Scaled down so far that every result rounds to 0.
template <class T>
struct WordsOfZero {
  static constexpr bool exact = false;
  T pixel(std::int64_t) const { return 0; }
  template <class I>
  I lanes(I) const {
    return zeroes<I>();
  }
};

/// Calls `use(scaling)` with the scaling by `f`. INT_MIN is handled before any `f` is negated.
template <class T, class Use>
inline void withSquareScaling(int f, Use use) {
  constexpr bool isSigned = std::is_signed_v<T>;
  // Up to this f the largest square, 2^30 or close to 2^32, plus the rounding term fits 32 bits.
  constexpr int fitsUpTo = isSigned ? 31 : 17;
  if (f < -15) return use(SignOnly<T>{});
  if (f < 0) return use(Enlarged<T>(f));
  if (f == 0) return use(Saturated<T>{});
  if (f == 1) return use(Halved<T>{});
  if (f <= fitsUpTo) return use(Rounded<T>(f));
  if constexpr (!isSigned) {
    if (f <= 32) return use(LongRounded(f));
  }
  use(WordsOfZero<T>{});
}

}  // namespace
}  // namespace Zorvan::Primitives::Unary
