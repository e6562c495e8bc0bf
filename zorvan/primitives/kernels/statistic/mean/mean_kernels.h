#pragma once

// The mean of a region, and which variant sums how. A mean is a sum divided by the pixel count; sums of
// integers are exact.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_bytes.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_floats16.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_floats32_64.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_tiles.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_words.h"

namespace Zorvan::Primitives::Statistic {
namespace {

template <class V>
using ByteSumPolicy = ByVariant<V, ByteSum16, ByteSum16, ByteSum16, ByteSum16, ByteSum32, ByteSum64>;
template <class V>
using WordSumPolicy = ByVariant<V, WordSum16, WordSum16, WordSum16, WordSum16, WordSum32, WordSum64>;
template <class V>
using SignedWordSumPolicy = ByVariant<V, SignedWordSum16, SignedWordSum16, SignedWordSum16, SignedWordSum16,
                                      SignedWordSum32, SignedWordSum64>;
template <class V>
using AccurateSumPolicy = ByVariant<V, EvenOddSum, ModuloFourSum, EvenOddSum, RegionSum<Doubles32>,
                                    RegionSum<Doubles32>, RegionSum<Doubles64>>;
template <class V>
using FastSumPolicy = ByVariant<V, FastRowSum, FastRowSum, FastRowSum, FastRegionSum<Floats32, Doubles32>,
                                FastRegionSum<Floats32, Doubles32>, FastRegionSum<Floats64, Doubles64>>;

template <class V>
struct FloatSum {
  /// The hint for double precision throughout. All others select the fast sum.
  static constexpr int accurate = 2;

  static double of(const float* src, int srcStep, Size roi, int hint) {
    if (hint == accurate) return AccurateSumPolicy<V>::of(src, srcStep, roi);
    return FastSumPolicy<V>::of(src, srcStep, roi);
  }
};

template <class Sum, class T, class... Hint>
int mean(const T* src, int srcStep, Size roi, double* result, Hint... hint) {
  if (src == nullptr || result == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  storeAs(result, Sum::of(src, srcStep, roi, hint...) / static_cast<double>(wrappedCount(roi)));
  return ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
