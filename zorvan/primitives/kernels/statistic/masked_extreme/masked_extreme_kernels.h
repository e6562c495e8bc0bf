#pragma once

// Extremes of the selected pixels of a region with their positions: the entries, and which variant searches
// how. Every output may be null; what is asked for decides how an empty mask is told.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/masked_arguments.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_bytes.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_rows.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_wide.h"

namespace Zorvan::Primitives {
namespace {

namespace masked {

using NarrowByteExtremes = ExtremesByBlock<ByteBlock<Vector16>>;
using FloatExtremes = ExtremesByRow<FloatRows<Different>>;
using StrictFloatExtremes = ExtremesByRow<FloatRows<StrictlyBetter>>;
#ifdef __AVX2__
using WideByteExtremes = ExtremesByBlock<ByteBlock<Vector32>>;
using WideFloatExtremes = WideMaskedExtremes;
#else
class WideByteExtremes;
class WideFloatExtremes;
#endif
#ifdef __AVX512BW__
using RegisterByteExtremes = ExtremesByBlock<RegisterByteBlock>;
using RegisterFloatExtremes = RegisterMaskedExtremes;
#else
class RegisterByteExtremes;
class RegisterFloatExtremes;
#endif

template <class V, class T>
struct ExtremePolicy;
template <class V>
struct ExtremePolicy<V, u8> {
  using Form = ByVariant<V, NarrowByteExtremes, NarrowByteExtremes, NarrowByteExtremes, NarrowByteExtremes,
                         WideByteExtremes, RegisterByteExtremes>;
};
template <class V>
struct ExtremePolicy<V, float> {
  using Form = ByVariant<V, FloatExtremes, FloatExtremes, FloatExtremes, StrictFloatExtremes,
                         WideFloatExtremes, RegisterFloatExtremes>;
};

}  // namespace masked

template <class V, class T>
int findMaskedExtremes(const T* src, int srcStep, const u8* mask, int maskStep, Size roi, float* minValue,
                       float* maxValue, Point* minIndex, Point* maxIndex) {
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != ippStsNoErr) return status;
  const MaskedExtremes found = masked::ExtremePolicy<V, T>::Form::find(src, srcStep, mask, maskStep, roi);
  if (minValue != nullptr) storeAs(minValue, found.minValue);
  if (maxValue != nullptr) storeAs(maxValue, found.maxValue);
  if (minIndex != nullptr) storeAs(minIndex, found.minIndex);
  if (maxIndex != nullptr) storeAs(maxIndex, found.maxIndex);
  return statusOfExtremes(found, minValue, maxValue, minIndex, maxIndex, mask, maskStep, roi);
}

}  // namespace

template <class V>
int Routines<V>::ippiMinMaxIndx_8u_C1MR(const u8* src, int srcStep, const u8* mask, int maskStep, Size roi,
                                        float* minValue, float* maxValue, Point* minIndex, Point* maxIndex) {
  return findMaskedExtremes<V>(src, srcStep, mask, maskStep, roi, minValue, maxValue, minIndex, maxIndex);
}
template <class V>
int Routines<V>::ippiMinMaxIndx_32f_C1MR(const float* src, int srcStep, const u8* mask, int maskStep,
                                         Size roi, float* minValue, float* maxValue, Point* minIndex,
                                         Point* maxIndex) {
  return findMaskedExtremes<V>(src, srcStep, mask, maskStep, roi, minValue, maxValue, minIndex, maxIndex);
}

}  // namespace Zorvan::Primitives
