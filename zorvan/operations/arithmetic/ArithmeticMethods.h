#pragma once

#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/methods/Methods.h"
#include "zorvan/primitives/frame/Entries.h"

namespace Zorvan::Ipp::Image::Arithmetics {

using namespace Primitives;

/// All Method classes pass this to the entries of integers: results are not scaled.
inline constexpr int scaleFactor = 0;

/// Calls an entry of floats, which has no scale factor, with the arguments of an entry of integers.
template <class... Parameters>
class Unscaled {
 public:
  constexpr Unscaled(int (*entry)(Parameters...)) : entry_(entry) {}
  int operator()(Parameters... parameters, int) const { return entry_(parameters...); }

 private:
  int (*entry_)(Parameters...);
};

template <class T>
class IppIArithmeticAdd_Src1_Src2_Dst : public Methods::Method_3M<T, T, T> {
 public:
  int Execute(T* src1, int src1Step, T* src2, int src2Step, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiAdd_8u_C1RSfs, ippiAdd_16u_C1RSfs, ippiAdd_16s_C1RSfs, Unscaled(ippiAdd_32f_C1R)}(
        src1, src1Step, src2, src2Step, dst, dstStep, roi, scaleFactor);
  }
};

template <class T>
class IppIArithmeticAdd_Src_SrcDst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* srcDst, int srcDstStep, Size roi) override {
    return ByPixelType{ippiAdd_8u_C1IRSfs, ippiAdd_16u_C1IRSfs, ippiAdd_16s_C1IRSfs,
                       Unscaled(ippiAdd_32f_C1IR)}(src, srcStep, srcDst, srcDstStep, roi, scaleFactor);
  }
};

template <class T>
class IppIAddC : public Methods::Method_1M<T> {
 public:
  explicit IppIAddC(T addend) : value(addend) {}

  int Execute(T* image, int step, Size roi) override {
    return ByPixelType{ippiAddC_8u_C1IRSfs, ippiAddC_16u_C1IRSfs, ippiAddC_16s_C1IRSfs,
                       Unscaled(ippiAddC_32f_C1IR)}(value, image, step, roi, scaleFactor);
  }

 private:
  T value;
};

// The first source is the subtrahend of a difference and the divisor of a quotient.

template <class T>
class IppISubtract_Src1_Src2_Dst : public Methods::Method_3M<T, T, T> {
 public:
  int Execute(T* src1, int src1Step, T* src2, int src2Step, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiSub_8u_C1RSfs, ippiSub_16u_C1RSfs, ippiSub_16s_C1RSfs, Unscaled(ippiSub_32f_C1R)}(
        src1, src1Step, src2, src2Step, dst, dstStep, roi, scaleFactor);
  }
};

template <class T>
class IppISubtract_Src_SrcDst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* srcDst, int srcDstStep, Size roi) override {
    return ByPixelType{ippiSub_8u_C1IRSfs, ippiSub_16u_C1IRSfs, ippiSub_16s_C1IRSfs,
                       Unscaled(ippiSub_32f_C1IR)}(src, srcStep, srcDst, srcDstStep, roi, scaleFactor);
  }
};

template <class T>
class IppIArithmeticMultiply_Src1_Src2_Dst : public Methods::Method_3M<T, T, T> {
 public:
  int Execute(T* src1, int src1Step, T* src2, int src2Step, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiMul_8u_C1RSfs, ippiMul_16u_C1RSfs, ippiMul_16s_C1RSfs, Unscaled(ippiMul_32f_C1R)}(
        src1, src1Step, src2, src2Step, dst, dstStep, roi, scaleFactor);
  }
};

template <class T>
class IppIArithmeticMultiply_Src_SrcDst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* srcDst, int srcDstStep, Size roi) override {
    return ByPixelType{ippiMul_8u_C1IRSfs, ippiMul_16u_C1IRSfs, ippiMul_16s_C1IRSfs,
                       Unscaled(ippiMul_32f_C1IR)}(src, srcStep, srcDst, srcDstStep, roi, scaleFactor);
  }
};

template <class T>
class IppIArithmeticDivide_Src1_Src2_Dst : public Methods::Method_3M<T, T, T> {
 public:
  int Execute(T* src1, int src1Step, T* src2, int src2Step, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiDiv_8u_C1RSfs, ippiDiv_16u_C1RSfs, ippiDiv_16s_C1RSfs, Unscaled(ippiDiv_32f_C1R)}(
        src1, src1Step, src2, src2Step, dst, dstStep, roi, scaleFactor);
  }
};

/// There is no quotient of 16-bit pixels in place.
template <class T>
class IppIArithmeticDivide_Src_SrcDst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* srcDst, int srcDstStep, Size roi) override {
    return ByPixelType{ippiDiv_8u_C1IRSfs, Unscaled(ippiDiv_32f_C1IR)}(src, srcStep, srcDst, srcDstStep, roi,
                                                                       scaleFactor);
  }
};

template <class T>
class IppIArithmeticSquare_Src_Dst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiSqr_8u_C1RSfs, ippiSqr_16u_C1RSfs, ippiSqr_16s_C1RSfs, Unscaled(ippiSqr_32f_C1R)}(
        src, srcStep, dst, dstStep, roi, scaleFactor);
  }
};

template <class T>
class IppIArithmeticSquare_SrcDst : public Methods::Method_1M<T> {
 public:
  int Execute(T* image, int step, Size roi) override {
    return ByPixelType{ippiSqr_8u_C1IRSfs, ippiSqr_16u_C1IRSfs, ippiSqr_16s_C1IRSfs,
                       Unscaled(ippiSqr_32f_C1IR)}(image, step, roi, scaleFactor);
  }
};

template <class T>
class IppIArithmeticSquareRoot_Src_Dst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiSqrt_8u_C1RSfs, ippiSqrt_16u_C1RSfs, ippiSqrt_16s_C1RSfs,
                       Unscaled(ippiSqrt_32f_C1R)}(src, srcStep, dst, dstStep, roi, scaleFactor);
  }
};

template <class T>
class IppIArithmeticSquareRoot_SrcDst : public Methods::Method_1M<T> {
 public:
  int Execute(T* image, int step, Size roi) override {
    return ByPixelType{ippiSqrt_8u_C1IRSfs, ippiSqrt_16u_C1IRSfs, ippiSqrt_16s_C1IRSfs,
                       Unscaled(ippiSqrt_32f_C1IR)}(image, step, roi, scaleFactor);
  }
};

// Only floats have an absolute value.

template <class T>
class IppIArithmeticAbsolute_Src_Dst : public Methods::Method_2M<T, T> {
 public:
  int Execute(T* src, int srcStep, T* dst, int dstStep, Size roi) override {
    return ByPixelType{ippiAbs_32f_C1R}(src, srcStep, dst, dstStep, roi);
  }
};

template <class T>
class IppIArithmeticAbsolute_SrcDst : public Methods::Method_1M<T> {
 public:
  int Execute(T* image, int step, Size roi) override {
    return ByPixelType{ippiAbs_32f_C1IR}(image, step, roi);
  }
};

/// The accumulator is a float image for every source.
template <class T>
class IppIArithmeticAdd_Src_Mask_SrcDst : public Methods::Method_3M<T, u8, float> {
 public:
  int Execute(T* src, int srcStep, u8* mask, int maskStep, float* srcDst, int srcDstStep, Size roi) override {
    return ByPixelType{ippiAdd_8u32f_C1IMR, ippiAdd_16u32f_C1IMR, ippiAdd_32f_C1IMR}(
        src, srcStep, mask, maskStep, srcDst, srcDstStep, roi);
  }
};

}  // namespace Zorvan::Ipp::Image::Arithmetics
