#pragma once

// Scaled saturating arithmetic: what becomes of the exact integer result `s` of a pixel.
//
//   f = 0   s, saturated to the pixel type
//   f > 0   s / 2^f, rounded to nearest with ties to even, saturated
//   f < 0   s * 2^-f, saturated
//
// Each scaling is a class with `pixel(s)` for one exact result and `lanes` for a vector of them. A scaling
// that does not divide takes results that are already saturated to the pixel type, in lanes of the pixel's
// size: saturation before a shift to the left does not change the final result, nor its sign. A scaling that
// divides is `exact`: it takes both halves of a vector of exact results in lanes twice as wide (32-bit
// results of 16-bit pixels, unsigned where the pixels are) and packs them.

#include <cstdint>
#include <type_traits>

#include "zorvan/primitives/kernels/common/extreme_values.h"
#include "zorvan/primitives/kernels/common/scaling_plan.h"
#include "zorvan/primitives/kernels/simd/lane_operations.h"

namespace Zorvan::Primitives {
namespace {

/// The lanes of one vector of pixels, twice as wide, as `unpacklo` and `unpackhi` order them.
template <class I>
struct Halves {
  I low, high;
};

template <class T, class I>
inline Halves<I> widened(I x) {
  if constexpr (sizeof(T) == 1) {
    return {unpacklo_epi8(x, zeroes<I>()), unpackhi_epi8(x, zeroes<I>())};
  } else if constexpr (std::is_signed_v<T>) {
    const I signs = signs_epi16(x);
    return {unpacklo_epi16(x, signs), unpackhi_epi16(x, signs)};
  } else {
    return {unpacklo_epi16(x, zeroes<I>()), unpackhi_epi16(x, zeroes<I>())};
  }
}

/// Packs with saturation. The wide lanes count as signed.
template <class T, class I>
inline I narrowed(Halves<I> s) {
  if constexpr (sizeof(T) == 1) {
    return packus_epi16(s.low, s.high);
  } else if constexpr (std::is_signed_v<T>) {
    return packs_epi32(s.low, s.high);
  } else {
    return packUnsigned_epi32(s.low, s.high);
  }
}

template <class T>
constexpr T saturated(std::int64_t s) {
  return static_cast<T>(s < lowest<T> ? lowest<T> : s > highest<T> ? highest<T> : s);
}

inline __m128i shiftCount(int n) { return _mm_cvtsi32_si128(n); }

/// f = 0.
template <class T>
struct Saturated {
  static constexpr Scaling scaling = Scaling::saturated;
  static constexpr bool exact = false;
  T pixel(std::int64_t s) const { return saturated<T>(s); }
  template <class I>
  I lanes(I x) const {
    return x;
  }
};

/// f = 1: the rounding term is only the quotient's low bit.
template <class T>
struct Halved {
  static constexpr Scaling scaling = Scaling::halved;
  static constexpr bool exact = true;
  T pixel(std::int64_t s) const { return saturated<T>((s + ((s >> 1) & 1)) >> 1); }
  template <class I>
  I lanes(Halves<I> s) const {
    return narrowed<T, I>({half(s.low), half(s.high)});
  }

 private:
  template <class I>
  static I half(I s) {
    const __m128i one = shiftCount(1);
    if constexpr (sizeof(T) == 1) {
      return srl_epi16(add_epi16(s, srl_epi16(s, one) & broadcastWords<I>(1)), one);
    } else {
      const I rounded = add_epi32(s, srl_epi32(s, one) & broadcastDwords<I>(1));
      if constexpr (std::is_signed_v<T>) {
        return sra_epi32(rounded, one);
      } else {
        return srl_epi32(rounded, one);
      }
    }
  }
};

/// f above 1, for results that stay below 2^32 with the rounding term added. Others take LongRounded.
template <class T>
class Rounded {
 public:
  static constexpr Scaling scaling = Scaling::rounded;
  static constexpr bool exact = true;
  explicit Rounded(int f) : f_(f), below_((std::int64_t{1} << (f - 1)) - 1) {}

  T pixel(std::int64_t s) const { return saturated<T>((s + below_ + ((s >> f_) & 1)) >> f_); }
  template <class I>
  I lanes(Halves<I> s) const {
    return narrowed<T, I>({quotient(s.low), quotient(s.high)});
  }

 private:
  template <class I>
  I quotient(I s) const {
    const __m128i f = shiftCount(f_);
    if constexpr (sizeof(T) == 1) {
      // The average adds 1 by itself and keeps the carry that a sum of words would lose.
      const I term =
          add_epi16(broadcastWords<I>(static_cast<int>(below_) - 1), srl_epi16(s, f) & broadcastWords<I>(1));
      return srl_epi16(avg_epu16(s, term), shiftCount(f_ - 1));
    } else {
      const I below = broadcastDwords<I>(static_cast<int>(below_));
      const I odd = srl_epi32(s, f) & broadcastDwords<I>(1);
      const I rounded = add_epi32(s, add_epi32(below, odd));
      if constexpr (std::is_signed_v<T>) {
        return sra_epi32(rounded, f);
      } else {
        return srl_epi32(rounded, f);
      }
    }
  }

  int f_;
  std::int64_t below_;  ///< One less than half of 2^f.
};

/// f up to 32 for 32-bit unsigned results, in 64 bits.
class LongRounded {
 public:
  static constexpr Scaling scaling = Scaling::longRounded;
  static constexpr bool exact = true;
  explicit LongRounded(int f) : f_(f), below_((std::int64_t{1} << (f - 1)) - 1) {}

  u16 pixel(std::int64_t s) const { return saturated<u16>((s + below_ + ((s >> f_) & 1)) >> f_); }
  template <class I>
  I lanes(Halves<I> s) const {
    return narrowed<u16, I>({quotients(s.low), quotients(s.high)});
  }

 private:
  template <class I>
  I quotients(I s) const {
    return packLow_epi64(quotient(unpacklo_epi32(s, zeroes<I>())), quotient(unpackhi_epi32(s, zeroes<I>())));
  }
  template <class I>
  I quotient(I s) const {
    const __m128i f = shiftCount(f_);
    const I odd = srl_epi64(s, f) & broadcastQwords<I>(1);
    return srl_epi64(add_epi64(s, add_epi64(broadcastQwords<I>(below_), odd)), f);
  }

  int f_;
  std::int64_t below_;
};

/// f below 0, shifted by fewer bits than the pixel has: the shifted values stay below 2^15 for 8-bit pixels
/// and below 2^31 for 16-bit pixels.
template <class T>
class Enlarged {
 public:
  static constexpr Scaling scaling = Scaling::enlarged;
  static constexpr bool exact = false;
  explicit Enlarged(int f) : count_(-f) {}

  T pixel(std::int64_t s) const {
    return saturated<T>(std::int64_t{saturated<T>(s)} * (std::int64_t{1} << count_));
  }
  template <class I>
  I lanes(I x) const {
    const __m128i count = shiftCount(count_);
    const Halves<I> s = widened<T>(x);
    if constexpr (sizeof(T) == 1) {
      return narrowed<T, I>({sll_epi16(s.low, count), sll_epi16(s.high, count)});
    } else {
      return narrowed<T, I>({sll_epi32(s.low, count), sll_epi32(s.high, count)});
    }
  }

 private:
  int count_;
};

/// f so far below 0 that every result but 0 saturates.
template <class T>
struct SignOnly {
  static constexpr Scaling scaling = Scaling::signOnly;
  static constexpr bool exact = false;
  T pixel(std::int64_t s) const { return s > 0 ? highest<T> : s < 0 ? lowest<T> : T{0}; }
  template <class I>
  I lanes(I x) const {
    if constexpr (sizeof(T) == 1) {
      return cmpeq_epi8(x, zeroes<I>()) ^ allOnes<I>();
    } else {
      const I isOther = cmpeq_epi16(x, zeroes<I>()) ^ allOnes<I>();
      if constexpr (!std::is_signed_v<T>) return isOther;
      return isOther & (signs_epi16(x) ^ broadcastWords<I>(32767));
    }
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
