#pragma once

// Minimum and maximum of unsigned words with 16-byte vectors: the older variants.
//
// The current value is a scalar. Rows below 11 pixels go in groups of 4 in 32-bit lanes and in single pixels.
// Longer rows are peeled to a 16-byte boundary unless their address is odd. Their main loop takes 32 pixels
// with two accumulators; the tail goes in groups of 16, 8, 4 and 1.

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// Compares words as they are, or, with `Word` signed, with 0x8000 subtracted: before SSE4.1 only signed
/// words have minimum and maximum instructions.
template <Seek seek, class Word>
class WordExtreme16 {
  using Pixels = ExtremeLanes<seek, u16>;
  using Lanes = ExtremeLanes<seek, Word>;
  static constexpr u16 offset = std::is_signed_v<Word> ? 0x8000 : 0;

 public:
  static u16 find(Plane<const u16> src, Size roi) {
    u16 current = Pixels::neutral;
    for (std::int64_t r = 0; r < roi.height && current != Pixels::limit; ++r) {
      current = roi.width < 11 ? fewPixels(current, src.at(r), roi.width)
                               : manyPixels(current, src.at(r), roi.width);
    }
    return current;
  }

 private:
  static __m128i better32(__m128i a, __m128i b) {
    const __m128i swap = Pixels::low ? _mm_cmpgt_epi32(a, b) : _mm_cmpgt_epi32(b, a);
    return (swap & b) | (~swap & a);
  }

  static u16 fewPixels(u16 current, const u16* p, std::int64_t left) {
    if (left >= 4) {
      __m128i lanes = _mm_set1_epi32(current);
      for (; left >= 4; p += 4, left -= 4) {
        lanes = better32(lanes, _mm_unpacklo_epi16(loadLow<8>(p), _mm_setzero_si128()));
      }
      current = static_cast<u16>(fold<int>(lanes, better32));
    }
    return scalar(current, p, left);
  }

  static u16 scalar(u16 current, const u16* p, std::int64_t left) {
    for (; left != 0; ++p, --left) current = Pixels::better(current, loadAs<u16>(p));
    return current;
  }

  static u16 manyPixels(u16 current, const u16* p, std::int64_t left) {
    if (isAligned(p, 2)) {
      const std::int64_t peel = bytesToBoundary(p, 16) / 2;
      current = scalar(current, p, peel);
      p += peel;
      left -= peel;
    }
    const auto shifted = [](Vector16 words) { return words.bits ^ Vector16::broadcast(offset).bits; };
    const auto add = [&](__m128i& lanes, const u16* at) {
      lanes = Lanes::better(lanes, shifted(Vector16::load(at)));
    };
    __m128i a = shifted(Vector16::broadcast(current)), b = a;
    for (; left >= 32; p += 32, left -= 32) {
      add(a, p);
      add(b, p + 8);
      add(a, p + 16);
      add(b, p + 24);
    }
    if (left >= 16) {
      add(a, p);
      add(b, p + 8);
      p += 16;
      left -= 16;
    }
    if (left >= 8) {
      add(a, p);
      p += 8;
      left -= 8;
    }
    return fewPixels(static_cast<u16>(Lanes::bestOf(Lanes::better(a, b)) ^ offset), p, left);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
