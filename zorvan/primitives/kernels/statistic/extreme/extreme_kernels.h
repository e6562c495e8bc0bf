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

namespace extreme {

template <Seek seek, class T>
using Rows = IntegerExtreme16<ExtremeLanes<seek, T>>;
template <Seek seek>
using Shifted = WordExtreme16<seek, ShiftedWords>;
#ifdef __SSE4_1__
template <Seek seek>
using Plain = WordExtreme16<seek, PlainWords>;
#else
template <Seek seek>
class Plain;
#endif
#ifdef __AVX2__
template <Seek seek, class T>
using Wide = IntegerExtreme32<ExtremeLanes<seek, T>, ShortRowsScalar>;
template <Seek seek>
using Floats32 = FloatExtreme32<seek>;
#else
template <Seek seek, class T>
class Wide;
template <Seek seek>
class Floats32;
#endif
#ifdef __AVX512BW__
using MaximumOfBytes64 = IntegerExtreme32<ExtremeLanes<Seek::maximum, std::uint8_t>, ShortRowsMasked>;
template <Seek seek>
using Floats64 = FloatExtreme64<seek>;
#else
class MaximumOfBytes64;
template <Seek seek>
class Floats64;
#endif
template <Seek seek>
using Floats16 = FloatExtreme16<seek>;

template <class V, Seek seek, class T>
struct Policy;
template <class V>
struct Policy<V, Seek::minimum, u8> {
  using Bytes16 = Rows<Seek::minimum, u8>;
  using Bytes32 = Wide<Seek::minimum, u8>;
  using Form = ByVariant<V, Bytes16, Bytes16, Bytes16, Bytes16, Bytes32, Bytes32>;
};
template <class V>
struct Policy<V, Seek::maximum, u8> {
  using Bytes16 = Rows<Seek::maximum, u8>;
  using Bytes32 = Wide<Seek::maximum, u8>;
  using Form = ByVariant<V, Bytes16, Bytes16, Bytes16, Bytes16, Bytes32, MaximumOfBytes64>;
};
template <class V, Seek seek>
struct Policy<V, seek, u16> {
  using Form =
      ByVariant<V, Shifted<seek>, Shifted<seek>, Plain<seek>, Plain<seek>, Wide<seek, u16>, Wide<seek, u16>>;
};
template <class V, Seek seek>
struct Policy<V, seek, s16> {
  using Form = ByVariant<V, Rows<seek, s16>, Rows<seek, s16>, Rows<seek, s16>, Rows<seek, s16>,
                         Wide<seek, s16>, Wide<seek, s16>>;
};
template <class V, Seek seek>
struct Policy<V, seek, float> {
  using Form = ByVariant<V, Floats16<seek>, Floats16<seek>, Floats16<seek>, Floats16<seek>, Floats32<seek>,
                         Floats64<seek>>;
};

}  // namespace extreme

template <class V, Seek seek, class T>
int findExtreme(const T* src, int srcStep, Size roi, T* result) {
  if (src == nullptr || result == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  storeAs(result, extreme::Policy<V, seek, T>::Form::find(src, srcStep, roi));
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
