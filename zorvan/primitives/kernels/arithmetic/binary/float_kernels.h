#pragma once

// The common body of the float entries for sums, differences and products: the argument checks, the rows of
// each variant, the loop over them. Rows are never joined, and each one's plan follows from its address.

#include "zorvan/primitives/kernels/arithmetic/binary/float_rows.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"

namespace Zorvan::Primitives::Arithmetic {
namespace {

/// 16-byte stores. Some forms stream long rows, others prefetch.
template <bool mayStream, bool prefetching>
struct FloatRows16 {
  template <class Op, class A, class B>
  static void run(RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    images.eachRow([length](auto a, auto b, unsigned char* dst) {
      const FloatRowPlan plan = planFloatRow16(reinterpret_cast<std::uintptr_t>(dst), length / 4, mayStream);
      ZORVAN_NOTE_PLAN("planFloatRow16 in vectors", plan.inVectors);
      ZORVAN_NOTE_PLAN("planFloatRow16 aligned", plan.aligned);
      if constexpr (mayStream) ZORVAN_NOTE_PLAN("planFloatRow16 streaming", plan.streaming);
      floatRow16<Op, mayStream, prefetching>(plan, a, b, dst, length);
    });
  }
};

/// 16-byte stores on a boundary or single pixels.
struct AlignedFloatRows16 {
  template <class Op, class A, class B>
  static void run(RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    images.eachRow([length](auto a, auto b, unsigned char* dst) {
      const FloatRowPlan plan = planAlignedFloatRow16(reinterpret_cast<std::uintptr_t>(dst), length / 4);
      ZORVAN_NOTE_PLAN("planAlignedFloatRow16 in vectors", plan.inVectors);
      floatRow16<Op, false, false>(plan, a, b, dst, length);
    });
  }
};

/// 16 pixels at a time from a 32-byte boundary on, unrolled by 4. Rows without a peel and a tail are planned
/// once for all of them, and whole unrolled iterations have a loop without the branches to the rest: in
/// narrow images a row is an iteration or two. Where a constant is the other source, rows of a single
/// iteration have no loop; with two images they are faster in it.
template <int vectorBytes, int alignFromPixels>
struct UnrolledFloatRows {
#ifdef __AVX__
  template <class Op, class A, class B>
  static void run(RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    if constexpr (vectorBytes == 64) {
      if (!ZORVAN_PLANNED("prefersFloats64", prefersFloats64(images.rows * length / 4))) {
        return UnrolledFloatRows<32, alignFromPixels>::template run<Op>(images);
      }
    }
    if (ZORVAN_PLANNED("needNoPeelOrTail",
                       needNoPeelOrTail(planOf(images.dst.pixels, length), images.dst.step, length / 4))) {
      if (length % unrolledFloatBytes != 0) return wholeVectors<Op, vectorBytes>(images);
      const bool onLines = isAligned(images.dst.pixels, 64) && images.dst.step % 64 == 0;
      return onLines ? wholeIterations<Op, vectorBytes>(images) : wholeIterations<Op, 32>(images);
    }
    images.eachRow([length](auto a, auto b, unsigned char* dst) {
      floatRow32<Op, vectorBytes>(planOf(dst, length), a, b, dst, length);
    });
  }

 private:
  static FloatRowPlan planOf(unsigned char* dst, std::int64_t length) {
    return planFloatRow32(reinterpret_cast<std::uintptr_t>(dst), length / 4, alignFromPixels);
  }
  template <class Op, int bytes, class A, class B>
  static void wholeVectors(RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    images.eachRow(
        [length](auto a, auto b, unsigned char* dst) { floatVectorsUpTo<Op, bytes>(a, b, dst, 0, length); });
  }
  template <class Op, int bytes, class A, class B>
  static void wholeIterations(RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    if constexpr (A::isConstant) {
      if (length == unrolledFloatBytes) {
        return images.template eachShortRow<4>([](auto a, auto b, unsigned char* dst) {
          floatVectors<Op, bytes, unrolledFloatBytes>(a, b, dst, 0);
        });
      }
    }
    images.eachRow([length](auto a, auto b, unsigned char* dst) {
      for (std::int64_t i = 0; i != length; i += unrolledFloatBytes) {
        floatVectors<Op, bytes, unrolledFloatBytes>(a, b, dst, i);
      }
    });
  }
#endif
};

using PlainFloatRows16 = FloatRows16<false, false>;
using StreamingFloatRows16 = FloatRows16<true, false>;
using PrefetchingFloatRows16 = FloatRows16<false, true>;
using FloatRows32 = UnrolledFloatRows<32, 29>;
using FloatRows64 = UnrolledFloatRows<64, 29>;
using AlignedFloatRows32 = UnrolledFloatRows<32, 16>;

template <class V>
using FloatSumPolicy = ByVariant<V, StreamingFloatRows16, StreamingFloatRows16, StreamingFloatRows16,
                                 AlignedFloatRows16, FloatRows32, FloatRows64>;
template <class V>
using FloatPolicy = ByVariant<V, PlainFloatRows16, PlainFloatRows16, PlainFloatRows16, AlignedFloatRows16,
                              FloatRows32, FloatRows64>;
template <class V>
using FloatInPlacePolicy = ByVariant<V, PrefetchingFloatRows16, PrefetchingFloatRows16,
                                     PrefetchingFloatRows16, AlignedFloatRows16, FloatRows32, FloatRows64>;
template <class V>
using FloatConstantPolicy = ByVariant<V, AlignedFloatRows16, AlignedFloatRows16, AlignedFloatRows16,
                                      AlignedFloatRows32, AlignedFloatRows32, AlignedFloatRows32>;

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
