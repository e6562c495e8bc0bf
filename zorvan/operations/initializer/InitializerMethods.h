#pragma once

#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/methods/Methods.h"
#include "zorvan/primitives/frame/Entries.h"

namespace Zorvan::Ipp::Image::Initializers {

using namespace Primitives;

template <class T>
class IppISetMethod_SrcDst : public Methods::Method_1M<T> {
 public:
  explicit IppISetMethod_SrcDst(T fillValue) : value(fillValue) {}

  int Execute(T* image, int step, Size roi) override {
    return ByPixelType{ippiSet_8u_C1R, ippiSet_16u_C1R, ippiSet_16s_C1R, ippiSet_32s_C1R, ippiSet_32f_C1R}(
        value, image, step, roi);
  }

 private:
  T value;
};

template <class T>
class IppISetMethod_SrcDst_Mask : public Methods::Method_2M<T, u8> {
 public:
  explicit IppISetMethod_SrcDst_Mask(T fillValue) : value(fillValue) {}

  int Execute(T* image, int step, u8* mask, int maskStep, Size roi) override {
    return ByPixelType{ippiSet_8u_C1MR, ippiSet_16u_C1MR, ippiSet_16s_C1MR, ippiSet_32s_C1MR,
                       ippiSet_32f_C1MR}(value, image, step, roi, mask, maskStep);
  }

 private:
  T value;
};

template <class T>
class IppICopyMethod_Src_Dst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiCopy_8u_C1R, ippiCopy_16u_C1R, ippiCopy_16s_C1R, ippiCopy_32s_C1R,
                       ippiCopy_32f_C1R}(src, srcStep, dst, dstStep, roi);
  }
};

template <class T>
class IppICopyMethod_Src_Dst_Mask : public Methods::Method_3M<T, T, u8> {
 public:
  int Execute(T* src, int srcStep, T* dst, int dstStep, u8* mask, int maskStep, Size roi) override {
    return ByPixelType{ippiCopy_8u_C1MR, ippiCopy_16u_C1MR, ippiCopy_16s_C1MR, ippiCopy_32s_C1MR,
                       ippiCopy_32f_C1MR}(src, srcStep, dst, dstStep, roi, mask, maskStep);
  }
};

}  // namespace Zorvan::Ipp::Image::Initializers

namespace Zorvan::Ipp::Image::Initializations {

template <class T1, class T2>
class Convert : public Methods::Method_2M<T1, T2> {
 public:
  int Execute(T1* src, int srcStep, T2* dst, int dstStep, Size roi) override {
    using namespace Primitives;
    return ByPixelType{ippiConvert_32s32f_C1R, ippiConvert_32s8u_C1R}(src, srcStep, dst, dstStep, roi);
  }
};

}  // namespace Zorvan::Ipp::Image::Initializations
