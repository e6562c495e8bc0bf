#pragma once

// The mean of the selected pixels of a region: the entries, and which variant sums how. Without a selected
// pixel the mean is zero.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/masked_arguments.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_bytes.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_floats.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_words.h"

namespace Zorvan::Primitives {
namespace {

namespace masked {

#ifndef __AVX2__
struct Bytes32;
struct Words32;
struct Floats32;
#else
using Bytes32 = MaskedBytes32;
using Words32 = MaskedWords32;
using Floats32 = MaskedFloats32;
#endif
#ifndef __AVX512BW__
struct Bytes64;
struct Words64;
struct Floats64;
#else
using Bytes64 = MaskedBytes64;
using Words64 = MaskedWords64;
using Floats64 = MaskedFloats64;
#endif
using Bytes = MaskedBytes16;
using Words = MaskedWords16;
using Floats = MaskedFloats16;

template <class V, class T>
struct MeanPolicy;
template <class V>
struct MeanPolicy<V, u8> {
  using Form = ByVariant<V, Bytes, Bytes, Bytes, Bytes, Bytes32, Bytes64>;
};
template <class V>
struct MeanPolicy<V, u16> {
  using Form = ByVariant<V, Words, Words, Words, Words, Words32, Words64>;
};
template <class V>
struct MeanPolicy<V, float> {
  using Form = ByVariant<V, Floats, Floats, Floats, Floats, Floats32, Floats64>;
};

}  // namespace masked

template <class V, class T>
int findMaskedMean(const T* src, int srcStep, const u8* mask, int maskStep, Size roi, double* mean) {
  if (mean == nullptr) return ippStsNullPtrErr;
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != ippStsNoErr) return status;
  storeAs(mean, masked::MeanPolicy<V, T>::Form::of(src, srcStep, mask, maskStep, roi).mean());
  return ippStsNoErr;
}

}  // namespace

#define MASKED_MEAN(code, T)                                                                                 \
  template <class V>                                                                                         \
  int Routines<V>::ippiMean_##code##_C1MR(const T* src, int srcStep, const u8* mask, int maskStep, Size roi, \
                                          double* mean) {                                                    \
    return findMaskedMean<V>(src, srcStep, mask, maskStep, roi, mean);                                       \
  }
MASKED_MEAN(8u, u8)
MASKED_MEAN(16u, u16)
MASKED_MEAN(32f, float)
#undef MASKED_MEAN

}  // namespace Zorvan::Primitives
