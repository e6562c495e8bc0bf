#pragma once

#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/methods/Methods.h"
#include "zorvan/primitives/frame/Entries.h"

// Only 8-bit pixels have entries: every other type yields -59.

namespace Zorvan::Ipp::Image::Logicals {

using namespace Primitives;

template <class T>
class IppILogicalNot_SrcDst : public Methods::Method_1M<T> {
 public:
  int Execute(T* srcDst, int step, Size roi) override {
    return ByPixelType{ippiNot_8u_C1IR}(srcDst, step, roi);
  }
};

template <class T>
class IppILogicalNot_Src_Dst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiNot_8u_C1R}(src, srcStep, dst, dstStep, roi);
  }
};

template <class T>
class IppILogicalXor_Src_SrcDst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* srcDst, int srcDstStep, Size roi) override {
    return ByPixelType{ippiXor_8u_C1IR}(src, srcStep, srcDst, srcDstStep, roi);
  }
};

template <class T>
class IppILogicalXor_Src1_Src2_Dst : public Methods::Method_3M<T, T, T> {
 public:
  int Execute(T* src1, int src1Step, T* src2, int src2Step, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiXor_8u_C1R}(src1, src1Step, src2, src2Step, dst, dstStep, roi);
  }
};

template <class T>
class IppILogicalOr_Src_SrcDst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* srcDst, int srcDstStep, Size roi) override {
    return ByPixelType{ippiOr_8u_C1IR}(src, srcStep, srcDst, srcDstStep, roi);
  }
};

template <class T>
class IppILogicalOr_Src1_Src2_Dst : public Methods::Method_3M<T, T, T> {
 public:
  int Execute(T* src1, int src1Step, T* src2, int src2Step, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiOr_8u_C1R}(src1, src1Step, src2, src2Step, dst, dstStep, roi);
  }
};

template <class T>
class IppILogicalAnd_Src_SrcDst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* srcDst, int srcDstStep, Size roi) override {
    return ByPixelType{ippiAnd_8u_C1IR}(src, srcStep, srcDst, srcDstStep, roi);
  }
};

template <class T>
class IppILogicalAnd_Src1_Src2_Dst : public Methods::Method_3M<T, T, T> {
 public:
  int Execute(T* src1, int src1Step, T* src2, int src2Step, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiAnd_8u_C1R}(src1, src1Step, src2, src2Step, dst, dstStep, roi);
  }
};

}  // namespace Zorvan::Ipp::Image::Logicals
