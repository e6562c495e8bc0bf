#pragma once

// Which images that are updated where they lie are asked for ahead of the loop. Pure, so that the limit can
// be tested on any machine.

#include <cstdint>

namespace Zorvan::Primitives {
namespace {

/// The nearer caches hold smaller images, and their prefetchers are fast enough for them.
inline constexpr std::int64_t updateAheadFromBytes = 0x100000;

constexpr bool updatesAhead(bool inPlace, std::int64_t bytes) {
  return inPlace && bytes >= updateAheadFromBytes;
}

}  // namespace
}  // namespace Zorvan::Primitives
