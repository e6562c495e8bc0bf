#pragma once

// Quotients of single integer pixels: peel and tail of rows, and scale factors that need no division.

#include <type_traits>

#include "zorvan/primitives/kernels/arithmetic/divide/divide_plan.h"
#include "zorvan/primitives/kernels/common/extreme_values.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Division {
namespace {

/// The factors of a row's quotients, all powers of two: products with them are exact.
struct QuotientFactors {
  float numerator;
  float divisor;
  float whole;    ///< Both, where they go into the divisor alone.
  float forZero;  ///< Replaces a divisor of 0 in vectors.
};
template <class T>
inline QuotientFactors quotientFactors(int f) {
  return {powerOfTwo(f < 0 ? -f : 0), powerOfTwo(f > 0 ? f : 0), powerOfTwo(f), divisorForZero<T>(f)};
}

/// The limit of the type with the sign of `n`.
template <class T>
inline T limitTowards(T n) {
  return n > 0 ? highest<T> : n < 0 ? lowest<T> : T{0};
}

/// A division by 0 saturates and sets `anyZero`. The quotient is clamped as a float, before it could wrap.
template <class T>
inline T dividePixel(T divisor, T numerator, const QuotientFactors& factors, bool& anyZero) {
  if (divisor == 0) {
    anyZero = true;
    return limitTowards(numerator);
  }
  constexpr float least = lowest<T>, most = highest<T>;
  const float q = numerator * factors.numerator / (divisor * factors.divisor);
  return static_cast<T>(_mm_cvtss_si32(_mm_set_ss(q < least ? least : q > most ? most : q)));
}

/// A quotient that rounds to 0 unless the divisor is 0.
template <class T>
inline T vanishingQuotient(T divisor, T numerator) {
  return divisor == 0 ? limitTowards(numerator) : T{0};
}

/// A quotient that saturates unless the numerator is 0.
template <class T>
inline T saturatedQuotient(T divisor, T numerator) {
  const T limit = limitTowards(numerator);
  if (divisor >= 0 || numerator == 0) return limit;
  return limit == highest<T> ? lowest<T> : highest<T>;
}

}  // namespace
}  // namespace Zorvan::Primitives::Division
