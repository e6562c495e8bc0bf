#pragma once

// Square, square root and absolute value of floats: the entries, and which variant goes about them how.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/arithmetic/unary/root_floats.h"
#include "zorvan/primitives/kernels/arithmetic/unary/square_frame.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_float_rows.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_images.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_plan.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"

namespace Zorvan::Primitives {
namespace {

using Ipp::ippStsSqrtNegArg;

struct Vector32;
struct Vector64;

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

template <class V>
using RootFloatPolicy =
    ByVariant<V, NarrowRoots, NarrowRoots, NarrowRoots, NarrowRoots, NarrowRoots, WideRoots>;

/// 16 bytes at a time, whatever the size.
struct AbsoluteNarrow {
  static constexpr bool streams = false;
  static constexpr bool fuses = false;
  template <bool streaming>
  static bool row(const unsigned char* src, unsigned char* dst, std::int64_t n, std::int64_t) {
    floatsRow16<AbsoluteFloats, 16>(src, dst, n);
    return false;
  }
};

/// 32 bytes at a time. What streams fetches one row ahead. In place one pointer serves for both images.
template <bool inPlace>
struct AbsoluteWide {
#ifdef __AVX__
  static constexpr bool streams = !inPlace;
  static constexpr bool fuses = true;
  template <bool streaming>
  static bool row(const unsigned char* src, unsigned char* dst, std::int64_t n, std::int64_t srcStep) {
    floatsRow32<AbsoluteFloats, streaming>(inPlace ? dst : src, dst, n, srcStep);
    return false;
  }
#endif
};

template <class V>
using AbsoluteInPlace = ByVariant<V, AbsoluteNarrow, AbsoluteNarrow, AbsoluteNarrow, AbsoluteWide<true>,
                                  AbsoluteWide<true>, AbsoluteWide<true>>;
template <class V>
using AbsoluteOfTwo = ByVariant<V, AbsoluteNarrow, AbsoluteNarrow, AbsoluteNarrow, AbsoluteNarrow,
                                AbsoluteWide<false>, AbsoluteWide<false>>;

/// Walks the rows at whole pixels. A row's routine tells whether there was a negative pixel that has no root.
template <class Form, bool streaming>
bool walkFloatRows(const UnaryImages& call, Size roi) {
  const UnaryImages images{call.src, wholePixels(call.srcStep), call.dst, wholePixels(call.dstStep),
                           call.inPlace};
  const FloatRows rows =
      Form::fuses ? planFloatRows(roi, images.srcStep, images.dstStep) : FloatRows{roi.height, roi.width};
  if constexpr (Form::fuses) ZORVAN_NOTE_ONE_ROW("planFloatRows as one row", rows.rows, roi.height);
  bool negative = false;
  images.eachRow(rows.rows, [&](const unsigned char* src, unsigned char* dst) {
    negative |= Form::template row<streaming>(src, dst, rows.rowPixels, images.srcStep);
  });
  if constexpr (streaming) fenceStores();
  return negative;
}

/// What cannot stay in the cache goes past it, in the forms that can.
template <class Form>
int eachFloatRow(const UnaryImages& images, Size roi) {
  const int status = testUnary(images, roi);
  if (status != ippStsNoErr) return status;
  bool streaming = false;
  if constexpr (Form::streams) {
    streaming = !images.inPlace && planStreaming<4>(std::int64_t{roi.width} * roi.height, queryCacheSize);
    ZORVAN_NOTE_PLAN("planStreaming of floats", streaming);
  }
  bool negative;
  if (streaming) {
    negative = walkFloatRows<Form, Form::streams>(images, roi);
  } else {
    negative = walkFloatRows<Form, false>(images, roi);
  }
  return negative ? ippStsSqrtNegArg : ippStsNoErr;
}

template <class V>
int rootsOfFloats(const UnaryImages& images, Size roi) {
  const ControlState state = maskExceptions();
  int status = eachFloatRow<RootFloatPolicy<V>>(images, roi);
  restore(state, status);
  return status;
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
int Routines<V>::ippiSqrt_32f_C1IR(float* srcDst, int srcDstStep, Size roi) {
  return rootsOfFloats<V>(unaryInPlace(srcDst, srcDstStep), roi);
}
template <class V>
int Routines<V>::ippiSqrt_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return rootsOfFloats<V>(unaryImages(src, srcStep, dst, dstStep), roi);
}

template <class V>
int Routines<V>::ippiAbs_32f_C1IR(float* srcDst, int srcDstStep, Size roi) {
  return eachFloatRow<AbsoluteInPlace<V>>(unaryInPlace(srcDst, srcDstStep), roi);
}
template <class V>
int Routines<V>::ippiAbs_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return eachFloatRow<AbsoluteOfTwo<V>>(unaryImages(src, srcStep, dst, dstStep), roi);
}

}  // namespace Zorvan::Primitives
