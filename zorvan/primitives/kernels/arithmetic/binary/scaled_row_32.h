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

template <int... sizes, class Pixels, class A, class B>
inline void scaledTail(std::integer_sequence<int, sizes...>, const Pixels& pixels, A a, B b,
                       unsigned char* dst, std::int64_t i, std::int64_t length) {
  const auto run = [&]<int bytes>() {
    for (; i + bytes <= length; i += bytes) {
      storeLow<bytes>(dst + i, pixels.lanes(a.template lowLanes<bytes>(i), b.template lowLanes<bytes>(i)));
    }
  };
  (run.template operator()<sizes>(), ...);
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
    scaledTail(std::integer_sequence<int, 16, 4, 2>{}, pixels, a, b, dst, i, length);
  } else if constexpr (iterationBytes == 64) {
    scaledTail(std::integer_sequence<int, 16, 8, 4, 2, 1>{}, pixels, a, b, dst, i, length);
  } else {
    scaledTail(std::integer_sequence<int, 8, 4, 2, 1>{}, pixels, a, b, dst, i, length);
  }
}

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
#endif
