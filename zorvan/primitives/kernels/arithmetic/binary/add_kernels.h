#pragma once

// Sums and differences of images, and sums with a constant: the entries. In differences the first source is
// the subtrahend.

#include "zorvan/primitives/kernels/arithmetic/binary/float_kernels.h"
#include "zorvan/primitives/kernels/arithmetic/binary/scaled_kernels.h"

namespace Zorvan::Primitives {
namespace {

/// Adding 0 without scaling leaves the image untouched. A constant above 0 that is scaled far up makes every
/// unsigned sum the highest value.
template <class V, class T>
int addConstant(T value, T* srcDst, int srcDstStep, Size roi, int f) {
  if (srcDst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (f == 0 && value == 0) return ippStsNoErr;
  const bool signOnly = planScaling(scalingLimitsOf<Sum<T>>(), f) == Scaling::signOnly;
  if (!std::is_signed_v<T> && signOnly && value != 0) {
    return fillWith<V>(highest<T>, srcDst, srcDstStep, roi);
  }
  scaledRows<V, Sum<T>>(ConstantSource<T>{value}, ImageSource<T>{srcDst, srcDstStep}, srcDst, srcDstStep, roi,
                        f);
  return ippStsNoErr;
}

}  // namespace

#define SCALED(Operation, op, code, T)                                                                       \
  template <class V>                                                                                         \
  int Routines<V>::ippi##op##_##code##_C1RSfs(const T* src1, int src1Step, const T* src2, int src2Step,      \
                                              T* dst, int dstStep, Size roi, int scaleFactor) {              \
    return scaledImage<V, Operation<T>>(ImageSource<T>{src1, src1Step}, ImageSource<T>{src2, src2Step}, dst, \
                                        dstStep, roi, scaleFactor);                                          \
  }                                                                                                          \
  template <class V>                                                                                         \
  int Routines<V>::ippi##op##_##code##_C1IRSfs(const T* src, int srcStep, T* srcDst, int srcDstStep,         \
                                               Size roi, int scaleFactor) {                                  \
    return scaledImage<V, Operation<T>>(ImageSource<T>{src, srcStep}, ImageSource<T>{srcDst, srcDstStep},    \
                                        srcDst, srcDstStep, roi, scaleFactor);                               \
  }
SCALED(Sum, Add, 8u, u8)
SCALED(Sum, Add, 16u, u16)
SCALED(Sum, Add, 16s, s16)
SCALED(Difference, Sub, 8u, u8)
SCALED(Difference, Sub, 16u, u16)
SCALED(Difference, Sub, 16s, s16)
#undef SCALED

#define CONSTANT(code, T)                                                                  \
  template <class V>                                                                       \
  int Routines<V>::ippiAddC_##code##_C1IRSfs(T value, T* srcDst, int srcDstStep, Size roi, \
                                             int scaleFactor) {                            \
    return addConstant<V>(value, srcDst, srcDstStep, roi, scaleFactor);                    \
  }
CONSTANT(8u, u8)
CONSTANT(16u, u16)
CONSTANT(16s, s16)
#undef CONSTANT

template <class V>
int Routines<V>::ippiAdd_32f_C1R(const float* src1, int src1Step, const float* src2, int src2Step, float* dst,
                                 int dstStep, Size roi) {
  return floatImage<FloatSumPolicy<V>, FloatSum>(ImageSource<float>{src1, src1Step},
                                                 ImageSource<float>{src2, src2Step}, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiSub_32f_C1R(const float* src1, int src1Step, const float* src2, int src2Step, float* dst,
                                 int dstStep, Size roi) {
  return floatImage<FloatPolicy<V>, FloatDifference>(ImageSource<float>{src1, src1Step},
                                                     ImageSource<float>{src2, src2Step}, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiAdd_32f_C1IR(const float* src, int srcStep, float* srcDst, int srcDstStep, Size roi) {
  return floatImage<FloatInPlacePolicy<V>, FloatSum>(
      ImageSource<float>{src, srcStep}, ImageSource<float>{srcDst, srcDstStep}, srcDst, srcDstStep, roi);
}
template <class V>
int Routines<V>::ippiSub_32f_C1IR(const float* src, int srcStep, float* srcDst, int srcDstStep, Size roi) {
  return floatImage<FloatInPlacePolicy<V>, FloatDifference>(
      ImageSource<float>{src, srcStep}, ImageSource<float>{srcDst, srcDstStep}, srcDst, srcDstStep, roi);
}
template <class V>
int Routines<V>::ippiAddC_32f_C1IR(float value, float* srcDst, int srcDstStep, Size roi) {
  return floatImage<FloatConstantPolicy<V>, FloatSum>(
      ConstantSource<float>{value}, ImageSource<float>{srcDst, srcDstStep}, srcDst, srcDstStep, roi);
}

}  // namespace Zorvan::Primitives
