#pragma once

// Sums, differences and products of images, and sums with a constant: the entries. In differences the first
// source is the subtrahend.

#include "zorvan/primitives/kernels/arithmetic/binary/float_kernels.h"
#include "zorvan/primitives/kernels/arithmetic/binary/scaled_kernels.h"

namespace Zorvan::Primitives::Arithmetic {
namespace {

template <class V, class Op>
int scaled(const PixelOf<Op>* src1, int src1Step, const PixelOf<Op>* src2, int src2Step, PixelOf<Op>* dst,
           int dstStep, Size roi, int scaleFactor) {
  if (src1 == nullptr || src2 == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  using Source = ImageSource<PixelOf<Op>>;
  scaledRows<V, Op>(Source{src1, src1Step}, Source{src2, src2Step}, dst, dstStep, roi, scaleFactor);
  return ippStsNoErr;
}
template <class V, class Op>
int scaledInPlace(const PixelOf<Op>* src, int srcStep, PixelOf<Op>* srcDst, int srcDstStep, Size roi,
                  int scaleFactor) {
  return scaled<V, Op>(src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi, scaleFactor);
}

/// Adding 0 without scaling leaves the image untouched. A constant above 0 that is scaled far up makes every
/// unsigned sum the highest value.
template <class V, class T>
int addConstant(T value, T* srcDst, int srcDstStep, Size roi, int scaleFactor) {
  if (srcDst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (scaleFactor == 0 && value == 0) return ippStsNoErr;
  const bool signOnly = planScaling(scalingLimitsOf<Sum<T>>(), scaleFactor) == Scaling::signOnly;
  if (!std::is_signed_v<T> && signOnly && value != 0) {
    return fillWith<V>(highest<T>, srcDst, srcDstStep, roi);
  }
  scaledRows<V, Sum<T>>(ConstantSource<T>{value}, ImageSource<T>{srcDst, srcDstStep}, srcDst, srcDstStep, roi,
                        scaleFactor);
  return ippStsNoErr;
}

template <class Policy, class Op>
int floats(const float* src1, int src1Step, const float* src2, int src2Step, float* dst, int dstStep,
           Size roi) {
  if (src1 == nullptr || src2 == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  using Source = ImageSource<float>;
  Policy::template run<Op>(rowImages(Source{src1, src1Step}, Source{src2, src2Step}, dst, dstStep, roi));
  return ippStsNoErr;
}
template <class Policy, class Op>
int floatsInPlace(const float* src, int srcStep, float* srcDst, int srcDstStep, Size roi) {
  return floats<Policy, Op>(src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi);
}
template <class V>
int addFloatConstant(float value, float* srcDst, int srcDstStep, Size roi) {
  if (srcDst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  FloatConstantPolicy<V>::template run<FloatSum>(rowImages(
      ConstantSource<float>{value}, ImageSource<float>{srcDst, srcDstStep}, srcDst, srcDstStep, roi));
  return ippStsNoErr;
}

// Only the sum of three images streams, and only forms in place prefetch.
template <class V>
struct Bodies {
  static constexpr auto ippiMul_8u_C1IRSfs = scaledInPlace<V, Product<u8>>;
  static constexpr auto ippiMul_16u_C1IRSfs = scaledInPlace<V, Product<u16>>;
  static constexpr auto ippiMul_16s_C1IRSfs = scaledInPlace<V, Product<s16>>;
  static constexpr auto ippiMul_32f_C1IR = floatsInPlace<FloatInPlacePolicy<V>, FloatProduct>;
  static constexpr auto ippiMul_8u_C1RSfs = scaled<V, Product<u8>>;
  static constexpr auto ippiMul_16u_C1RSfs = scaled<V, Product<u16>>;
  static constexpr auto ippiMul_16s_C1RSfs = scaled<V, Product<s16>>;
  static constexpr auto ippiMul_32f_C1R = floats<FloatPolicy<V>, FloatProduct>;

  static constexpr auto ippiSub_8u_C1IRSfs = scaledInPlace<V, Difference<u8>>;
  static constexpr auto ippiSub_16u_C1IRSfs = scaledInPlace<V, Difference<u16>>;
  static constexpr auto ippiSub_16s_C1IRSfs = scaledInPlace<V, Difference<s16>>;
  static constexpr auto ippiSub_32f_C1IR = floatsInPlace<FloatInPlacePolicy<V>, FloatDifference>;
  static constexpr auto ippiSub_8u_C1RSfs = scaled<V, Difference<u8>>;
  static constexpr auto ippiSub_16u_C1RSfs = scaled<V, Difference<u16>>;
  static constexpr auto ippiSub_16s_C1RSfs = scaled<V, Difference<s16>>;
  static constexpr auto ippiSub_32f_C1R = floats<FloatPolicy<V>, FloatDifference>;

  static constexpr auto ippiAddC_8u_C1IRSfs = addConstant<V, u8>;
  static constexpr auto ippiAddC_16u_C1IRSfs = addConstant<V, u16>;
  static constexpr auto ippiAddC_16s_C1IRSfs = addConstant<V, s16>;
  static constexpr auto ippiAddC_32f_C1IR = addFloatConstant<V>;

  static constexpr auto ippiAdd_8u_C1IRSfs = scaledInPlace<V, Sum<u8>>;
  static constexpr auto ippiAdd_16u_C1IRSfs = scaledInPlace<V, Sum<u16>>;
  static constexpr auto ippiAdd_16s_C1IRSfs = scaledInPlace<V, Sum<s16>>;
  static constexpr auto ippiAdd_32f_C1IR = floatsInPlace<FloatInPlacePolicy<V>, FloatSum>;
  static constexpr auto ippiAdd_8u_C1RSfs = scaled<V, Sum<u8>>;
  static constexpr auto ippiAdd_16u_C1RSfs = scaled<V, Sum<u16>>;
  static constexpr auto ippiAdd_16s_C1RSfs = scaled<V, Sum<s16>>;
  static constexpr auto ippiAdd_32f_C1R = floats<FloatSumPolicy<V>, FloatSum>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
