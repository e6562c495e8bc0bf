#pragma once

#include <cstdint>
#include <limits>

namespace Zorvan::Reference {

/// Scaled saturating arithmetic: the exact result `s`, divided by 2^f with ties to even and saturated. |s| is
/// below 2^33.
template <class T>
T scaled(std::int64_t s, int f) {
  constexpr std::int64_t lowest = std::numeric_limits<T>::min(), highest = std::numeric_limits<T>::max();
  if (f >= 40) return 0;
  if (f <= -20)
    s = s > 0 ? highest : s < 0 ? lowest : 0;
  else if (f < 0)
    s = s * (std::int64_t{1} << -f);
  else if (f > 0) {
    const std::int64_t unit = std::int64_t{1} << f;
    std::int64_t quotient = s / unit, rest = s % unit;  // toward zero
    if (rest < 0) {
      rest += unit;
      --quotient;
    }
    const bool up = 2 * rest > unit || (2 * rest == unit && quotient % 2 != 0);
    s = quotient + (up ? 1 : 0);
  }
  return static_cast<T>(s < lowest ? lowest : s > highest ? highest : s);
}

}  // namespace Zorvan::Reference
