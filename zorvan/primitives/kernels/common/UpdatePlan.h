#pragma once

// Which images that are updated where they lie are asked for ahead of the loop. Pure, so that the limits can
// be tested on any machine.

#include <cstdint>

namespace Zorvan::Primitives {
namespace {

/// The nearer caches hold smaller images, and their prefetchers are fast enough for them. Larger ones come
/// from memory, of which the processor has enough on the way on its own.
inline constexpr std::int64_t updateAheadFromBytes = 0x100000, updateAheadUpToBytes = 0x400000;

constexpr bool updatesAhead(bool inPlace, std::int64_t bytes) {
  return inPlace && bytes >= updateAheadFromBytes && bytes <= updateAheadUpToBytes;
}

}  // namespace
}  // namespace Zorvan::Primitives
