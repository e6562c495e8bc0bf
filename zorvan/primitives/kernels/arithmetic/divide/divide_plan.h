#pragma once

// How a scale factor goes into the quotient, and where the vectors of a row begin. Pure, so that each limit
// can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Primitives::Division {
namespace {

enum class Quotients {
  plain,            ///< f = 0
  scaledDivisor,    ///< f above 0: the divisor is multiplied by 2^f
  scaledNumerator,  ///< f below 0: the numerator is multiplied by 2^-f
  zero,             ///< f so far above 0 that no quotient rounds to 1
  limits            ///< f so far below 0 that all quotients but 0 saturate
};

struct QuotientRange {
  int lowest, highest;
};

template <class T>
constexpr QuotientRange quotientRange();
template <>
constexpr QuotientRange quotientRange<u8>() {
  return {-15, 8};
}
template <>
constexpr QuotientRange quotientRange<u16>() {
  return {-31, 16};
}
template <>
constexpr QuotientRange quotientRange<s16>() {
  return {-30, 15};
}

template <class T>
constexpr Quotients planQuotients(int f) {
  constexpr QuotientRange range = quotientRange<T>();
  if (f > range.highest) return Quotients::zero;
  if (f < range.lowest) return Quotients::limits;
  return f == 0 ? Quotients::plain : f > 0 ? Quotients::scaledDivisor : Quotients::scaledNumerator;
}

constexpr float powerOfTwo(int exponent) {
  return __builtin_bit_cast(float, static_cast<std::uint32_t>(127 + exponent) << 23);
}

/// Replaces a divisor of 0 in a vector, so that every quotient but 0 saturates: a numerator of 1 becomes
/// 2^15, which is above the highest 8-bit value, or 2^16, above the highest 16-bit value.
template <class T>
constexpr float divisorForZero(int f) {
  const int exponent = sizeof(T) == 1 ? 15 : 16;
  return powerOfTwo((f < 0 ? -f : 0) - exponent);
}

/// The peel of an integer row, to an 8-byte boundary of the destination. A row of 16-bit pixels at an odd
/// address never reaches one and has no peel.
constexpr std::int64_t peelOfIntegers(std::uintptr_t dst, std::int64_t n, int pixelBytes) {
  const std::int64_t bytes = static_cast<std::int64_t>(-dst & 7);
  const std::int64_t peel = bytes % pixelBytes == 0 ? bytes / pixelBytes : 0;
  return peel < n ? peel : n;
}

/// The peel of a float row, to a boundary of the destination. None where an address is no multiple of 4.
constexpr std::int64_t peelOfFloats(std::uintptr_t a, std::uintptr_t b, std::uintptr_t dst, std::int64_t n,
                                    std::uintptr_t boundary) {
  const std::int64_t peel =
      (a | b | dst) % 4 == 0 ? static_cast<std::int64_t>((-dst & (boundary - 1)) / 4) : 0;
  return peel < n ? peel : n;
}

/// Whether all float rows start on a boundary and are multiples of this many pixels.
constexpr bool needNoPeelOrTail(std::uintptr_t dst, std::int64_t dstStep, std::int64_t n, int boundary,
                                int pixels) {
  return dst % boundary == 0 && dstStep % boundary == 0 && n % pixels == 0;
}

}  // namespace
}  // namespace Zorvan::Primitives::Division
