#pragma once

// Accumulation under a mask: the entries, and which variant adds a row how. Rows never run together.

#include <cstdint>

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/arithmetic/AccumulatePlan.h"
#include "zorvan/primitives/kernels/arithmetic/accumulate_selected.h"
#include "zorvan/primitives/kernels/arithmetic/accumulate_weighted.h"
#include "zorvan/primitives/kernels/common/Arguments.h"
#include "zorvan/primitives/kernels/common/ByVariant.h"

namespace Zorvan::Primitives {
namespace {

template <class V>
using AccumulatePolicy = ByVariant<V, SelectedRow, SelectedRow, SelectedRow, WeightedRow<16, 4>,
                                   WeightedRow<32, 8>, WeightedMaskedRow>;

template <class V, class T>
int accumulate(const T* src, int srcStep, const u8* mask, int maskStep, float* srcDst, int srcDstStep,
               Size roi) {
  if (src == nullptr || mask == nullptr || srcDst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  const int status = testAccumulateSteps<sizeof(T)>({srcStep, maskStep, srcDstStep}, roi.width);
  if (status != ippStsNoErr) return status;
  for (std::int64_t r = 0; r < roi.height; ++r) {
    AccumulatePolicy<V>::template add<FloatSource<T>>(
        rowAt(reinterpret_cast<const unsigned char*>(src), srcStep, r), rowAt(mask, maskStep, r),
        rowAt(reinterpret_cast<unsigned char*>(srcDst), srcDstStep, r), roi.width);
  }
  return ippStsNoErr;
}

}  // namespace

template <class V>
int Routines<V>::ippiAdd_8u32f_C1IMR(const u8* src, int srcStep, const u8* mask, int maskStep, float* srcDst,
                                     int srcDstStep, Size roi) {
  return accumulate<V>(src, srcStep, mask, maskStep, srcDst, srcDstStep, roi);
}
template <class V>
int Routines<V>::ippiAdd_16u32f_C1IMR(const u16* src, int srcStep, const u8* mask, int maskStep,
                                      float* srcDst, int srcDstStep, Size roi) {
  return accumulate<V>(src, srcStep, mask, maskStep, srcDst, srcDstStep, roi);
}
template <class V>
int Routines<V>::ippiAdd_32f_C1IMR(const float* src, int srcStep, const u8* mask, int maskStep, float* srcDst,
                                   int srcDstStep, Size roi) {
  return accumulate<V>(src, srcStep, mask, maskStep, srcDst, srcDstStep, roi);
}

}  // namespace Zorvan::Primitives
