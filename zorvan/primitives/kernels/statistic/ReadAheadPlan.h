#pragma once

// How far ahead of its reading a region is asked for. Pure, so that the limits can be tested on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Primitives {
namespace {

/// Smaller regions lie in the first or second cache, from where loads come in time; asking would only take
/// their places.
constexpr std::int64_t nearBytes = std::int64_t{3} << 19;

/// Smaller regions lie in the third cache, which answers sooner than the memory behind it.
constexpr std::int64_t farBytes = std::int64_t{8} << 20;

/// In bytes; 0 for regions that are not asked for.
constexpr int planReadAhead(Size roi, int pixelBytes) {
  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  if (pixels >= farBytes / pixelBytes) return 8192;
  return pixels >= nearBytes / pixelBytes ? 2048 : 0;
}

}  // namespace
}  // namespace Zorvan::Primitives
