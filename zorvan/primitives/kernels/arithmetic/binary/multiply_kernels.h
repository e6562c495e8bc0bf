#pragma once

// Products of images: the entries. An integer form in place is the form of three images with one of them as
// both second source and destination; the float form in place has rows of its own.

#include "zorvan/primitives/kernels/arithmetic/binary/float_kernels.h"
#include "zorvan/primitives/kernels/arithmetic/binary/scaled_kernels.h"

namespace Zorvan::Primitives {

#define SCALED(code, T)                                                                                      \
  template <class V>                                                                                         \
  int Routines<V>::ippiMul_##code##_C1RSfs(const T* src1, int src1Step, const T* src2, int src2Step, T* dst, \
                                           int dstStep, Size roi, int scaleFactor) {                         \
    return scaledImage<V, Product<T>>(ImageSource<T>{src1, src1Step}, ImageSource<T>{src2, src2Step}, dst,   \
                                      dstStep, roi, scaleFactor);                                            \
  }                                                                                                          \
  template <class V>                                                                                         \
  int Routines<V>::ippiMul_##code##_C1IRSfs(const T* src, int srcStep, T* srcDst, int srcDstStep, Size roi,  \
                                            int scaleFactor) {                                               \
    return ippiMul_##code##_C1RSfs(src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi, scaleFactor);  \
  }
SCALED(8u, u8)
SCALED(16u, u16)
SCALED(16s, s16)
#undef SCALED

template <class V>
int Routines<V>::ippiMul_32f_C1R(const float* src1, int src1Step, const float* src2, int src2Step, float* dst,
                                 int dstStep, Size roi) {
  return floatImage<FloatPolicy<V>, FloatProduct>(ImageSource<float>{src1, src1Step},
                                                  ImageSource<float>{src2, src2Step}, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiMul_32f_C1IR(const float* src, int srcStep, float* srcDst, int srcDstStep, Size roi) {
  return floatImage<FloatInPlacePolicy<V>, FloatProduct>(
      ImageSource<float>{src, srcStep}, ImageSource<float>{srcDst, srcDstStep}, srcDst, srcDstStep, roi);
}

}  // namespace Zorvan::Primitives
