#pragma once

// Which regions are asked for ahead of their reading. Pure, so that the limit can be tested on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Primitives {
namespace {

/// Smaller regions may lie in the nearest cache, where asking takes as long as reading.
inline constexpr std::int64_t readAheadBytes = 32768;

constexpr bool readsAhead(Size roi, int pixelBytes) {
  return std::int64_t{roi.width} * roi.height >= readAheadBytes / pixelBytes;
}

}  // namespace
}  // namespace Zorvan::Primitives
