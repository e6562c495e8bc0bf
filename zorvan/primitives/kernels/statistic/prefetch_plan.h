#pragma once

// How far after the loads of a reduction its prefetches lie. Pure, so that the limits can be tested on any
// machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// In bytes; 0 for no prefetch.
struct PrefetchDistances {
  int near;  ///< for regions from `nearBytes` on
  int far;   ///< for regions from `farBytes` on
};

constexpr PrefetchDistances usualDistances{2048, 8192};

/// For loops with one or two operations for each vector: enough of their loads are in flight to keep the
/// memory busy, and prefetches would only compete with them.
constexpr PrefetchDistances lightDistances{4096, 0};

/// For sums of words, which take more operations for each vector than other loops that wait for memory.
constexpr PrefetchDistances wordSumDistances{2048, 16384};

constexpr int planPrefetch(Size roi, int pixelBytes, PrefetchDistances distances = usualDistances) {
  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  if (pixels >= farBytes / pixelBytes) return distances.far;
  return pixels >= nearBytes / pixelBytes ? distances.near : 0;
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
