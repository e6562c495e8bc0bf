#pragma once

// Mean and standard deviation of the selected pixels of a region: the entries, and which variant sums how.
// Without a selected pixel both are zero. Each output may be null.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/deviation/deviation_bytes.h"
#include "zorvan/primitives/kernels/statistic/deviation/deviation_floats.h"
#include "zorvan/primitives/kernels/statistic/masked_arguments.h"

namespace Zorvan::Primitives {
namespace {

namespace moments {

#ifdef __AVX2__
using Once = RoundedOnce;
using Bytes32 = ByteMoments32;
using Floats32 = FloatMoments32;
#else
struct Once;
class Bytes32;
class Floats32;
#endif
#ifdef __AVX512BW__
using Bytes64 = ByteMoments64;
using Floats64 = FloatMoments64;
#else
class Bytes64;
class Floats64;
#endif
using Twice = RoundedTwice;
using Bytes = ByteMoments16;
using Floats = FloatMoments16;

template <class V>
struct Policy {
  using Rounding = ByVariant<V, Twice, Twice, Twice, Twice, Once, Once>;
  using OfBytes = ByVariant<V, Bytes, Bytes, Bytes, Bytes, Bytes32, Bytes64>;
  using OfFloats = ByVariant<V, Floats, Floats, Floats, Floats, Floats32, Floats64>;
};

/// So small a deviation, compared with the mean, is mostly the rounding error of two large numbers'
/// difference.
inline bool isLostInCancellation(Deviation found) {
  return 0.05 * found.mean * found.mean > found.stdDev * found.stdDev;
}

}  // namespace moments

template <class T>
void storeUnlessNull(T* to, T value) {
  if (to != nullptr) storeAs(to, value);
}

}  // namespace

template <class V>
int Routines<V>::ippiMean_StdDev_8u_C1MR(const u8* src, int srcStep, const u8* mask, int maskStep, Size roi,
                                         double* mean, double* stdDev) {
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != ippStsNoErr) return status;
  using Policy = moments::Policy<V>;
  const Deviation found =
      deviationOf<typename Policy::Rounding>(Policy::OfBytes::of(src, srcStep, mask, maskStep, roi));
  storeUnlessNull(mean, found.mean);
  storeUnlessNull(stdDev, found.stdDev);
  return ippStsNoErr;
}

template <class V>
int Routines<V>::ippiMean_StdDev_32f_C1MR(const float* src, int srcStep, const u8* mask, int maskStep,
                                          Size roi, double* mean, double* stdDev) {
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != ippStsNoErr) return status;
  using Policy = moments::Policy<V>;
  const MaskedFloats image{src, srcStep, mask, maskStep, roi};
  const Moments sums = Policy::OfFloats::moments(image);
  const Deviation found = deviationOf<typename Policy::Rounding>(sums);
  storeUnlessNull(mean, found.mean);
  storeUnlessNull(stdDev, found.stdDev);
  if (moments::isLostInCancellation(found)) {
    const double squares = Policy::OfFloats::squaresAround(static_cast<float>(found.mean), image);
    storeUnlessNull(stdDev, rootOf(squares / countAsDouble(sums.count)));
  }
  return ippStsNoErr;
}

}  // namespace Zorvan::Primitives
