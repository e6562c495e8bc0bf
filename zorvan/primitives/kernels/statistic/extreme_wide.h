#pragma once

// Minimum and maximum of integers with vectors of 32 bytes on two accumulators, which the widest variant
// keeps in both halves of registers of 64: the two newest variants.
//
// A row begins with one unaligned step and goes on from the boundary behind it; where no pixel starts on that
// boundary the row runs unaligned. What is left of a row at the end is covered by one step that ends exactly
// where the row does: rereading pixels changes no extreme. Rows shorter than a vector go pixel by pixel, or
// in one masked load.
//
// The search is over after the first row that holds the best value of the type; no later row is read. Each
// row has accumulators of its own, so that its test waits for no other row.

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
    const auto inRows = [=](auto bestOfRow) {
      __m256i held = Lanes::spread32(Lanes::neutral);
      const auto* p = reinterpret_cast<const unsigned char*>(src);
      for (int r = 0; r < roi.height; ++r, p += srcStep) {
        const __m256i row = bestOfRow(p, bytes);
        if (Lanes::holds(row, Lanes::best)) return Lanes::best;
        held = Lanes::better(held, row);
      }
      return Lanes::bestOf(held);
    };
    if (bytes <= 64) return inRows([](auto p, auto length) { return ofTwo<Vector32>(p, length); });
#ifdef __AVX512BW__
    if (bytes <= 128) return inRows([](auto p, auto length) { return ofTwo<Vector64>(p, length); });
    return inRows([](auto p, auto length) { return ofMany<Vector64>(p, length); });
#else
    return inRows([](auto p, auto length) { return ofMany<Vector32>(p, length); });
#endif
  }

 private:
  /// A row of one or two vectors, without a branch: short rows feel each of them.
  template <class Vector>
  static __m256i ofTwo(const unsigned char* p, std::int64_t bytes) {
    return Lanes::in32(Lanes::better(Vector::load(p).bits, Vector::load(p + bytes - Vector::size).bits));
  }

  /// A row of more than two vectors.
  template <class Vector>
  static __m256i ofMany(const unsigned char* p, std::int64_t bytes) {
    constexpr int size = Vector::size;
    readAhead(p);
    const unsigned char* const last = p + bytes - size;
    auto a = Vector::load(p).bits, b = a;
    const std::int64_t toBoundary = bytesToBoundary(p, size);
    p += toBoundary != 0 && toBoundary % std::int64_t{sizeof(T)} == 0 ? toBoundary : size;
    for (; last - p > 2 * size; p += 2 * size) {
      for (int line = 0; line < 2 * size; line += 64) readAhead(p + line);
      a = Lanes::better(a, Vector::load(p).bits);
      b = Lanes::better(b, Vector::load(p + size).bits);
    }
    readAhead(p);
    readAhead(last);
    a = Lanes::better(a, Vector::load(p).bits);
    if (last - p > size) b = Lanes::better(b, Vector::load(p + size).bits);
    b = Lanes::better(b, Vector::load(last).bits);
    return Lanes::in32(Lanes::better(a, b));
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
#endif
