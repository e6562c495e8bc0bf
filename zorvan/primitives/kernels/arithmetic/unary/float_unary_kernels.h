#pragma once

// Square, square root and absolute value of floats: the policies of the variants.

#include "zorvan/primitives/kernels/arithmetic/unary/float_roots.h"
#include "zorvan/primitives/kernels/arithmetic/unary/float_rows.h"
#include "zorvan/primitives/kernels/arithmetic/unary/float_squares.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_images.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_plan.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"

namespace Zorvan::Primitives::Unary {
namespace {

using Ipp::ippStsSqrtNegArg;

template <class V>
using SquareFloatPolicy = ByVariant<V, SquareRows16, SquareRows16, SquareRows16, SquareImage<Vector32>,
                                    SquareImage<Vector32>, SquareImage<Vector64>>;

template <class V>
int squareFloats(const UnaryImages& images, Size roi) {
  SquareFloatPolicy<V>::run(images, roi);
  return ippStsNoErr;
}

template <class V>
using RootFloatPolicy =
    ByVariant<V, FloatRoots16, FloatRoots16, FloatRoots16, FloatRoots32, FloatRoots32, FloatRoots64>;

/// 16-byte vectors, for images of every size.
struct Absolute16 {
  static constexpr bool streams = false;
  static constexpr bool fuses = false;
  template <bool streaming>
  static bool row(const unsigned char* src, unsigned char* dst, std::int64_t n, std::int64_t) {
    floatsRow16<AbsoluteFloats, 16>(src, dst, n);
    return false;
  }
};

/// 32-byte vectors. Streaming goes with a prefetch of the next row. In place, one pointer is enough for both
/// images.
template <bool inPlace>
struct Absolute32 {
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
using AbsoluteInPlacePolicy =
    ByVariant<V, Absolute16, Absolute16, Absolute16, Absolute32<true>, Absolute32<true>, Absolute32<true>>;
template <class V>
using AbsolutePolicy =
    ByVariant<V, Absolute16, Absolute16, Absolute16, Absolute16, Absolute32<false>, Absolute32<false>>;

/// Computes the rows, with steps in whole pixels. Returns whether a pixel was negative and has no root.
template <class Row, bool streaming>
bool runFloatRows(const UnaryImages& call, Size roi) {
  const UnaryImages images = call.atWholePixels();
  const FloatRowsPlan rows = Row::fuses ? planFloatRows(roi, images.src.step, images.dst.step)
                                        : FloatRowsPlan{roi.height, roi.width};
  if constexpr (Row::fuses) ZORVAN_NOTE_ONE_ROW("planFloatRows as one row", rows.rows, roi.height);
  bool negative = false;
  const auto row = [&](const u8* src, u8* dst) {
    negative |= Row::template row<streaming>(src, dst, rows.rowPixels, images.src.step);
  };
  forEachRow(rows.rows, row, images.src, images.dst);
  if constexpr (streaming) fenceStores();
  return negative;
}

/// Streams large images, if `Row` can.
template <class Row>
int runFloats(const UnaryImages& images, Size roi) {
  bool streaming = false;
  if constexpr (Row::streams) {
    streaming = !images.inPlace && planStreaming<4>(std::int64_t{roi.width} * roi.height, queryCacheSize);
    ZORVAN_NOTE_PLAN("planStreaming of floats", streaming);
  }
  bool negative;
  if (streaming) {
    negative = runFloatRows<Row, Row::streams>(images, roi);
  } else {
    negative = runFloatRows<Row, false>(images, roi);
  }
  return negative ? ippStsSqrtNegArg : ippStsNoErr;
}

template <class V>
int rootFloats(const UnaryImages& images, Size roi) {
  const ControlState state = maskExceptions();
  int status = runFloats<RootFloatPolicy<V>>(images, roi);
  restore(state, status);
  return status;
}

}  // namespace
}  // namespace Zorvan::Primitives::Unary
