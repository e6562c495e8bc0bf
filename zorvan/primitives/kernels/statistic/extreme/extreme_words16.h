#pragma once

// Minimum and maximum of unsigned words with 16-byte vectors: the older variants.
//
// The current value is a scalar. Rows below 11 pixels go in groups of 4 in 32-bit lanes and in single pixels.
// Longer rows are peeled to a 16-byte boundary unless their address is odd. Their main loop takes 32 pixels
// with two accumulators; the tail goes in groups of 16, 8, 4 and 1. Before SSE4.1 only signed words have
// minimum and maximum instructions: there the pixels are shifted into the signed range.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// Compares words as they are.
template <Seek seek>
struct PlainWords {
  using Lanes = ExtremeLanes<seek, std::uint16_t>;
  static __m128i shifted(__m128i words) { return words; }
  static std::uint16_t bestOf(__m128i lanes) { return Lanes::bestOf(lanes); }
};

/// Subtracts 0x8000 from words and compares them as signed ones.
template <Seek seek>
struct ShiftedWords {
  using Lanes = ExtremeLanes<seek, std::int16_t>;
  static __m128i shifted(__m128i words) { return _mm_xor_si128(words, _mm_set1_epi16(-0x8000)); }
  static std::uint16_t bestOf(__m128i lanes) {
    return static_cast<std::uint16_t>(Lanes::bestOf(lanes) ^ -0x8000);
  }
};

template <Seek seek, template <Seek> class Words>
class WordExtreme16 {
  using Of = ExtremeOf<seek, std::uint16_t>;
  using Form = Words<seek>;
  using Lanes = typename Form::Lanes;

 public:
  static std::uint16_t find(const std::uint16_t* src, int srcStep, Size roi) {
    std::uint16_t current = Of::neutral;
    for (std::int64_t r = 0; r < roi.height && current != Of::limit; ++r) {
      const auto* row = reinterpret_cast<const unsigned char*>(rowAt(src, srcStep, r));
      current = roi.width < 11 ? fewPixels(current, row, roi.width) : manyPixels(current, row, roi.width);
    }
    return current;
  }

 private:
  static __m128i better32(__m128i a, __m128i b) {
    const __m128i swap = Of::low ? _mm_cmpgt_epi32(a, b) : _mm_cmpgt_epi32(b, a);
    return _mm_or_si128(_mm_and_si128(swap, b), _mm_andnot_si128(swap, a));
  }

  static std::uint16_t fewPixels(std::uint16_t current, const unsigned char* p, std::int64_t left) {
    if (left >= 4) {
      __m128i lanes = _mm_set1_epi32(current);
      for (; left >= 4; p += 8, left -= 4) {
        const __m128i words = _mm_cvtsi64_si128(loadAs<std::int64_t>(p));
        lanes = better32(lanes, _mm_unpacklo_epi16(words, _mm_setzero_si128()));
      }
      lanes = better32(lanes, _mm_srli_si128(lanes, 8));
      lanes = better32(lanes, _mm_srli_si128(lanes, 4));
      current = static_cast<std::uint16_t>(_mm_cvtsi128_si32(lanes));
    }
    return scalar(current, p, left);
  }

  static std::uint16_t scalar(std::uint16_t current, const unsigned char* p, std::int64_t left) {
    for (; left != 0; p += 2, --left) current = Of::better(current, loadAs<std::uint16_t>(p));
    return current;
  }

  static std::uint16_t manyPixels(std::uint16_t current, const unsigned char* p, std::int64_t left) {
    if (isAligned(p, 2)) {
      const std::int64_t peel = bytesToBoundary(p, 16) / 2;
      current = scalar(current, p, peel);
      p += 2 * peel;
      left -= peel;
    }
    const auto load = [](const unsigned char* at) { return Form::shifted(Vector16::load(at).bits); };
    __m128i a = Form::shifted(_mm_set1_epi16(static_cast<short>(current))), b = a;
    for (; left >= 32; p += 64, left -= 32) {
      a = Lanes::better(a, load(p));
      b = Lanes::better(b, load(p + 16));
      a = Lanes::better(a, load(p + 32));
      b = Lanes::better(b, load(p + 48));
    }
    if (left >= 16) {
      a = Lanes::better(a, load(p));
      b = Lanes::better(b, load(p + 16));
      p += 32;
      left -= 16;
    }
    if (left >= 8) {
      a = Lanes::better(a, load(p));
      p += 16;
      left -= 8;
    }
    return fewPixels(Form::bestOf(Lanes::better(a, b)), p, left);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
