#include "zorvan/operations/statistic/Statistic.h"

#include <emmintrin.h>

#include <type_traits>

#include "zorvan/operations/statistic/StatisticMethods.h"

namespace Zorvan::Ipp::Image {

using namespace Statistics;
using Methods::over;
using Methods::Run;

namespace {

/// A mean as a pixel: rounded to a float; for integers truncated, of which the low bits are kept. The
/// processor's conversion is defined for every double, with 0x80000000 for values that do not fit; that of
/// the language is not.
template <class T>
T pixelOf(double mean) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(mean);
  } else {
    return static_cast<T>(_mm_cvttsd_si32(_mm_set_sd(mean)));
  }
}

}  // namespace

template <class T>
T Statistic<T>::Min(IppIMemory<T>& image, Rect rect) {
  return Run<IppIStatisticsMin_Src<T>>(over(image), rect);
}

template <class T>
T Statistic<T>::Max(IppIMemory<T>& image, Rect rect) {
  return Run<IppIStatisticsMax_Src<T>>(over(image), rect);
}

template <class T>
T Statistic<T>::Mean(IppIMemory<T>& image, Rect rect) {
  return pixelOf<T>(Run<IppIStatsticsMean_Src<T>>(over(image), rect));
}

template <class T>
T Statistic<T>::Mean(IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect) {
  return pixelOf<T>(Run<IppIStatisticsMean_Src_Mask<T>>(over(image, mask), rect));
}

template <class T>
MeanStdDev Statistic<T>::MeanAndStandardDeviationWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask,
                                                          Rect rect) {
  return Run<IppMeanStdDev_Src_Dst_MeanStdDev<T>>(over(image, mask), rect);
}

template <class T>
MinMaxIndex Statistic<T>::MinMaxIndexWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask) {
  return MinMaxIndexWithMask(image, mask, image.SizeToRoi());
}

template <class T>
MinMaxIndex Statistic<T>::MinMaxIndexWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect) {
  return Run<IppIMinMaxIndex_Src_Mask_MinMaxIndex<T>>(over(image, mask), rect);
}

template <class T>
Statistic<T>& Statistic<T>::operator=(const Statistic&) {
  return *this;
}
template <class T>
Statistic<T>& Statistic<T>::operator=(Statistic&&) {
  return *this;
}

template class ZORVAN_IPP_API Statistic<u8>;
template class ZORVAN_IPP_API Statistic<u16>;
template class ZORVAN_IPP_API Statistic<float>;

}  // namespace Zorvan::Ipp::Image
