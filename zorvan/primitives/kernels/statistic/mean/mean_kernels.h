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
using ByteSumPolicy = ByVariant<V, ByteSum16, ByteSum16, ByteSum16, ByteSum16, ByteSum<ZeroFilledRows32>,
                                ByteSum<ZeroFilledRows64>>;
template <class V>
using WordSumPolicy = ByVariant<V, WordSum16, WordSum16, WordSum16, WordSum16,
                                TiledSum<ZeroFilledRows32, UnsignedPairs, unsignedTilePixels>,
                                TiledSum<ZeroFilledRows64, UnsignedPairs, unsignedTilePixels>>;
template <class V>
using SignedWordSumPolicy = ByVariant<V, SignedWordSum16, SignedWordSum16, SignedWordSum16, SignedWordSum16,
                                      TiledSum<ZeroFilledRows32, SignedPairs, signedTilePixels>,
                                      TiledSum<ZeroFilledRows64, SignedPairs, signedTilePixels>>;
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

  static double of(Plane<const float> src, Size roi, int hint) {
    if (hint == accurate) return AccurateSumPolicy<V>::of(src, roi);
    return FastSumPolicy<V>::of(src, roi);
  }
};

template <class Sum, class T, class... Hint>
int mean(const T* src, int srcStep, Size roi, double* result, Hint... hint) {
  if (src == nullptr || result == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  storeAs(result,
          Sum::of(Plane<const T>{src, srcStep}, roi, hint...) / static_cast<double>(wrappedCount(roi)));
  return ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
