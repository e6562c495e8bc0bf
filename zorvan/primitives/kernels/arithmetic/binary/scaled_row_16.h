#pragma once

// Scaled operations on a row with 16-byte stores: the older four variants.
//
// A long enough row is peeled pixel by pixel to a 16-byte boundary of the destination, then runs in vectors,
// by one of four copies of the loop for the alignment of its two sources. A row of 16-bit pixels at an odd
// address never reaches a boundary; it runs in vectors with stores for any address. The tail goes pixel by
// pixel; bytes without scaling go 16 and 8 at a time before it where the destination overlaps neither source.

#include "zorvan/primitives/kernels/arithmetic/binary/pixel_operations.h"
#include "zorvan/primitives/kernels/arithmetic/binary/row_sources.h"

namespace Zorvan::Primitives::Arithmetic {
namespace {

template <int iterationBytes, bool alignedA, bool alignedB, bool alignedStores, class Pixels, class A,
          class B>
inline std::int64_t scaledVectors16(const Pixels& pixels, A a, B b, unsigned char* dst, std::int64_t i,
                                    std::int64_t length) {
  for (; i + iterationBytes <= length; i += iterationBytes) {
    for (int j = 0; j < iterationBytes; j += 16) {
      const auto x = a.template lanes<__m128i, alignedA>(i + j);
      const auto y = b.template lanes<__m128i, alignedB>(i + j);
      storeLanes<alignedStores>(dst + i + j, pixels.lanes(x, y));
    }
  }
  return i;
}

template <class Pixels, class A, class B>
inline void scaledRow16(const Pixels& pixels, A a, B b, unsigned char* dst, std::int64_t length) {
  using T = typename Pixels::Pixel;
  constexpr std::int64_t size = sizeof(T);
  constexpr ScaledRow16Plan plan = planScaledRow16(Pixels::operation, size, Pixels::scaling);
  constexpr int iterationBytes = plan.iterationBytes;

  std::int64_t i = 0;
  const auto pixelsUpTo = [&](std::int64_t end) {
    for (; i < end; i += size) storeAs(dst + i, pixels.pixel(a.pixel(i), b.pixel(i)));
  };
  if (length >= plan.vectorsFromPixels * size) {
    const std::int64_t peel = bytesToBoundary(dst, 16);
    if (peel % size != 0) {
      i = scaledVectors16<iterationBytes, false, false, false>(pixels, a, b, dst, i, length);
    } else {
      pixelsUpTo(peel);
      const bool alignedA = a.isAlignedAt(i), alignedB = b.isAlignedAt(i);
      if (alignedA && alignedB) {
        i = scaledVectors16<iterationBytes, true, true, true>(pixels, a, b, dst, i, length);
      } else if (alignedA) {
        i = scaledVectors16<iterationBytes, true, false, true>(pixels, a, b, dst, i, length);
      } else if (alignedB) {
        i = scaledVectors16<iterationBytes, false, true, true>(pixels, a, b, dst, i, length);
      } else {
        i = scaledVectors16<iterationBytes, false, false, true>(pixels, a, b, dst, i, length);
      }
    }
    if constexpr (plan.tailInVectors) {
      if (!a.overlaps(dst, length) && !b.overlaps(dst, length)) {
        const auto lowLanes = [&]<int bytes>() {
          if (i + bytes > length) return;
          storeLow<bytes>(dst + i,
                          pixels.lanes(a.template lowLanes<bytes>(i), b.template lowLanes<bytes>(i)));
          i += bytes;
        };
        lowLanes.template operator()<16>();
        lowLanes.template operator()<8>();
      }
    }
  }
  pixelsUpTo(length);
}

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
