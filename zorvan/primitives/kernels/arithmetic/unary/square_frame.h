#pragma once

// Squares of float images, the newest three variants: one frame for all rows, which joins them where it can
// and decides from the size of the whole how far to fetch ahead and whether to store past the cache.
//
// Reads and writes the rows only, at any address; prefetches may name places outside.

#include "zorvan/primitives/kernels/arithmetic/unary/unary_float_rows.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_plan.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"

namespace Zorvan::Primitives {
namespace {

#ifdef __AVX__
/// 8 pixels, then 4 or fewer, up to a cache line, then passes of 16 pixels.
template <class Vector, bool prefetched, bool streaming>
inline void squareRow(const unsigned char* src, unsigned char* dst, std::int64_t n,
                      std::int64_t prefetchBytes) {
  const std::int64_t peel = planPeel(reinterpret_cast<std::uintptr_t>(dst), n, 64);
  floatsFewer<SquareFloats>(src, dst, peel);
  src += 4 * peel;
  dst += 4 * peel;
  n -= peel;
  const auto pass = [&](int at) {
    if constexpr (prefetched) prefetchAhead(src + at, prefetchBytes);
    floatsPass16<SquareFloats, Vector, streaming>(src + at, dst + at);
  };
  for (; n >= 64; src += 256, dst += 256, n -= 64) pass(0), pass(64), pass(128), pass(192);
  for (; n >= 16; src += 64, dst += 64, n -= 16) pass(0);
  floatsFewer<SquareFloats>(src, dst, n);
  if constexpr (streaming) fenceStores();
}

/// What is fetched ahead and stored to the cache goes in 32-byte vectors: it waits for the memory, and wider
/// ones wait longer.
template <class Vector>
struct SquareFrame {
  static void run(const unsigned char* src, int srcStep, unsigned char* dst, int dstStep, Size roi,
                  bool inPlace) {
    const SquarePlan plan = planSquareFrame(roi, srcStep, dstStep, inPlace);
    ZORVAN_NOTE_ONE_ROW("planSquareFrame as one row", plan.rows, roi.height);
    for (std::int64_t r = 0; r < plan.rows; ++r) {
      const unsigned char* const from = rowAt(src, srcStep, r);
      unsigned char* const to = rowAt(dst, dstStep, r);
      if (ZORVAN_PLANNED("planSquareFrame near", plan.prefetchBytes == 0)) {
        squareRow<Vector, false, false>(from, to, plan.rowPixels, 0);
      } else if (ZORVAN_PLANNED("planSquareFrame streaming", plan.streaming && isAligned(to, 4))) {
        squareRow<Vector, true, true>(from, to, plan.rowPixels, plan.prefetchBytes);
      } else {
        squareRow<Vector32, true, false>(from, to, plan.rowPixels, plan.prefetchBytes);
      }
    }
  }
};
#else
template <class Vector>
struct SquareFrame;
#endif

/// Row by row with 16 bytes at a time, whatever the size.
struct SquareByRow {
  static void run(const unsigned char* src, int srcStep, unsigned char* dst, int dstStep, Size roi, bool) {
    for (std::int64_t r = 0; r < roi.height; ++r) {
      floatsRow16<SquareFloats, 8>(rowAt(src, wholePixels(srcStep), r), rowAt(dst, wholePixels(dstStep), r),
                                   roi.width);
    }
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
