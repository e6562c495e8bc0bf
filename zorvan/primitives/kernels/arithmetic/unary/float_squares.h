#pragma once

// Squares of float images. Any address; prefetches may lie outside the image.

#include "zorvan/primitives/kernels/arithmetic/unary/float_rows.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_images.h"
#include "zorvan/primitives/kernels/arithmetic/unary/unary_plan.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"

namespace Zorvan::Primitives::Unary {
namespace {

#ifdef __AVX__
/// Small vectors up to a cache line, then one cache line at a time, unrolled by 4.
template <class Vector, bool prefetched, bool streaming>
inline void squareRow(const unsigned char* src, unsigned char* dst, std::int64_t n,
                      std::int64_t prefetchBytes) {
  const std::int64_t peel = planPeel(addressOf(dst), n, 64);
  floatsPartial<SquareFloats>(src, dst, peel);
  src += 4 * peel;
  dst += 4 * peel;
  n -= peel;
  const auto line = [&](int at) {
    if constexpr (prefetched) prefetch(src + at, prefetchBytes);
    floatsLine<SquareFloats, Vector, streaming>(src + at, dst + at);
  };
  for (; n >= 64; src += 256, dst += 256, n -= 64) line(0), line(64), line(128), line(192);
  for (; n >= 16; src += 64, dst += 64, n -= 16) line(0);
  floatsPartial<SquareFloats>(src, dst, n);
  if constexpr (streaming) fenceStores();
}

/// The newest three variants: joins the rows where it can, and chooses prefetches and streaming from the size
/// of the image. With prefetches and ordinary stores the loop waits for memory, and longer with 64-byte
/// vectors.
template <class Vector>
struct SquareImage {
  static void run(const UnaryImages& images, Size roi) {
    const SquarePlan plan = planSquareImage(roi, images.src.step, images.dst.step, images.inPlace);
    ZORVAN_NOTE_ONE_ROW("planSquareImage as one row", plan.rows, roi.height);
    const auto square = [&](const u8* src, u8* dst) {
      if (ZORVAN_PLANNED("planSquareImage near", plan.prefetchBytes == 0)) {
        squareRow<Vector, false, false>(src, dst, plan.rowPixels, 0);
      } else if (ZORVAN_PLANNED("planSquareImage streaming", plan.streaming && isAligned(dst, 4))) {
        squareRow<Vector, true, true>(src, dst, plan.rowPixels, plan.prefetchBytes);
      } else {
        squareRow<Vector32, true, false>(src, dst, plan.rowPixels, plan.prefetchBytes);
      }
    };
    forEachRow(plan.rows, square, images.src, images.dst);
  }
};
#else
template <class Vector>
struct SquareImage;
#endif

/// Row by row with 16-byte vectors, for images of every size.
struct SquareRows16 {
  static void run(const UnaryImages& call, Size roi) {
    const UnaryImages images = call.atWholePixels();
    const auto square = [&](const u8* src, u8* dst) { floatsRow16<SquareFloats, 8>(src, dst, roi.width); };
    forEachRow(roi.height, square, images.src, images.dst);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Unary
