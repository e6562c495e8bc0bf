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

namespace masked {

using Bytes16 = ExtremesByBlock<ByteBlock<Vector16>>;
using Floats16 = ExtremesByRow<FloatRows<Different>>;
using StrictFloats16 = ExtremesByRow<FloatRows<StrictlyBetter>>;
#ifdef __AVX2__
using Bytes32 = ExtremesByBlock<ByteBlock<Vector32>>;
using Floats32 = FloatsInTwoPasses32;
#else
class Bytes32;
class Floats32;
#endif
#ifdef __AVX512BW__
using Bytes64 = ExtremesByBlock<MaskedByteBlock64>;
using Floats64 = FloatsInTwoPasses64;
#else
class Bytes64;
class Floats64;
#endif

template <class V, class T>
struct ExtremePolicy;
template <class V>
struct ExtremePolicy<V, u8> {
  using Form = ByVariant<V, Bytes16, Bytes16, Bytes16, Bytes16, Bytes32, Bytes64>;
};
template <class V>
struct ExtremePolicy<V, float> {
  using Form = ByVariant<V, Floats16, Floats16, Floats16, StrictFloats16, Floats32, Floats64>;
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

template <class V>
struct MaskedExtremeBodies {
  static constexpr auto ippiMinMaxIndx_8u_C1MR = findMaskedExtremes<V, u8>;
  static constexpr auto ippiMinMaxIndx_32f_C1MR = findMaskedExtremes<V, float>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
