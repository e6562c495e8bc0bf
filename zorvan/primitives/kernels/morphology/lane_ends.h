#pragma once

// Operations on vectors that reach over an end of a row.

#include <cstdint>

#include "zorvan/primitives/kernels/morphology/pixel_lanes.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// The last lanes of a vector, by their number of bytes, where there are no mask registers.
struct LastBytes {
  std::int64_t bytes;
};

/// Through memory, which costs little: only the ends of rows need it.
template <class Lanes, bool masks = Lanes::hasMasks>
struct LaneEnds {
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

  /// The last `n` lanes, from one to all but one.
  static LastBytes last(std::int64_t n) { return {n * pixelBytes}; }
  /// `a` in the given lanes and `b` in the others.
  static Lanes blend(FirstBytes lanes, Lanes a, Lanes b) {
    static constexpr std::int32_t ones[16] = {-1, -1, -1, -1, -1, -1, -1, -1};
    const auto* const end = reinterpret_cast<const unsigned char*>(ones + 8);
    return {select(loadAs<typename Lanes::Bits>(end - lanes.bytes), a.bits, b.bits)};
  }
  static Lanes blend(LastBytes lanes, Lanes a, Lanes b) {
    return blend(FirstBytes{bytes - lanes.bytes}, b, a);
  }

  /// The position of a lane, to be broadcast.
  using Place = std::int64_t;
  static Place place(std::int64_t i) { return i; }
  static Lanes broadcastLane(Lanes a, Place from) {
    Pixel pixels[Lanes::count];
    a.store(pixels);
    return Lanes::broadcast(pixels[from]);
  }
  static Lanes broadcastFirst(Lanes a) { return broadcastLane(a, 0); }
};

#ifdef __AVX512BW__
/// In registers.
template <class Lanes>
struct LaneEnds<Lanes, true> {
  using Pixel = typename Lanes::Pixel;
  using Mask = typename Lanes::Partial;

  template <class Active>
  static Lanes load(const Pixel* p, Active lanes) {
    return Lanes::load(p, lanes);
  }
  static Mask last(std::int64_t n) { return static_cast<Mask>(~firstLanes<Mask>(Lanes::count - n)); }
  static Lanes blend(Mask lanes, Lanes a, Lanes b) {
    if constexpr (Lanes::areBytes) return {_mm512_mask_blend_epi8(lanes, b.bits, a.bits)};
    if constexpr (!Lanes::areBytes) return {_mm512_mask_blend_ps(lanes, b.bits, a.bits)};
  }

  struct Place {
    __m512i dwords, bytes;
  };
  static Place place(std::int64_t i) {
    constexpr int shift = Lanes::areBytes ? 2 : 0;
    return {_mm512_set1_epi32(static_cast<int>(i >> shift)), _mm512_set1_epi8(static_cast<char>(i & 3))};
  }
  static Lanes broadcastLane(Lanes a, Place from) {
    if constexpr (Lanes::areBytes) {
      return {_mm512_shuffle_epi8(_mm512_permutexvar_epi32(from.dwords, a.bits), from.bytes)};
    } else {
      return {_mm512_permutexvar_ps(from.dwords, a.bits)};
    }
  }
  static Lanes broadcastFirst(Lanes a) {
    if constexpr (Lanes::areBytes) return {_mm512_broadcastb_epi8(_mm512_castsi512_si128(a.bits))};
    if constexpr (!Lanes::areBytes) return {_mm512_broadcastss_ps(_mm512_castps512_ps128(a.bits))};
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
