#pragma once

// Minimum and maximum of integers with 32-byte vectors: the two newest variants.
//
// A row that does not start on a 32-byte boundary begins with one unaligned step and goes on from the
// boundary behind it; where no pixel starts on that boundary the row runs unaligned. What is left of a row at
// the end is covered by one step that ends exactly where the row does: rereading pixels changes no extreme.
// Rows shorter than a vector go pixel by pixel, or in one masked load. The search is over after the first row
// that holds the best value of the type; no later row is read.

#include "zorvan/primitives/kernels/common/Arguments.h"
#include "zorvan/primitives/kernels/statistic/extreme_lanes.h"
#include "zorvan/primitives/kernels/statistic/read_ahead.h"

#ifdef __AVX2__
namespace Zorvan::Primitives {
namespace {

struct ShortRowsSingly {
  template <class Lanes, class T>
  static T find(const T* src, int srcStep, Size roi) {
    T held = Lanes::neutral;
    for (std::int64_t r = 0; r < roi.height && held != Lanes::best; ++r) {
      const T* row = rowAt(src, srcStep, r);
      for (int c = 0; c < roi.width; ++c) {
        held = Lanes::better(held, loadAs<T>(reinterpret_cast<const char*>(row) + c * int{sizeof(T)}));
      }
    }
    return held;
  }
};

#ifdef __AVX512BW__
/// The maximum of bytes: the zeros of a masked load are neutral.
struct ShortRowsMasked {
  template <class Lanes>
  static std::uint8_t find(const std::uint8_t* src, int srcStep, Size roi) {
    static_assert(Lanes::neutral == 0);
    const __mmask32 inRow = _bzhi_u32(~0u, static_cast<unsigned>(roi.width));
    __m256i held = _mm256_setzero_si256();
    for (std::int64_t r = 0; r < roi.height; ++r) {
      held = Lanes::better(held, _mm256_maskz_loadu_epi8(inRow, rowAt(src, srcStep, r)));
      if (Lanes::holds(held, Lanes::best)) return Lanes::best;
    }
    return Lanes::bestOf(held);
  }
};
#endif

template <class Lanes, class ShortRows>
class WideExtreme {
  using T = typename Lanes::Pixel;

 public:
  static T find(const T* src, int srcStep, Size roi) {
    if (roi.width < Lanes::lanes32) return ShortRows::template find<Lanes>(src, srcStep, roi);
    const std::int64_t bytes = std::int64_t{roi.width} * std::int64_t{sizeof(T)};
    const bool wholeSteps = isAligned(src, 32) && srcStep % 32 == 0 && bytes % 64 == 0;
    const auto inRows = [=](auto row) {
      __m256i a = Lanes::spread32(Lanes::neutral), b = a;
      const auto* p = reinterpret_cast<const unsigned char*>(src);
      for (int r = 0; r < roi.height; ++r, p += srcStep) {
        row(p, bytes, a, b);
        if (Lanes::holds(Lanes::better(a, b), Lanes::best)) return Lanes::best;
      }
      return Lanes::bestOf(Lanes::better(a, b));
    };
    return wholeSteps ? inRows([](auto p, auto length, auto& a, auto& b) { wholeRow(p, length, a, b); })
                      : inRows([](auto p, auto length, auto& a, auto& b) { anyRow(p, length, a, b); });
  }

 private:
  /// A row without a head or a rest: images of common sizes have no others, and small ones feel each branch.
  static void wholeRow(const unsigned char* p, std::int64_t bytes, __m256i& a, __m256i& b) {
    for (const unsigned char* const end = p + bytes; p != end; p += 64) {
      readAhead(p);
      a = Lanes::better(a, Vector32::load(p).bits);
      b = Lanes::better(b, Vector32::load(p + 32).bits);
    }
  }

  static void anyRow(const unsigned char* p, std::int64_t bytes, __m256i& a, __m256i& b) {
    const unsigned char* const end = p + bytes;
    const std::int64_t toBoundary = bytesToBoundary(p, 32);
    if (toBoundary != 0 && toBoundary % std::int64_t{sizeof(T)} == 0) {
      a = Lanes::better(a, Vector32::load(p).bits);
      p += toBoundary;
    }
    for (; end - p >= 128; p += 128) {
      readAhead(p);
      readAhead(p + 64);
      a = Lanes::better(a, Vector32::load(p).bits);
      b = Lanes::better(b, Vector32::load(p + 32).bits);
      a = Lanes::better(a, Vector32::load(p + 64).bits);
      b = Lanes::better(b, Vector32::load(p + 96).bits);
    }
    if (end - p >= 64) {
      a = Lanes::better(a, Vector32::load(p).bits);
      b = Lanes::better(b, Vector32::load(p + 32).bits);
      p += 64;
    }
    if (end - p >= 32) {
      a = Lanes::better(a, Vector32::load(p).bits);
      p += 32;
    }
    if (p != end) b = Lanes::better(b, Vector32::load(end - 32).bits);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
#endif
