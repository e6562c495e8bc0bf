#pragma once

// Minimum and maximum of a region: the entries, and which variant searches how.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_floats.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_rows.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_wide.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_words.h"

namespace Zorvan::Primitives {
namespace {

namespace extreme {

template <Seek seek, class T>
using Rows = RowExtreme<ExtremeLanes<seek, T>>;
template <Seek seek>
using Shifted = WordExtreme<seek, ShiftedWords>;
#ifdef __SSE4_1__
template <Seek seek>
using Plain = WordExtreme<seek, PlainWords>;
#else
template <Seek seek>
class Plain;
#endif
#ifdef __AVX2__
template <Seek seek, class T>
using Wide = WideExtreme<ExtremeLanes<seek, T>, ShortRowsScalar>;
template <Seek seek>
using WideFloats = WideFloatExtreme<seek>;
#else
template <Seek seek, class T>
class Wide;
template <Seek seek>
class WideFloats;
#endif
#ifdef __AVX512BW__
using WideMaximumOfBytes = WideExtreme<ExtremeLanes<Seek::maximum, std::uint8_t>, ShortRowsMasked>;
template <Seek seek>
using RegisterFloats = RegisterFloatExtreme<seek>;
#else
class WideMaximumOfBytes;
template <Seek seek>
class RegisterFloats;
#endif
template <Seek seek>
using NarrowFloats = NarrowFloatExtreme<seek>;

template <class V, Seek seek, class T>
struct Policy;
template <class V>
struct Policy<V, Seek::minimum, u8> {
  using Rows8 = Rows<Seek::minimum, u8>;
  using Wide8 = Wide<Seek::minimum, u8>;
  using Form = ByVariant<V, Rows8, Rows8, Rows8, Rows8, Wide8, Wide8>;
};
template <class V>
struct Policy<V, Seek::maximum, u8> {
  using Rows8 = Rows<Seek::maximum, u8>;
  using Wide8 = Wide<Seek::maximum, u8>;
  using Form = ByVariant<V, Rows8, Rows8, Rows8, Rows8, Wide8, WideMaximumOfBytes>;
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
  using Form = ByVariant<V, NarrowFloats<seek>, NarrowFloats<seek>, NarrowFloats<seek>, NarrowFloats<seek>,
                         WideFloats<seek>, RegisterFloats<seek>>;
};

}  // namespace extreme

template <class V, Seek seek, class T>
int findExtreme(const T* src, int srcStep, Size roi, T* result) {
  if (src == nullptr || result == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  storeAs(result, extreme::Policy<V, seek, T>::Form::find(src, srcStep, roi));
  return ippStsNoErr;
}

}  // namespace

#define EXTREMES(code, T)                                                                 \
  template <class V>                                                                      \
  int Routines<V>::ippiMin_##code##_C1R(const T* src, int srcStep, Size roi, T* result) { \
    return findExtreme<V, Seek::minimum>(src, srcStep, roi, result);                      \
  }                                                                                       \
  template <class V>                                                                      \
  int Routines<V>::ippiMax_##code##_C1R(const T* src, int srcStep, Size roi, T* result) { \
    return findExtreme<V, Seek::maximum>(src, srcStep, roi, result);                      \
  }
EXTREMES(8u, u8)
EXTREMES(16u, u16)
EXTREMES(16s, s16)
EXTREMES(32f, float)
#undef EXTREMES

}  // namespace Zorvan::Primitives
