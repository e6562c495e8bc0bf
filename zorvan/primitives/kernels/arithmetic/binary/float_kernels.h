#pragma once

// The common body of the float entries for sums, differences and products: the tests, the form of the rows
// in each variant, the walk over them. Rows are never joined, and each one's form follows from where it lies.

#include "zorvan/primitives/kernels/arithmetic/binary/float_rows.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"

namespace Zorvan::Primitives {
namespace {

/// 16-byte stores. Some forms stream long rows, others prefetch.
template <bool mayStream, bool prefetch>
struct FloatRows {
  template <class Op, class A, class B>
  static void run(RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    images.eachRow([length](auto a, auto b, unsigned char* dst) {
      const FloatRowPlan plan = planFloatRow(reinterpret_cast<std::uintptr_t>(dst), length / 4, mayStream);
      ZORVAN_NOTE_PLAN("planFloatRow in blocks", plan.inBlocks);
      ZORVAN_NOTE_PLAN("planFloatRow aligned", plan.aligned);
      if constexpr (mayStream) ZORVAN_NOTE_PLAN("planFloatRow streaming", plan.streaming);
      floatRow<Op, mayStream, prefetch>(plan, a, b, dst, length);
    });
  }
};

/// 16-byte stores on a boundary or single pixels.
struct AlignedFloatRows {
  template <class Op, class A, class B>
  static void run(RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    images.eachRow([length](auto a, auto b, unsigned char* dst) {
      const FloatRowPlan plan = planAlignedFloatRow(reinterpret_cast<std::uintptr_t>(dst), length / 4);
      ZORVAN_NOTE_PLAN("planAlignedFloatRow in blocks", plan.inBlocks);
      floatRow<Op, false, false>(plan, a, b, dst, length);
    });
  }
};

/// Blocks of 16 pixels from a 32-byte boundary on. Rows that are blocks alone are planned once for all of
/// them, and those that are turns alone have a loop without the way to the last blocks: in narrow images a
/// row is a turn or two. Rows of one turn have none where a constant is the other source; two images want
/// their loop.
template <int alignFromPixels, int registerBytes = 32>
struct WideFloatRows {
#ifdef __AVX__
  template <class Op, class A, class B>
  static void run(RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    if constexpr (registerBytes == 64) {
      if (!ZORVAN_PLANNED("planWidestFloats", planWidestFloats(images.rows * length / 4))) {
        return WideFloatRows<alignFromPixels, 32>::template run<Op>(images);
      }
    }
    if (ZORVAN_PLANNED("areWholeBlocks",
                       areWholeBlocks(planOf(images.dst, length), images.dstStep, length / 4))) {
      if (length % floatTurnBytes != 0) return wholeBlocks<Op, registerBytes>(images);
      const bool onLines = isAligned(images.dst, 64) && images.dstStep % 64 == 0;
      return onLines ? wholeTurns<Op, registerBytes>(images) : wholeTurns<Op, 32>(images);
    }
    images.eachRow([length](auto a, auto b, unsigned char* dst) {
      wideFloatRow<Op, registerBytes>(planOf(dst, length), a, b, dst, length);
    });
  }

 private:
  static FloatRowPlan planOf(unsigned char* dst, std::int64_t length) {
    return planWideFloatRow(reinterpret_cast<std::uintptr_t>(dst), length / 4, alignFromPixels);
  }
  template <class Op, int vectorBytes, class A, class B>
  static void wholeBlocks(RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    images.eachRow([length](auto a, auto b, unsigned char* dst) {
      wideFloatBlocks<Op, vectorBytes>(a, b, dst, 0, length);
    });
  }
  template <class Op, int vectorBytes, class A, class B>
  static void wholeTurns(RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    if constexpr (A::isConstant) {
      if (length == floatTurnBytes) {
        return images.template eachShortRow<4>([](auto a, auto b, unsigned char* dst) {
          wideFloatSteps<Op, vectorBytes, floatTurnBytes>(a, b, dst, 0);
        });
      }
    }
    images.eachRow([length](auto a, auto b, unsigned char* dst) {
      for (std::int64_t i = 0; i != length; i += floatTurnBytes) {
        wideFloatSteps<Op, vectorBytes, floatTurnBytes>(a, b, dst, i);
      }
    });
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
  Policy::template run<Op>(RowImages<A, B>{a, b, reinterpret_cast<unsigned char*>(dst), dstStep, roi.height,
                                           4 * std::int64_t{roi.width}});
  return ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives
