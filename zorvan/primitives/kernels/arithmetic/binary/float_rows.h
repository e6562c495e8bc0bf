#pragma once

// Sums, differences and products of 32-bit float pixels: one operation of the processor each, in its current
// rounding mode, whatever the pixels are.
//
// A narrow row goes pixel by pixel to a 16-byte boundary of the destination, then in blocks of 8 pixels, in
// one of four copies for the alignment of its sources. A wide row goes in blocks of 16 pixels, then 4 pixels
// at a time, with loads and stores for any address.

#include "zorvan/primitives/kernels/arithmetic/binary/float_row_plan.h"
#include "zorvan/primitives/kernels/arithmetic/binary/row_sources.h"

namespace Zorvan::Primitives {
namespace {

/// On single pixels and on vectors alike.
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

enum class FloatStores { anyAddress, aligned, streaming };

/// `prefetch` asks for the first source 64 bytes ahead.
template <class Op, FloatStores stores, bool alignedA, bool alignedB, bool prefetch, class A, class B>
inline std::int64_t floatBlocks8(A a, B b, unsigned char* dst, std::int64_t i, std::int64_t length) {
  for (; i + 32 <= length; i += 32) {
    if constexpr (prefetch) _mm_prefetch(reinterpret_cast<const char*>(a.bytes) + i + 64, _MM_HINT_T0);
    for (int j = 0; j < 32; j += 16) {
      const __m128 x = a.template lanes<__m128, alignedA>(i + j);
      const __m128 y = b.template lanes<__m128, alignedB>(i + j);
      const __m128 result = Op::of(x, y);
      if constexpr (stores == FloatStores::streaming) {
        _mm_stream_ps(reinterpret_cast<float*>(dst + i + j), result);
      } else {
        storeLanes<stores == FloatStores::aligned>(dst + i + j, result);
      }
    }
  }
  return i;
}

template <class Op, FloatStores stores, bool prefetch, class A, class B>
inline std::int64_t floatBlocks8(A a, B b, unsigned char* dst, std::int64_t i, std::int64_t length) {
  const bool alignedA = a.isAlignedAt(i), alignedB = b.isAlignedAt(i);
  if (alignedA && alignedB) return floatBlocks8<Op, stores, true, true, prefetch>(a, b, dst, i, length);
  if (alignedA) return floatBlocks8<Op, stores, true, false, prefetch>(a, b, dst, i, length);
  if (alignedB) return floatBlocks8<Op, stores, false, true, prefetch>(a, b, dst, i, length);
  return floatBlocks8<Op, stores, false, false, prefetch>(a, b, dst, i, length);
}

template <class Op, class A, class B>
inline void floatPixels(A a, B b, unsigned char* dst, std::int64_t& i, std::int64_t end) {
  for (; i < end; i += 4) storeAs(dst + i, Op::of(a.pixel(i), b.pixel(i)));
}

template <class Op, bool mayStream, bool prefetch, class A, class B>
inline void floatRow(const FloatRowPlan& plan, A a, B b, unsigned char* dst, std::int64_t length) {
  std::int64_t i = 0;
  if (plan.inBlocks) {
    floatPixels<Op>(a, b, dst, i, 4 * plan.peel);
    if (!plan.aligned) {
      i = floatBlocks8<Op, FloatStores::anyAddress, false, false, prefetch>(a, b, dst, i, length);
    } else if (mayStream && plan.streaming) {
      if constexpr (mayStream) i = floatBlocks8<Op, FloatStores::streaming, prefetch>(a, b, dst, i, length);
    } else {
      i = floatBlocks8<Op, FloatStores::aligned, prefetch>(a, b, dst, i, length);
    }
  }
  floatPixels<Op>(a, b, dst, i, length);
}

#ifdef __AVX__
template <int registerBytes>
struct FloatRegister;
template <>
struct FloatRegister<32> {
  using Lanes = __m256;
};
#ifdef __AVX512F__
template <>
struct FloatRegister<64> {
  using Lanes = __m512;
};
#endif

constexpr std::int64_t floatTurnBytes = 256;  // four blocks of 16 pixels

template <class Op, int registerBytes, int bytes, class A, class B>
inline void wideFloatSteps(A a, B b, unsigned char* dst, std::int64_t i) {
  using Lanes = typename FloatRegister<registerBytes>::Lanes;
  for (int j = 0; j < bytes; j += registerBytes) {
    const auto x = a.template lanes<Lanes, false>(i + j);
    const auto y = b.template lanes<Lanes, false>(i + j);
    storeLanes<false>(dst + i + j, Op::of(x, y));
  }
}

/// Blocks of 16 pixels up to `end`, four of them to a turn while they last: a short turn takes longer than
/// what it does. The wider registers are for destinations that start on a cache line: across two of them they
/// gain nothing.
template <class Op, int registerBytes, class A, class B>
inline void wideFloatBlocks(A a, B b, unsigned char* dst, std::int64_t i, std::int64_t end) {
  if constexpr (registerBytes == 64) {
    if (!isAligned(dst + i, 64)) return wideFloatBlocks<Op, 32>(a, b, dst, i, end);
  }
  for (; end - i >= floatTurnBytes; i += floatTurnBytes) {
    wideFloatSteps<Op, registerBytes, floatTurnBytes>(a, b, dst, i);
  }
  for (; i != end; i += 64) wideFloatSteps<Op, registerBytes, 64>(a, b, dst, i);
}

template <class Op, int registerBytes, class A, class B>
inline void wideFloatRow(const FloatRowPlan& plan, A a, B b, unsigned char* dst, std::int64_t length) {
  std::int64_t i = 0;
  if (plan.inBlocks) {
    floatPixels<Op>(a, b, dst, i, 4 * plan.peel);
    const std::int64_t endOfBlocks = i + ((length - i) & ~63);
    wideFloatBlocks<Op, registerBytes>(a, b, dst, i, endOfBlocks);
    i = endOfBlocks;
    if (i == length) return;
    for (const std::int64_t end = i + ((length - i) & ~15); i != end; i += 16) {
      const auto x = a.template lanes<__m128, false>(i);
      const auto y = b.template lanes<__m128, false>(i);
      storeLanes<false>(dst + i, Op::of(x, y));
    }
  }
  floatPixels<Op>(a, b, dst, i, length);
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives
