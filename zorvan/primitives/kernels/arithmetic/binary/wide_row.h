#pragma once

// Scaled operations on a row with 32-byte stores: the newest two variants.
//
// No head: loads and stores take any address. Passes of 64 or 32 bytes, then ever smaller steps down to one
// pixel, each on a vector that is loaded and stored in part.

#include <utility>

#include "zorvan/primitives/kernels/arithmetic/binary/pixel_operations.h"
#include "zorvan/primitives/kernels/arithmetic/binary/row_sources.h"

#ifdef __AVX2__
namespace Zorvan::Primitives {
namespace {

template <int... steps, class Pixels, class A, class B>
inline void remainderInSteps(std::integer_sequence<int, steps...>, const Pixels& pixels, A a, B b,
                             unsigned char* dst, std::int64_t i, std::int64_t length) {
  const auto run = [&]<int bytes>() {
    for (; i + bytes <= length; i += bytes) {
      storeLow<bytes>(dst + i, pixels.lanes(a.template few<bytes>(i), b.template few<bytes>(i)));
    }
  };
  (run.template operator()<steps>(), ...);
}

template <class Pixels, class A, class B>
inline void widePass(const Pixels& pixels, A a, B b, unsigned char* dst, std::int64_t i) {
  constexpr int passBytes = planWidePass(sizeof(typename Pixels::Pixel), Pixels::scaling);
  for (int j = 0; j < passBytes; j += 32) {
    const auto x = a.template lanes<__m256i, false>(i + j);
    const auto y = b.template lanes<__m256i, false>(i + j);
    storeLanes<false>(dst + i + j, pixels.lanes(x, y));
  }
}

/// Two passes a turn: one alone is slower on images that come from memory. `whole`: the row is passes and
/// nothing else. `ahead`: what is read is asked for ahead of the passes.
template <bool whole, bool ahead, class Pixels, class A, class B>
inline void wideRow(const Pixels& pixels, A a, B b, unsigned char* dst, std::int64_t length) {
  constexpr int size = sizeof(typename Pixels::Pixel);
  constexpr int passBytes = planWidePass(size, Pixels::scaling);
  const std::int64_t end = whole ? length : length & -passBytes;
  std::int64_t i = 0;
  const auto pass = [&] {
    if constexpr (ahead) a.prefetch(i), b.prefetch(i);
    widePass(pixels, a, b, dst, i);
    i += passBytes;
  };
  while (i + 2 * passBytes <= end) pass(), pass();
  if (i != end) pass();
  if (whole || i == length) return;
  if constexpr (size == 2) {
    remainderInSteps(std::integer_sequence<int, 16, 4, 2>{}, pixels, a, b, dst, i, length);
  } else if constexpr (passBytes == 64) {
    remainderInSteps(std::integer_sequence<int, 16, 8, 4, 2, 1>{}, pixels, a, b, dst, i, length);
  } else {
    remainderInSteps(std::integer_sequence<int, 8, 4, 2, 1>{}, pixels, a, b, dst, i, length);
  }
}

}  // namespace
}  // namespace Zorvan::Primitives
#endif
