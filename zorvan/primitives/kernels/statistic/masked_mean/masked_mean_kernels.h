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
struct WideBytes;
struct WideWords;
struct WideFloats;
#else
using WideBytes = WideMaskedBytes;
using WideWords = WideMaskedWords;
using WideFloats = WideMaskedFloats;
#endif
#ifndef __AVX512BW__
struct RegisterBytes;
struct RegisterWords;
struct RegisterFloats;
#else
using RegisterBytes = RegisterMaskedBytes;
using RegisterWords = RegisterMaskedWords;
using RegisterFloats = RegisterMaskedFloats;
#endif
using Bytes = NarrowMaskedBytes;
using Words = NarrowMaskedWords;
using Floats = NarrowMaskedFloats;

template <class V, class T>
struct MeanPolicy;
template <class V>
struct MeanPolicy<V, u8> {
  using Form = ByVariant<V, Bytes, Bytes, Bytes, Bytes, WideBytes, RegisterBytes>;
};
template <class V>
struct MeanPolicy<V, u16> {
  using Form = ByVariant<V, Words, Words, Words, Words, WideWords, RegisterWords>;
};
template <class V>
struct MeanPolicy<V, float> {
  using Form = ByVariant<V, Floats, Floats, Floats, Floats, WideFloats, RegisterFloats>;
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
