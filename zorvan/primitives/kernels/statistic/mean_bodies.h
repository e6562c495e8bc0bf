#pragma once

// The entries of means and deviations.

#include "zorvan/primitives/kernels/statistic/deviation/deviation_kernels.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_kernels.h"
#include "zorvan/primitives/kernels/statistic/mean/mean_kernels.h"

namespace Zorvan::Primitives::Statistic {
namespace {

template <class V>
struct MeanBodies {
  static constexpr auto ippiMean_8u_C1R = mean<ByteSumPolicy<V>, u8>;
  static constexpr auto ippiMean_16u_C1R = mean<WordSumPolicy<V>, u16>;
  static constexpr auto ippiMean_16s_C1R = mean<SignedWordSumPolicy<V>, s16>;
  static constexpr auto ippiMean_32f_C1R = mean<FloatSum<V>, float, int>;

  static constexpr auto ippiMean_8u_C1MR = maskedMean<MaskedBytesPolicy<V>, u8>;
  static constexpr auto ippiMean_16u_C1MR = maskedMean<MaskedWordsPolicy<V>, u16>;
  static constexpr auto ippiMean_32f_C1MR = maskedMean<MaskedFloatsPolicy<V>, float>;

  static constexpr auto ippiMean_StdDev_8u_C1MR = deviationOfBytes<V>;
  static constexpr auto ippiMean_StdDev_32f_C1MR = deviationOfFloats<V>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
