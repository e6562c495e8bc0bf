#pragma once

// Mean and population standard deviation from a count, a sum and a sum of squares.

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Statistic {
namespace {

struct Moments {
  std::uint32_t count;  ///< wraps on 32 bits, and is read as signed
  double sum;
  double squares;
};

struct Deviation {
  double mean;
  double stdDev;
};

/// How the variance is rounded: after the product and after the difference, or once.
struct RoundedTwice {
  static __m128d variance(__m128d meanSquare, __m128d mean) {
    return _mm_sub_sd(meanSquare, _mm_mul_sd(mean, mean));
  }
};
struct RoundedOnce;
#ifdef __FMA__
struct RoundedOnce {
  static __m128d variance(__m128d meanSquare, __m128d mean) { return _mm_fnmadd_sd(mean, mean, meanSquare); }
};
#endif

inline double rootOf(double value) {
  const __m128d v = _mm_set_sd(value);
  return _mm_cvtsd_f64(_mm_sqrt_sd(v, v));
}

inline double countAsDouble(std::uint32_t count) {
  return static_cast<double>(static_cast<std::int32_t>(count));
}

/// Rounding may leave the variance below zero: its magnitude counts.
template <class Rounding>
Deviation deviationOf(const Moments& moments) {
  if (moments.count == 0) return {0, 0};
  const double n = countAsDouble(moments.count);
  const double mean = moments.sum / n;
  const __m128d variance = Rounding::variance(_mm_set_sd(moments.squares / n), _mm_set_sd(mean));
  return {mean, rootOf(_mm_cvtsd_f64(_mm_andnot_pd(_mm_set_sd(-0.0), variance)))};
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
