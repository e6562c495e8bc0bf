#pragma once

// Scaled operations on a row with 32-byte stores: the newest two variants.
//
// No peel: loads and stores take any address. The tail goes in halving sizes down to one pixel, each a vector
// that is loaded and stored in part.

#include <utility>

#include "zorvan/primitives/kernels/arithmetic/binary/pixel_operations.h"
#include "zorvan/primitives/kernels/arithmetic/binary/row_sources.h"

#ifdef __AVX2__
namespace Zorvan::Primitives::Arithmetic {
namespace {

/// The rest of a row, shorter than twice `bits`, a power of two: for each of its bits vectors of the largest
/// of the sizes that is not above it. A loop for each size would be slower, since most have one iteration.
template <int bits, int size, int... smaller, class Pixels, class A, class B>
[[gnu::always_inline]] inline void scaledTail(std::integer_sequence<int, size, smaller...> sizes,
                                              const Pixels& pixels, A a, B b, unsigned char* dst,
                                              std::int64_t i, std::int64_t length) {
  if constexpr (bits < size) {
    scaledTail<bits>(std::integer_sequence<int, smaller...>(), pixels, a, b, dst, i, length);
  } else {
    if ((length - i) & bits) {
      for (int j = 0; j < bits; j += size) {
        const auto x = a.template lowLanes<size>(i + j), y = b.template lowLanes<size>(i + j);
        storeLow<size>(dst + i + j, pixels.lanes(x, y));
      }
      i += bits;
    }
    constexpr bool last = sizeof...(smaller) == 0 && bits == size;
    if constexpr (!last) scaledTail<bits / 2>(sizes, pixels, a, b, dst, i, length);
  }
}

template <class Pixels, class A, class B>
inline void scaledIteration32(const Pixels& pixels, A a, B b, unsigned char* dst, std::int64_t i) {
  constexpr int iterationBytes = planScaledRow32(sizeof(typename Pixels::Pixel), Pixels::scaling);
  for (int j = 0; j < iterationBytes; j += 32) {
    const auto x = a.template lanes<__m256i, false>(i + j);
    const auto y = b.template lanes<__m256i, false>(i + j);
    storeLanes<false>(dst + i + j, pixels.lanes(x, y));
  }
}

/// Unrolled by 2: a single iteration is slower on images that come from memory. `whole`: the row has no tail.
template <bool whole, bool prefetching, class Pixels, class A, class B>
inline void scaledRow32(const Pixels& pixels, A a, B b, unsigned char* dst, std::int64_t length) {
  constexpr int size = sizeof(typename Pixels::Pixel);
  constexpr int iterationBytes = planScaledRow32(size, Pixels::scaling);
  const std::int64_t end = whole ? length : length & -iterationBytes;
  std::int64_t i = 0;
  const auto iteration = [&] {
    if constexpr (prefetching) a.prefetch(i), b.prefetch(i);
    scaledIteration32(pixels, a, b, dst, i);
    i += iterationBytes;
  };
  while (i + 2 * iterationBytes <= end) iteration(), iteration();
  if (i != end) iteration();
  if (whole || i == length) return;
  if constexpr (size == 2) {
    scaledTail<iterationBytes / 2>(std::integer_sequence<int, 16, 4, 2>{}, pixels, a, b, dst, i, length);
  } else if constexpr (iterationBytes == 64) {
    scaledTail<iterationBytes / 2>(std::integer_sequence<int, 16, 8, 4, 2, 1>{}, pixels, a, b, dst, i,
                                   length);
  } else {
    scaledTail<iterationBytes / 2>(std::integer_sequence<int, 8, 4, 2, 1>{}, pixels, a, b, dst, i, length);
  }
}

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
#endif
