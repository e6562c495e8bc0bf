#pragma once

// Operations on vectors at an end of a row: its first or last pixel in all lanes, and vectors that begin
// between two others.

#include <cstdint>

#include "zorvan/primitives/kernels/morphology/pixel_lanes.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// One pixel in all lanes.
template <class Lanes>
inline Lanes broadcastFirst(Lanes a) {
  return {repeatFirst(a.bits)};
}
template <class Lanes>
inline Lanes broadcastLast(Lanes a) {
  return {repeatLast(a.bits)};
}

/// The lanes from `n` on, then those of `next`. Through memory, since the instructions need a constant `n`.
template <class Lanes>
inline Lanes fromLane(Lanes a, Lanes next, std::int64_t n) {
  alignas(64) typename Lanes::Pixel pixels[2 * Lanes::count];
  a.store(pixels);
  next.store(pixels + Lanes::count);
  return Lanes::load(pixels + n);
}

/// The lanes to store where all but the last `n` pixels of a vector are stored already: these, or all of
/// them where there are no mask registers.
template <class Lanes>
inline auto lastLanes([[maybe_unused]] std::int64_t n) {
  if constexpr (Lanes::hasMasks) {
    return static_cast<typename Lanes::Partial>(~Lanes::first(Lanes::count - n));
  } else {
    return AllLanes{};
  }
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
