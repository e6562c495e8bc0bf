#pragma once

// The functions of the entries for extremes.

#include "zorvan/primitives/kernels/statistic/extreme/extreme_kernels.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_kernels.h"

namespace Zorvan::Primitives::Statistic {
namespace {

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

  static constexpr auto ippiMinMaxIndx_8u_C1MR = findMaskedExtremes<V, u8>;
  static constexpr auto ippiMinMaxIndx_32f_C1MR = findMaskedExtremes<V, float>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
