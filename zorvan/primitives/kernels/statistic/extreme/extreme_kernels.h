#pragma once

// Minimum and maximum of a region, and the search that each variant uses.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_floats.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_integers16.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_integers32.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_words16.h"

namespace Zorvan::Primitives::Statistic {
namespace {

template <class V, Seek seek, class T>
struct ExtremePolicy {
  using Rows16 = IntegerExtreme16<seek, T>;
  using Rows32 = IntegerExtreme32<seek, T>;
  using type = ByVariant<V, Rows16, Rows16, Rows16, Rows16, Rows32, Rows32>;
};
template <class V>
struct ExtremePolicy<V, Seek::maximum, u8> {
  using Rows16 = IntegerExtreme16<Seek::maximum, u8>;
  using Rows32 = IntegerExtreme32<Seek::maximum, u8>;
  using Masked = IntegerExtreme32<Seek::maximum, u8, ShortRowsMasked>;
  using type = ByVariant<V, Rows16, Rows16, Rows16, Rows16, Rows32, Masked>;
};
template <class V, Seek seek>
struct ExtremePolicy<V, seek, u16> {
  using Signed = WordExtreme16<seek, s16>;
  using Unsigned = WordExtreme16<seek, u16>;
  using Rows32 = IntegerExtreme32<seek, u16>;
  using type = ByVariant<V, Signed, Signed, Unsigned, Unsigned, Rows32, Rows32>;
};
template <class V, Seek seek>
struct ExtremePolicy<V, seek, float> {
  using Rows16 = FloatExtreme<seek, Vector16>;
  using Rows32 = FloatExtreme<seek, Vector32>;
  using Rows64 = FloatExtreme<seek, Vector64>;
  using type = ByVariant<V, Rows16, Rows16, Rows16, Rows16, Rows32, Rows64>;
};

template <class V, Seek seek, class T>
int findExtreme(const T* src, int srcStep, Size roi, T* result) {
  if (src == nullptr || result == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  storeAs(result, ExtremePolicy<V, seek, T>::type::find({src, srcStep}, roi));
  return ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
