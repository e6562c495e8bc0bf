#pragma once

// Scaled operations on a row with 16-byte stores: the older four variants.
//
// A row long enough runs pixel by pixel to a 16-byte boundary of the destination, then in passes, in one of
// four copies for the alignment of its two sources. A row of 16-bit pixels at an odd address never comes to a
// boundary; it runs in the same passes with stores for any address. What is left goes pixel by pixel, bytes
// without scaling first 16 and 8 at a time where the destination overlaps neither source.

#include "zorvan/primitives/kernels/arithmetic/binary/pixel_operations.h"
#include "zorvan/primitives/kernels/arithmetic/binary/row_sources.h"

namespace Zorvan::Primitives {
namespace {

template <int passBytes, bool alignedA, bool alignedB, bool alignedStores, class Pixels, class A, class B>
inline std::int64_t narrowPasses(const Pixels& pixels, A a, B b, unsigned char* dst, std::int64_t i,
                                 std::int64_t length) {
  for (; i + passBytes <= length; i += passBytes) {
    for (int j = 0; j < passBytes; j += 16) {
      const auto x = a.template lanes<__m128i, alignedA>(i + j);
      const auto y = b.template lanes<__m128i, alignedB>(i + j);
      storeLanes<alignedStores>(dst + i + j, pixels.lanes(x, y));
    }
  }
  return i;
}

template <class Pixels, class A, class B>
inline void narrowRow(const Pixels& pixels, A a, B b, unsigned char* dst, std::int64_t length) {
  using T = typename Pixels::Pixel;
  constexpr std::int64_t size = sizeof(T);
  constexpr NarrowRowPlan plan = planNarrowRow(Pixels::operation, size, Pixels::scaling);
  constexpr int passBytes = plan.passBytes;

  std::int64_t i = 0;
  const auto pixelsUpTo = [&](std::int64_t end) {
    for (; i < end; i += size) storeAs(dst + i, pixels.pixel(a.pixel(i), b.pixel(i)));
  };
  if (length >= plan.passFromPixels * size) {
    const std::int64_t peel = bytesToBoundary(dst, 16);
    if (peel % size != 0) {
      i = narrowPasses<passBytes, false, false, false>(pixels, a, b, dst, i, length);
    } else {
      pixelsUpTo(peel);
      const bool alignedA = a.isAlignedAt(i), alignedB = b.isAlignedAt(i);
      if (alignedA && alignedB) {
        i = narrowPasses<passBytes, true, true, true>(pixels, a, b, dst, i, length);
      } else if (alignedA) {
        i = narrowPasses<passBytes, true, false, true>(pixels, a, b, dst, i, length);
      } else if (alignedB) {
        i = narrowPasses<passBytes, false, true, true>(pixels, a, b, dst, i, length);
      } else {
        i = narrowPasses<passBytes, false, false, true>(pixels, a, b, dst, i, length);
      }
    }
    if constexpr (plan.remainderInSteps) {
      if (!a.overlaps(dst, length) && !b.overlaps(dst, length)) {
        const auto step = [&]<int bytes>() {
          if (i + bytes > length) return;
          storeLow<bytes>(dst + i, pixels.lanes(a.template few<bytes>(i), b.template few<bytes>(i)));
          i += bytes;
        };
        step.template operator()<16>();
        step.template operator()<8>();
      }
    }
  }
  pixelsUpTo(length);
}

}  // namespace
}  // namespace Zorvan::Primitives
