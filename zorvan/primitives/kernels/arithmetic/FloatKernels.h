#pragma once

// The common body of the float entries for sums, differences and products: the tests, the form of the rows
// in each variant, the walk over them. Rows are never joined, and each one's form follows from where it lies.

#include "zorvan/primitives/kernels/arithmetic/float_rows.h"
#include "zorvan/primitives/kernels/common/Arguments.h"
#include "zorvan/primitives/kernels/common/ByVariant.h"

namespace Zorvan::Primitives {
namespace {

/// 16-byte stores. Some forms stream long rows, others prefetch.
template <bool mayStream, bool prefetch>
struct FloatRows {
  template <class Op, class A, class B>
  static void row(A a, B b, unsigned char* dst, std::int64_t n) {
    const FloatRowPlan plan = planFloatRow(reinterpret_cast<std::uintptr_t>(dst), n, mayStream);
    floatRow<Op, mayStream, prefetch>(plan, a, b, dst, 4 * n);
  }
};

/// 16-byte stores on a boundary or single pixels.
struct AlignedFloatRows {
  template <class Op, class A, class B>
  static void row(A a, B b, unsigned char* dst, std::int64_t n) {
    const FloatRowPlan plan = planAlignedFloatRow(reinterpret_cast<std::uintptr_t>(dst), n);
    floatRow<Op, false, false>(plan, a, b, dst, 4 * n);
  }
};

/// 32-byte stores.
template <int alignFromPixels>
struct WideFloatRows {
#ifdef __AVX__
  template <class Op, class A, class B>
  static void row(A a, B b, unsigned char* dst, std::int64_t n) {
    const FloatRowPlan plan = planWideFloatRow(reinterpret_cast<std::uintptr_t>(dst), n, alignFromPixels);
    wideFloatRow<Op>(plan, a, b, dst, 4 * n);
  }
#endif
};

using FloatRowsPlain = FloatRows<false, false>;
using FloatRowsStreaming = FloatRows<true, false>;
using FloatRowsPrefetching = FloatRows<false, true>;
using FloatRowsWide = WideFloatRows<29>;
using FloatRowsWideAligned = WideFloatRows<16>;

// The sum of three images alone streams, a form in place alone prefetches.
template <class V>
using FloatSumPolicy = ByVariant<V, FloatRowsStreaming, FloatRowsStreaming, FloatRowsStreaming,
                                 AlignedFloatRows, FloatRowsWide, FloatRowsWide>;
template <class V>
using FloatPolicy = ByVariant<V, FloatRowsPlain, FloatRowsPlain, FloatRowsPlain, AlignedFloatRows,
                              FloatRowsWide, FloatRowsWide>;
template <class V>
using FloatInPlacePolicy = ByVariant<V, FloatRowsPrefetching, FloatRowsPrefetching, FloatRowsPrefetching,
                                     AlignedFloatRows, FloatRowsWide, FloatRowsWide>;
template <class V>
using FloatConstantPolicy = ByVariant<V, AlignedFloatRows, AlignedFloatRows, AlignedFloatRows,
                                      FloatRowsWideAligned, FloatRowsWideAligned, FloatRowsWideAligned>;

template <class Policy, class Op, class A, class B>
int floatImage(A a, B b, float* dst, int dstStep, Size roi) {
  if (a.isNull() || b.isNull() || dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  for (std::int64_t r = 0; r < roi.height; ++r) {
    Policy::template row<Op>(a.row(r), b.row(r), rowAt(reinterpret_cast<unsigned char*>(dst), dstStep, r),
                             roi.width);
  }
  return ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives
