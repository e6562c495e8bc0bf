#pragma once

// Extremes of the selected pixels of a region with their positions: the entries, and the search that each
// variant uses. Every output may be null; those that are not decide the status of an empty mask.

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
  template <class Vector>
  using With = ExtremesByBlock<ByteBlock<Vector>>;
  using With16 = With<Vector16>;
  using type = ByVariant<V, With16, With16, With16, With16, With<Vector32>, With<Vector64>>;
};
template <class V>
struct MaskedExtremePolicy<V, float> {
  template <class Vector>
  using With = ExtremesInTwoPasses<SelectedFloats<Vector>>;
  using ByRow = FloatExtremesByRow<Different>;
  using ByRowStrictly = FloatExtremesByRow<StrictlyBetter>;
  using type = ByVariant<V, ByRow, ByRow, ByRow, ByRowStrictly, With<Vector32>, With<Vector64>>;
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

template <class V>
struct MaskedExtremeBodies {
  static constexpr auto ippiMinMaxIndx_8u_C1MR = findMaskedExtremes<V, u8>;
  static constexpr auto ippiMinMaxIndx_32f_C1MR = findMaskedExtremes<V, float>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
