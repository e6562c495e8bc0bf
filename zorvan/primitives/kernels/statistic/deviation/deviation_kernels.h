#pragma once

// Mean and standard deviation of the selected pixels of a region, and which variant sums how. Without a
// selected pixel both are zero. Each output may be null.

#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/deviation/deviation_bytes.h"
#include "zorvan/primitives/kernels/statistic/deviation/deviation_floats.h"
#include "zorvan/primitives/kernels/statistic/masked_arguments.h"

namespace Zorvan::Primitives::Statistic {
namespace {

template <class V>
using RoundingPolicy =
    ByVariant<V, RoundedTwice, RoundedTwice, RoundedTwice, RoundedTwice, RoundedOnce, RoundedOnce>;
template <class V>
using ByteMomentsPolicy =
    ByVariant<V, ByteMoments16, ByteMoments16, ByteMoments16, ByteMoments16, ByteMoments32, ByteMoments64>;
template <class V>
using FloatMomentsPolicy = ByVariant<V, FloatMoments16, FloatMoments16, FloatMoments16, FloatMoments16,
                                     FloatMoments32, FloatMoments64>;

/// So small a deviation, compared with the mean, is mostly the rounding error of two large numbers'
/// difference.
inline bool isLostInCancellation(Deviation found) {
  return 0.05 * found.mean * found.mean > found.stdDev * found.stdDev;
}

inline void storeUnlessNull(double* to, double value) {
  if (to != nullptr) storeAs(to, value);
}

template <class V>
int deviationOfBytes(const u8* src, int srcStep, const u8* mask, int maskStep, Size roi, double* mean,
                     double* stdDev) {
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != ippStsNoErr) return status;
  const Moments sums = ByteMomentsPolicy<V>::of({src, srcStep}, {mask, maskStep}, roi);
  const Deviation found = deviationOf<RoundingPolicy<V>>(sums);
  storeUnlessNull(mean, found.mean);
  storeUnlessNull(stdDev, found.stdDev);
  return ippStsNoErr;
}

template <class V>
int deviationOfFloats(const float* src, int srcStep, const u8* mask, int maskStep, Size roi, double* mean,
                      double* stdDev) {
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != ippStsNoErr) return status;
  const Plane<const float> pixels{src, srcStep};
  const Plane<const u8> selection{mask, maskStep};
  const Moments sums = FloatMomentsPolicy<V>::of(pixels, selection, roi);
  const Deviation found = deviationOf<RoundingPolicy<V>>(sums);
  storeUnlessNull(mean, found.mean);
  storeUnlessNull(stdDev, found.stdDev);
  if (isLostInCancellation(found)) {
    const double squares =
        FloatMomentsPolicy<V>::squaresAround(static_cast<float>(found.mean), pixels, selection, roi);
    storeUnlessNull(stdDev, rootOf(squares / countAsDouble(sums.count)));
  }
  return ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
