#pragma once

#include <cmath>
#include <cstring>
#include <limits>

namespace Zorvan::Test {

/// Whether a quotient from a vector is near enough. After two Newton iterations the estimate's error is
/// negligible; what remains are four roundings, and ties that they decide.
template <class T>
bool nearQuotient(T actual, T divisor, T numerator, int f) {
  using Limits = std::numeric_limits<T>;
  if (divisor == 0) return false;
  const double q = std::ldexp(static_cast<double>(numerator) / divisor, -f);
  const double slack = 0.5 + std::abs(q) * 0x4p-24;
  if (actual == Limits::max()) return q >= static_cast<double>(Limits::max()) - slack;
  if (actual == Limits::min()) return q <= static_cast<double>(Limits::min()) + slack;
  return std::abs(actual - q) <= slack;
}
inline bool nearQuotient(float actual, float divisor, float numerator, int) {
  constexpr double largest = std::numeric_limits<float>::max();
  const double q = double{numerator} / divisor;
  if (std::isnan(q) || std::isinf(q)) return std::isnan(q) ? std::isnan(actual) : double{actual} == q;
  if (std::isinf(actual)) return std::abs(q) >= largest * (1 - 0x4p-24) && (actual > 0) == (q > 0);
  return std::abs(actual - q) <= std::abs(q) * 0x3.01p-24 + std::abs(double{numerator}) * 0x1p-149 + 0x1p-149;
}

/// The same bits, or both NaN.
template <class T>
bool samePixel(T a, T b) {
  if constexpr (std::numeric_limits<T>::has_quiet_NaN) {
    if (std::isnan(a) && std::isnan(b)) return true;
  }
  return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace Zorvan::Test
