#pragma once

// The rows of a region and those above and below it: rows outside that are not in memory are the nearest row,
// the mirrored row, or a row of the constant in the work memory.

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
  bool mirrors;
  const T* constant;  ///< column 0 of a row of constants; null where rows outside are rows of the region

  /// `room` has space for a row of the region with `reach` pixels on both sides.
  BorderRows(Plane<const T> source, Size roi, BorderWord word, T value, T* room, int reach)
      : src(source),
        height(roi.height),
        aboveInMemory(word.has(BorderWord::aboveInMemory)),
        belowInMemory(word.has(BorderWord::belowInMemory)),
        mirrors(word.type() == BorderType::mirror),
        constant(word.type() == BorderType::constant ? room + reach : nullptr) {
    if (constant == nullptr || (aboveInMemory && belowInMemory)) return;
    using Bits = typename PixelBits<sizeof(T)>::type;
    fillRun(room, __builtin_bit_cast(Bits, value), std::int64_t{roi.width} + 2 * reach);
  }

  const T* at(std::int64_t r) const {
    const bool inMemory = r < 0 ? aboveInMemory : r < height || belowInMemory;
    if (inMemory) return src.at(r);
    if (constant != nullptr) return constant;
    if (mirrors) return src.at(mirrored(r, height));
    return src.at(r < 0 ? 0 : height - 1);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
