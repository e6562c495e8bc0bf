#pragma once

// The common body of the float entries for sums, differences and products: the tests, the form of the rows
// in each variant, the walk over them. Rows are never joined, and each one's form follows from where it lies.

#include "zorvan/primitives/kernels/arithmetic/float_rows.h"
#include "zorvan/primitives/kernels/common/Arguments.h"
#include "zorvan/primitives/kernels/common/ByVariant.h"

namespace Zorvan::Primitives {
namespace {

/// Where the rows are read and written.
template <class A, class B>
struct FloatImages {
  A a;
  B b;
  unsigned char* dst;
  int dstStep;
  std::int64_t rows, rowPixels;

  template <class RowRoutine>
  void eachRow(RowRoutine row) const {
    for (std::int64_t r = 0; r < rows; ++r) row(a.row(r), b.row(r), rowAt(dst, dstStep, r), rowPixels);
  }
};

/// 16-byte stores. Some forms stream long rows, others prefetch.
template <bool mayStream, bool prefetch>
struct FloatRows {
  template <class Op, class A, class B>
  static void run(FloatImages<A, B> images) {
    images.eachRow([](auto a, auto b, unsigned char* dst, std::int64_t n) {
      const FloatRowPlan plan = planFloatRow(reinterpret_cast<std::uintptr_t>(dst), n, mayStream);
      floatRow<Op, mayStream, prefetch>(plan, a, b, dst, 4 * n);
    });
  }
};

/// 16-byte stores on a boundary or single pixels.
struct AlignedFloatRows {
  template <class Op, class A, class B>
  static void run(FloatImages<A, B> images) {
    images.eachRow([](auto a, auto b, unsigned char* dst, std::int64_t n) {
      const FloatRowPlan plan = planAlignedFloatRow(reinterpret_cast<std::uintptr_t>(dst), n);
      floatRow<Op, false, false>(plan, a, b, dst, 4 * n);
    });
  }
};

/// Blocks of 16 pixels from a 32-byte boundary on. Rows that are blocks alone are planned once for all of
/// them.
template <int alignFromPixels, int registerBytes = 32>
struct WideFloatRows {
#ifdef __AVX__
  template <class Op, class A, class B>
  static void run(FloatImages<A, B> images) {
    if constexpr (registerBytes == 64) {
      if (!planWidestFloats(images.rows * images.rowPixels)) {
        return WideFloatRows<alignFromPixels, 32>::template run<Op>(images);
      }
    }
    const FloatRowPlan first = planOf(images.dst, images.rowPixels);
    if (areWholeBlocks(first, images.dstStep, images.rowPixels)) {
      return images.eachRow([](auto a, auto b, unsigned char* dst, std::int64_t n) {
        wideFloatBlocks<Op, registerBytes>(a, b, dst, 0, 4 * n);
      });
    }
    images.eachRow([](auto a, auto b, unsigned char* dst, std::int64_t n) {
      wideFloatRow<Op, registerBytes>(planOf(dst, n), a, b, dst, 4 * n);
    });
  }

 private:
  static FloatRowPlan planOf(unsigned char* dst, std::int64_t n) {
    return planWideFloatRow(reinterpret_cast<std::uintptr_t>(dst), n, alignFromPixels);
  }
#endif
};

using FloatRowsPlain = FloatRows<false, false>;
using FloatRowsStreaming = FloatRows<true, false>;
using FloatRowsPrefetching = FloatRows<false, true>;
using FloatRowsWide = WideFloatRows<29>;
using FloatRowsWidest = WideFloatRows<29, 64>;
using FloatRowsWideAligned = WideFloatRows<16>;

// The sum of three images alone streams, a form in place alone prefetches.
template <class V>
using FloatSumPolicy = ByVariant<V, FloatRowsStreaming, FloatRowsStreaming, FloatRowsStreaming,
                                 AlignedFloatRows, FloatRowsWide, FloatRowsWidest>;
template <class V>
using FloatPolicy = ByVariant<V, FloatRowsPlain, FloatRowsPlain, FloatRowsPlain, AlignedFloatRows,
                              FloatRowsWide, FloatRowsWidest>;
template <class V>
using FloatInPlacePolicy = ByVariant<V, FloatRowsPrefetching, FloatRowsPrefetching, FloatRowsPrefetching,
                                     AlignedFloatRows, FloatRowsWide, FloatRowsWidest>;
template <class V>
using FloatConstantPolicy = ByVariant<V, AlignedFloatRows, AlignedFloatRows, AlignedFloatRows,
                                      FloatRowsWideAligned, FloatRowsWideAligned, FloatRowsWideAligned>;

template <class Policy, class Op, class A, class B>
int floatImage(A a, B b, float* dst, int dstStep, Size roi) {
  if (a.isNull() || b.isNull() || dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  Policy::template run<Op>(
      FloatImages<A, B>{a, b, reinterpret_cast<unsigned char*>(dst), dstStep, roi.height, roi.width});
  return ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives
