#pragma once

// The rows of a region and those above and below it: rows outside that are not in memory are the nearest row,
// or a row of the constant in the work memory.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/neighbourhood/border_word.h"
#include "zorvan/primitives/kernels/simd/short_runs.h"

namespace Zorvan::Primitives {
namespace {

template <class T>
struct BorderRows {
  Plane<const T> src;
  std::int64_t height;
  bool aboveInMemory, belowInMemory;
  const T* constant;  ///< column 0 of a row of constants; null where rows outside are the nearest row

  /// Of a region with the type replicate or constant, unless all sides are in memory. `room` has space for a
  /// row of the region with `reach` pixels on both sides.
  BorderRows(Plane<const T> source, Size roi, BorderWord word, T value, T* room, int reach)
      : src(source),
        height(roi.height),
        aboveInMemory(word.has(BorderWord::aboveInMemory)),
        belowInMemory(word.has(BorderWord::belowInMemory)),
        constant(word.type() == BorderType::replicate ? nullptr : room + reach) {
    if (constant == nullptr || (aboveInMemory && belowInMemory)) return;
    using Bits = typename PixelBits<sizeof(T)>::type;
    fillRun(room, __builtin_bit_cast(Bits, value), std::int64_t{roi.width} + 2 * reach);
  }

  const T* at(std::int64_t r) const {
    if (r < 0 && !aboveInMemory) return constant != nullptr ? constant : src.at(0);
    if (r >= height && !belowInMemory) return constant != nullptr ? constant : src.at(height - 1);
    return src.at(r);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
