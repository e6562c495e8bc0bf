#pragma once

// The mean of the selected pixels of a region, and which variant sums how. Without a selected pixel the mean
// is zero.

#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/masked_arguments.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_bytes.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_floats.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_words.h"

namespace Zorvan::Primitives::Statistic {
namespace {

template <class V>
using MaskedBytesPolicy =
    ByVariant<V, MaskedBytes16, MaskedBytes16, MaskedBytes16, MaskedBytes16, MaskedBytes32, MaskedBytes64>;
template <class V>
using MaskedWordsPolicy =
    ByVariant<V, MaskedWords16, MaskedWords16, MaskedWords16, MaskedWords16, MaskedWords32, MaskedWords64>;
template <class V>
using MaskedFloatsPolicy = ByVariant<V, MaskedFloats16, MaskedFloats16, MaskedFloats16, MaskedFloats16,
                                     MaskedFloats32, MaskedFloats64>;

template <class Sum, class T>
int maskedMean(const T* src, int srcStep, const u8* mask, int maskStep, Size roi, double* mean) {
  if (mean == nullptr) return ippStsNullPtrErr;
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != ippStsNoErr) return status;
  storeAs(mean, Sum::of({src, srcStep}, {mask, maskStep}, roi).mean());
  return ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
