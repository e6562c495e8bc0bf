#pragma once

// Sum, difference and product of integer pixels: exact for one pixel; for vectors exact in lanes twice as
// wide, or saturated in lanes of the pixel's size.

#include "zorvan/primitives/kernels/arithmetic/binary/scaled_row_plan.h"
#include "zorvan/primitives/kernels/common/scaling.h"

namespace Zorvan::Primitives::Arithmetic {
namespace {

template <class T>
struct Sum {
  using Pixel = T;
  static constexpr Operation operation = Operation::sum;

  static std::int64_t exact(T a, T b) { return std::int64_t{a} + b; }
  template <class I>
  static I saturatedLanes(I a, I b) {
    if constexpr (sizeof(T) == 1) {
      return adds_epu8(a, b);
    } else if constexpr (std::is_signed_v<T>) {
      return adds_epi16(a, b);
    } else {
      return adds_epu16(a, b);
    }
  }
  template <class I>
  static Halves<I> exactLanes(I a, I b) {
    const Halves<I> x = widened<T>(a), y = widened<T>(b);
    if constexpr (sizeof(T) == 1) {
      return {add_epi16(x.low, y.low), add_epi16(x.high, y.high)};
    } else {
      return {add_epi32(x.low, y.low), add_epi32(x.high, y.high)};
    }
  }
};

/// The first operand is the subtrahend. Unsigned differences are clamped to 0 before they are scaled.
template <class T>
struct Difference {
  using Pixel = T;
  static constexpr Operation operation = Operation::difference;

  static std::int64_t exact(T a, T b) {
    const std::int64_t s = std::int64_t{b} - a;
    return std::is_signed_v<T> || s > 0 ? s : 0;
  }
  template <class I>
  static I saturatedLanes(I a, I b) {
    if constexpr (sizeof(T) == 1) {
      return subs_epu8(b, a);
    } else if constexpr (std::is_signed_v<T>) {
      return subs_epi16(b, a);
    } else {
      return subs_epu16(b, a);
    }
  }
  template <class I>
  static Halves<I> exactLanes(I a, I b) {
    if constexpr (std::is_signed_v<T>) {
      const Halves<I> x = widened<T>(a), y = widened<T>(b);
      return {sub_epi32(y.low, x.low), sub_epi32(y.high, x.high)};
    } else {
      return widened<T>(saturatedLanes(a, b));
    }
  }
};

template <class T>
struct Product {
  using Pixel = T;
  static constexpr Operation operation = Operation::product;

  static std::int64_t exact(T a, T b) { return std::int64_t{a} * b; }
  template <class I>
  static I saturatedLanes(I a, I b) {
    if constexpr (sizeof(T) == 1) {
#ifdef __AVX512BW__
      if constexpr (sizeof(I) == 32) {  // one vector holds all words
        const __m512i s = _mm512_mullo_epi16(_mm512_cvtepu8_epi16(a), _mm512_cvtepu8_epi16(b));
        return _mm512_cvtusepi16_epi8(s);
      }
#endif
      const Halves<I> s = exactLanes(a, b);
      const I highest = broadcastWords<I>(255);  // words from 2^15 on would be packed as negative ones
      return narrowed<T, I>({lower_epu16(s.low, highest), lower_epu16(s.high, highest)});
    } else if constexpr (std::is_signed_v<T>) {
      return narrowed<T>(exactLanes(a, b));
    } else {
      const I fits = cmpeq_epi16(mulhi_epu16(a, b), zeroes<I>());
      return mullo_epi16(a, b) | ~fits;
    }
  }
  template <class I>
  static Halves<I> exactLanes(I a, I b) {
    if constexpr (sizeof(T) == 1) {
      const Halves<I> x = widened<T>(a), y = widened<T>(b);
      return {mullo_epi16(x.low, y.low), mullo_epi16(x.high, y.high)};
    } else {
      const I low = mullo_epi16(a, b);
      const I high = std::is_signed_v<T> ? mulhi_epi16(a, b) : mulhi_epu16(a, b);
      return {unpacklo_epi16(low, high), unpackhi_epi16(low, high)};
    }
  }
};

/// An operation with its scaling.
template <class Op, class Scale>
struct ScaledOperation {
  using Pixel = typename Op::Pixel;
  static constexpr Operation operation = Op::operation;
  static constexpr Scaling scaling = Scale::scaling;
  Scale scale;

  Pixel pixel(Pixel a, Pixel b) const { return scale.pixel(Op::exact(a, b)); }
  template <class I>
  I lanes(I a, I b) const {
    if constexpr (Scale::exact) {
      return scale.lanes(Op::exactLanes(a, b));
    } else {
      return scale.lanes(Op::saturatedLanes(a, b));
    }
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
