#pragma once

// Extremes of the selected pixels of a region with their positions, and the search that each variant uses.
// Every output may be null; those that are not decide the status of an empty mask.

#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/masked_arguments.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_bytes.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_float_rows.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_two_passes.h"

namespace Zorvan::Primitives::Statistic {
namespace {

template <class V, class T>
struct MaskedExtremePolicy;
template <class V>
struct MaskedExtremePolicy<V, u8> {
  using Blocks16 = ExtremesByBlock<ByteBlock<Vector16>>;
  using Blocks32 = ExtremesByBlock<ByteBlock<Vector32>>;
  using Blocks64 = ExtremesByBlock<ByteBlock<Vector64>>;
  using type = ByVariant<V, Blocks16, Blocks16, Blocks16, Blocks16, Blocks32, Blocks64>;
};
template <class V>
struct MaskedExtremePolicy<V, float> {
  using Rows = FloatExtremesByRow<Different>;
  using StrictRows = FloatExtremesByRow<StrictlyBetter>;
  using TwoPasses32 = ExtremesInTwoPasses<SelectedFloats<Vector32>>;
  using TwoPasses64 = ExtremesInTwoPasses<SelectedFloats<Vector64>>;
  using type = ByVariant<V, Rows, Rows, Rows, StrictRows, TwoPasses32, TwoPasses64>;
};

template <class V, class T>
int findMaskedExtremes(const T* src, int srcStep, const u8* mask, int maskStep, Size roi, float* minValue,
                       float* maxValue, Point* minIndex, Point* maxIndex) {
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != ippStsNoErr) return status;
  const Plane<const u8> selection{mask, maskStep};
  const MaskedExtremes found = MaskedExtremePolicy<V, T>::type::find({src, srcStep}, selection, roi);
  if (minValue != nullptr) storeAs(minValue, found.minValue);
  if (maxValue != nullptr) storeAs(maxValue, found.maxValue);
  if (minIndex != nullptr) storeAs(minIndex, found.minIndex);
  if (maxIndex != nullptr) storeAs(maxIndex, found.maxIndex);
  return statusOfExtremes(found, minValue, maxValue, minIndex, maxIndex, selection, roi);
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
