#pragma once

// How far ahead of its reading a region is asked for. Pure, so that the limits can be tested on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives {
namespace {

/// In bytes; 0 where nothing is asked for.
struct ReadAheadDistances {
  int near;  ///< for regions from `nearBytes` on
  int far;   ///< for regions from `farBytes` on
};

constexpr ReadAheadDistances usualDistances{2048, 8192};

/// For loops with an operation or two for each vector: so many of their loads are under way at once that the
/// memory has no gaps to fill, and asking would only take turns from them.
constexpr ReadAheadDistances lightDistances{4096, 0};

/// For sums of words, which take more operations for each vector than other loops at the memory's pace.
constexpr ReadAheadDistances wordSumDistances{2048, 16384};

constexpr int planReadAhead(Size roi, int pixelBytes, ReadAheadDistances distances = usualDistances) {
  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  if (pixels >= farBytes / pixelBytes) return distances.far;
  return pixels >= nearBytes / pixelBytes ? distances.near : 0;
}

}  // namespace
}  // namespace Zorvan::Primitives
