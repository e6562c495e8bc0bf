#pragma once

// Minimum and maximum of a region: the entries, and the search that each variant uses.

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
  using At16 = IntegerExtreme16<seek, T>;
  using At32 = IntegerExtreme32<seek, T>;
  using type = ByVariant<V, At16, At16, At16, At16, At32, At32>;
};
template <class V>
struct ExtremePolicy<V, Seek::maximum, u8> {
  using At16 = IntegerExtreme16<Seek::maximum, u8>;
  using At32 = IntegerExtreme32<Seek::maximum, u8>;
  using Masked = IntegerExtreme32<Seek::maximum, u8, ShortRowsMasked>;
  using type = ByVariant<V, At16, At16, At16, At16, At32, Masked>;
};
template <class V, Seek seek>
struct ExtremePolicy<V, seek, u16> {
  using Signed = WordExtreme16<seek, s16>;
  using Unsigned = WordExtreme16<seek, u16>;
  using At32 = IntegerExtreme32<seek, u16>;
  using type = ByVariant<V, Signed, Signed, Unsigned, Unsigned, At32, At32>;
};
template <class V, Seek seek>
struct ExtremePolicy<V, seek, float> {
  using At16 = FloatExtreme<seek, Vector16>;
  using type =
      ByVariant<V, At16, At16, At16, At16, FloatExtreme<seek, Vector32>, FloatExtreme<seek, Vector64>>;
};

template <class V, Seek seek, class T>
int findExtreme(const T* src, int srcStep, Size roi, T* result) {
  if (src == nullptr || result == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  storeAs(result, ExtremePolicy<V, seek, T>::type::find({src, srcStep}, roi));
  return ippStsNoErr;
}

template <class V>
struct ExtremeBodies {
  static constexpr auto ippiMax_8u_C1R = findExtreme<V, Seek::maximum, u8>;
  static constexpr auto ippiMax_16u_C1R = findExtreme<V, Seek::maximum, u16>;
  static constexpr auto ippiMax_16s_C1R = findExtreme<V, Seek::maximum, s16>;
  static constexpr auto ippiMax_32f_C1R = findExtreme<V, Seek::maximum, float>;
  static constexpr auto ippiMin_8u_C1R = findExtreme<V, Seek::minimum, u8>;
  static constexpr auto ippiMin_16u_C1R = findExtreme<V, Seek::minimum, u16>;
  static constexpr auto ippiMin_16s_C1R = findExtreme<V, Seek::minimum, s16>;
  static constexpr auto ippiMin_32f_C1R = findExtreme<V, Seek::minimum, float>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
