#pragma once

#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/methods/Methods.h"
#include "zorvan/operations/statistic/Statistic.h"
#include "zorvan/primitives/frame/Entries.h"

namespace Zorvan::Ipp::Image::Statistics {

using namespace Primitives;

template <class T>
class IppIStatisticsMin_Src : public Methods::Method_1M_R<T, T> {
 public:
  int Execute(T* src, int srcStep, Size roi) override {
    return ByPixelType{ippiMin_8u_C1R, ippiMin_16u_C1R, ippiMin_16s_C1R, ippiMin_32f_C1R}(src, srcStep, roi,
                                                                                          &this->result);
  }
};

template <class T>
class IppIStatisticsMax_Src : public Methods::Method_1M_R<T, T> {
 public:
  int Execute(T* src, int srcStep, Size roi) override {
    return ByPixelType{ippiMax_8u_C1R, ippiMax_16u_C1R, ippiMax_16s_C1R, ippiMax_32f_C1R}(src, srcStep, roi,
                                                                                          &this->result);
  }
};

template <class T>
class IppIStatsticsMean_Src : public Methods::Method_1M_R<T, double> {
 public:
  int Execute(T* src, int srcStep, Size roi) override {
    const auto accurateMean = [](float* pixels, int step, Size size, double* mean) {
      return ippiMean_32f_C1R(pixels, step, size, mean, 2);
    };
    return ByPixelType{ippiMean_8u_C1R, ippiMean_16u_C1R, ippiMean_16s_C1R, accurateMean}(src, srcStep, roi,
                                                                                          &this->result);
  }
};

template <class T>
class IppIStatisticsMean_Src_Mask : public Methods::Method_2M_R<T, u8, double> {
 public:
  int Execute(T* src, int srcStep, u8* mask, int maskStep, Size roi) override {
    return ByPixelType{ippiMean_8u_C1MR, ippiMean_16u_C1MR, ippiMean_32f_C1MR}(src, srcStep, mask, maskStep,
                                                                               roi, &this->result);
  }
};

template <class T>
class IppMeanStdDev_Src_Dst_MeanStdDev : public Methods::Method_2M_R<T, u8, MeanStdDev> {
 public:
  int Execute(T* src, int srcStep, u8* mask, int maskStep, Size roi) override {
    const auto ofBytes = [](u16* pixels,
                            auto... rest) {  // 16-bit pixels have no entry of their own: see Statistic
      return ippiMean_StdDev_8u_C1MR(reinterpret_cast<u8*>(pixels), rest...);
    };
    return ByPixelType{ippiMean_StdDev_8u_C1MR, ofBytes, ippiMean_StdDev_32f_C1MR}(
        src, srcStep, mask, maskStep, roi, &this->result.Mean, &this->result.StdDev);
  }
};

template <class T>
class IppIMinMaxIndex_Src_Mask_MinMaxIndex : public Methods::Method_2M_R<T, u8, MinMaxIndex> {
 public:
  int Execute(T* src, int srcStep, u8* mask, int maskStep, Size roi) override {
    auto& found = this->result;
    return ByPixelType{ippiMinMaxIndx_8u_C1MR, ippiMinMaxIndx_32f_C1MR}(
        src, srcStep, mask, maskStep, roi, &found.Min, &found.Max, &found.MinIndex, &found.MaxIndex);
  }
};

}  // namespace Zorvan::Ipp::Image::Statistics
