#pragma once

// Sums, differences and products of 32-bit float pixels: one operation of the processor each, in its current
// rounding mode, whatever the pixels are.
//
// A row of 16-byte stores is peeled pixel by pixel to a 16-byte boundary of the destination, then goes 8
// pixels at a time, by one of four copies of the loop for the alignment of its sources. A row of 32-byte or
// 64-byte stores goes 16 pixels at a time, then 4, with loads and stores for any address.

#include "zorvan/primitives/kernels/arithmetic/binary/float_row_plan.h"
#include "zorvan/primitives/kernels/arithmetic/binary/row_sources.h"

namespace Zorvan::Primitives::Arithmetic {
namespace {

/// Of single pixels and of vectors.
struct FloatSum {
  template <class F>
  static F of(F a, F b) {
    return a + b;
  }
};
/// The first operand is the subtrahend.
struct FloatDifference {
  template <class F>
  static F of(F a, F b) {
    return b - a;
  }
};
struct FloatProduct {
  template <class F>
  static F of(F a, F b) {
    return a * b;
  }
};

/// Interface contract: no fence follows the streaming stores of long sums. The page on variants says what
/// that means to other threads.
enum class FloatStores { anyAddress, aligned, streaming };

/// Prefetches the first source only.
template <class Op, FloatStores stores, bool alignedA, bool alignedB, bool prefetching, class A, class B>
inline std::int64_t floatVectors16(A a, B b, unsigned char* dst, std::int64_t i, std::int64_t length) {
  for (; i + 32 <= length; i += 32) {
    if constexpr (prefetching) prefetchLine(a.bytes + i + 64);
    for (int j = 0; j < 32; j += 16) {
      const __m128 x = a.template lanes<__m128, alignedA>(i + j);
      const __m128 y = b.template lanes<__m128, alignedB>(i + j);
      const __m128 result = Op::of(x, y);
      if constexpr (stores == FloatStores::streaming) {
        streamLanes(dst + i + j, result);
      } else {
        storeLanes<stores == FloatStores::aligned>(dst + i + j, result);
      }
    }
  }
  return i;
}

template <class Op, FloatStores stores, bool prefetching, class A, class B>
inline std::int64_t floatVectors16(A a, B b, unsigned char* dst, std::int64_t i, std::int64_t length) {
  const bool alignedA = a.isAlignedAt(i), alignedB = b.isAlignedAt(i);
  if (alignedA && alignedB) return floatVectors16<Op, stores, true, true, prefetching>(a, b, dst, i, length);
  if (alignedA) return floatVectors16<Op, stores, true, false, prefetching>(a, b, dst, i, length);
  if (alignedB) return floatVectors16<Op, stores, false, true, prefetching>(a, b, dst, i, length);
  return floatVectors16<Op, stores, false, false, prefetching>(a, b, dst, i, length);
}

template <class Op, class A, class B>
inline void floatPixels(A a, B b, unsigned char* dst, std::int64_t& i, std::int64_t end) {
  for (; i < end; i += 4) storeAs(dst + i, Op::of(a.pixel(i), b.pixel(i)));
}

template <class Op, bool mayStream, bool prefetching, class A, class B>
inline void floatRow16(const FloatRowPlan& plan, A a, B b, unsigned char* dst, std::int64_t length) {
  std::int64_t i = 0;
  if (plan.inVectors) {
    floatPixels<Op>(a, b, dst, i, 4 * plan.peel);
    if (!plan.aligned) {
      i = floatVectors16<Op, FloatStores::anyAddress, false, false, prefetching>(a, b, dst, i, length);
    } else if (mayStream && plan.streaming) {
      if constexpr (mayStream) {
        i = floatVectors16<Op, FloatStores::streaming, prefetching>(a, b, dst, i, length);
      }
    } else {
      i = floatVectors16<Op, FloatStores::aligned, prefetching>(a, b, dst, i, length);
    }
  }
  floatPixels<Op>(a, b, dst, i, length);
}

#ifdef __AVX__
constexpr std::int64_t unrolledFloatBytes = 256;

template <class Op, int vectorBytes, int bytes, class A, class B>
inline void floatVectors(A a, B b, unsigned char* dst, std::int64_t i) {
  using Lanes = VectorOfFloats<vectorBytes>;
  for (int j = 0; j < bytes; j += vectorBytes) {
    const auto x = a.template lanes<Lanes, false>(i + j);
    const auto y = b.template lanes<Lanes, false>(i + j);
    storeLanes<false>(dst + i + j, Op::of(x, y));
  }
}

/// A multiple of 16 pixels up to `end`, unrolled by 4. Vectors of 64 bytes are for destinations that start on
/// a cache line: stores across two lines gain nothing.
template <class Op, int vectorBytes, class A, class B>
inline void floatVectorsUpTo(A a, B b, unsigned char* dst, std::int64_t i, std::int64_t end) {
  if constexpr (vectorBytes == 64) {
    if (!isAligned(dst + i, 64)) return floatVectorsUpTo<Op, 32>(a, b, dst, i, end);
  }
  for (; end - i >= unrolledFloatBytes; i += unrolledFloatBytes) {
    floatVectors<Op, vectorBytes, unrolledFloatBytes>(a, b, dst, i);
  }
  for (; i != end; i += 64) floatVectors<Op, vectorBytes, 64>(a, b, dst, i);
}

template <class Op, int vectorBytes, class A, class B>
inline void floatRow32(const FloatRowPlan& plan, A a, B b, unsigned char* dst, std::int64_t length) {
  std::int64_t i = 0;
  if (plan.inVectors) {
    floatPixels<Op>(a, b, dst, i, 4 * plan.peel);
    const std::int64_t endOfVectors = i + ((length - i) & ~63);
    floatVectorsUpTo<Op, vectorBytes>(a, b, dst, i, endOfVectors);
    i = endOfVectors;
    if (i == length) return;
    for (const std::int64_t end = i + ((length - i) & ~15); i != end; i += 16) {
      floatVectors<Op, 16, 16>(a, b, dst, i);
    }
  }
  floatPixels<Op>(a, b, dst, i, length);
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
