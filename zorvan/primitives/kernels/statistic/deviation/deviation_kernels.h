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
using WideBytes = WideByteMoments;
using WideFloats = WideFloatMoments;
#else
struct Once;
class WideBytes;
class WideFloats;
#endif
#ifdef __AVX512BW__
using RegisterBytes = RegisterByteMoments;
using RegisterFloats = RegisterFloatMoments;
#else
class RegisterBytes;
class RegisterFloats;
#endif
using Twice = RoundedTwice;
using Bytes = NarrowByteMoments;
using Floats = NarrowFloatMoments;

template <class V>
struct Policy {
  using Rounding = ByVariant<V, Twice, Twice, Twice, Twice, Once, Once>;
  using OfBytes = ByVariant<V, Bytes, Bytes, Bytes, Bytes, WideBytes, RegisterBytes>;
  using OfFloats = ByVariant<V, Floats, Floats, Floats, Floats, WideFloats, RegisterFloats>;
};

/// A deviation this small against the mean has lost its digits in the difference of two large numbers.
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
