#pragma once

// Operations on vectors that reach over an end of a row.

#include <cstdint>
#include <type_traits>

#include "zorvan/primitives/kernels/morphology/pixel_lanes.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// The last lanes of a vector, by their number of bytes, where there are no mask registers.
struct LastBytes {
  std::int64_t bytes;
};

/// What vectors with mask registers have as members, for the others. It goes through memory, which costs
/// little: only the ends of rows need it.
template <class Lanes>
struct EndsThroughMemory {
  using Pixel = typename Lanes::Pixel;
  static constexpr std::int64_t pixelBytes = sizeof(Pixel), bytes = Lanes::count * pixelBytes;

  template <class Active>
  static Lanes load(const Pixel* p, Active lanes) {
    return Lanes::load(p, lanes);
  }
  static Lanes load(const Pixel* p, LastBytes lanes) {
    Pixel pixels[2 * Lanes::count] = {};
    const std::int64_t first = Lanes::count - lanes.bytes / pixelBytes;
    Lanes::load(p + first, FirstBytes{lanes.bytes}).store(pixels + first);
    return Lanes::load(pixels);
  }

  static LastBytes last(std::int64_t n) { return {n * pixelBytes}; }
  static Lanes blend(FirstBytes lanes, Lanes a, Lanes b) {
    static constexpr std::int32_t ones[16] = {-1, -1, -1, -1, -1, -1, -1, -1};
    const auto* const end = reinterpret_cast<const unsigned char*>(ones + 8);
    return Lanes::select(Lanes::load(reinterpret_cast<const Pixel*>(end - lanes.bytes)), a, b);
  }
  static Lanes blend(LastBytes lanes, Lanes a, Lanes b) {
    return blend(FirstBytes{bytes - lanes.bytes}, b, a);
  }

  using Place = std::int64_t;
  static Place place(std::int64_t i) { return i; }
  static Lanes broadcastLane(Lanes a, Place from) {
    Pixel pixels[Lanes::count];
    a.store(pixels);
    return Lanes::broadcast(pixels[from]);
  }
  static Lanes broadcastFirst(Lanes a) { return broadcastLane(a, 0); }
};

template <class Lanes>
using LaneEnds = std::conditional_t<Lanes::hasMasks, Lanes, EndsThroughMemory<Lanes>>;

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
