#pragma once

// Square, square root and absolute value: the entries, and which variant goes about them how.

#include <cstdint>

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/arithmetic/FloatPlan.h"
#include "zorvan/primitives/kernels/arithmetic/square_frame.h"
#include "zorvan/primitives/kernels/arithmetic/unary_float_rows.h"
#include "zorvan/primitives/kernels/common/Arguments.h"
#include "zorvan/primitives/kernels/common/ByVariant.h"

namespace Zorvan::Primitives {
namespace {

struct Vector32;
struct Vector64;

/// The two images of a call as bytes: pixels may start at any address. In place both are the same.
struct UnaryImages {
  const unsigned char* src;
  int srcStep;
  unsigned char* dst;
  int dstStep;
  bool inPlace;
};

template <class T>
inline UnaryImages unaryImages(const T* src, int srcStep, T* dst, int dstStep) {
  return {reinterpret_cast<const unsigned char*>(src), srcStep, reinterpret_cast<unsigned char*>(dst),
          dstStep, false};
}
template <class T>
inline UnaryImages unaryInPlace(T* srcDst, int step) {
  auto* const pixels = reinterpret_cast<unsigned char*>(srcDst);
  return {pixels, step, pixels, step, true};
}

/// The tests that all entries of the family share, in their order.
inline int testUnary(const UnaryImages& images, Size roi) {
  if (images.src == nullptr || images.dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (images.srcStep < 1 || images.dstStep < 1) return ippStsStepErr;
  return ippStsNoErr;
}

template <class V>
using SquareFloatPolicy = ByVariant<V, SquareByRow, SquareByRow, SquareByRow, SquareFrame<Vector32>,
                                    SquareFrame<Vector32>, SquareFrame<Vector64>>;

template <class V>
int squareFloats(const UnaryImages& images, Size roi) {
  const int status = testUnary(images, roi);
  if (status != ippStsNoErr) return status;
  SquareFloatPolicy<V>::run(images.src, images.srcStep, images.dst, images.dstStep, roi, images.inPlace);
  return ippStsNoErr;
}

/// 16 bytes at a time, whatever the size.
struct AbsoluteByRow {
  template <bool streaming>
  static void row(const unsigned char* src, unsigned char* dst, std::int64_t n) {
    floatsRow16<AbsoluteFloats, 16>(src, dst, n);
  }
  static constexpr bool streams = false;
};

/// 32 bytes at a time, past the cache where the images are large.
struct AbsoluteWide {
#ifdef __AVX__
  template <bool streaming>
  static void row(const unsigned char* src, unsigned char* dst, std::int64_t n) {
    floatsRow32<AbsoluteFloats, streaming>(src, dst, n);
  }
  static constexpr bool streams = true;
#endif
};

template <class V>
using AbsoluteInPlace =
    ByVariant<V, AbsoluteByRow, AbsoluteByRow, AbsoluteByRow, AbsoluteWide, AbsoluteWide, AbsoluteWide>;
template <class V>
using AbsoluteOfTwo =
    ByVariant<V, AbsoluteByRow, AbsoluteByRow, AbsoluteByRow, AbsoluteByRow, AbsoluteWide, AbsoluteWide>;

template <class Form, bool streaming>
void absoluteRows(const UnaryImages& images, Size roi) {
  for (std::int64_t r = 0; r < roi.height; ++r) {
    Form::template row<streaming>(rowAt(images.src, wholePixels(images.srcStep), r),
                                  rowAt(images.dst, wholePixels(images.dstStep), r), roi.width);
  }
  if constexpr (streaming) fenceStores();
}

template <class Form>
int absoluteFloats(const UnaryImages& images, Size roi) {
  const int status = testUnary(images, roi);
  if (status != ippStsNoErr) return status;
  if constexpr (Form::streams) {
    if (!images.inPlace && planStreamedRows(roi)) {
      absoluteRows<Form, true>(images, roi);
      return ippStsNoErr;
    }
  }
  absoluteRows<Form, false>(images, roi);
  return ippStsNoErr;
}

}  // namespace

template <class V>
int Routines<V>::ippiSqr_32f_C1IR(float* srcDst, int srcDstStep, Size roi) {
  return squareFloats<V>(unaryInPlace(srcDst, srcDstStep), roi);
}
template <class V>
int Routines<V>::ippiSqr_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return squareFloats<V>(unaryImages(src, srcStep, dst, dstStep), roi);
}

template <class V>
int Routines<V>::ippiAbs_32f_C1IR(float* srcDst, int srcDstStep, Size roi) {
  return absoluteFloats<AbsoluteInPlace<V>>(unaryInPlace(srcDst, srcDstStep), roi);
}
template <class V>
int Routines<V>::ippiAbs_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return absoluteFloats<AbsoluteOfTwo<V>>(unaryImages(src, srcStep, dst, dstStep), roi);
}

}  // namespace Zorvan::Primitives
