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

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"
#include "zorvan/primitives/kernels/statistic/prefetch_rows.h"

#ifdef __AVX2__
namespace Zorvan::Primitives {
namespace {

struct ShortRowsScalar {
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

/// A row of at most `count` vectors and at least half as many, without a branch: short rows feel each of
/// them. Half of the loads count from the row's start, half from its end.
template <class V, int count>
struct FewVectors {
  using Vector = V;
  static constexpr bool inFours = true;

  template <class Lanes>
  static auto bestOf(const unsigned char* p, std::int64_t bytes, auto) {
    const auto load = [](const unsigned char* at) { return Vector::load(at).bits; };
    const unsigned char* const last = p + bytes - Vector::size;
    const auto ends = Lanes::better(load(p), load(last));
    if constexpr (count == 2) return ends;
    if constexpr (count == 4) {
      return Lanes::better(ends, Lanes::better(load(p + Vector::size), load(last - Vector::size)));
    }
  }
};

/// A row of more than two vectors.
template <class V>
struct ManyVectors {
  using Vector = V;
  static constexpr bool inFours = false;

  template <class Lanes>
  static auto bestOf(const unsigned char* p, std::int64_t bytes, auto prefetchAfter) {
    constexpr int size = Vector::size, pixel = sizeof(typename Lanes::Pixel);
    prefetchAfter(p);
    const unsigned char* const last = p + bytes - size;
    auto a = Vector::load(p).bits, b = a;
    const std::int64_t toBoundary = bytesToBoundary(p, size);
    p += toBoundary != 0 && toBoundary % pixel == 0 ? toBoundary : size;
    const auto two = [&](const unsigned char* at) {
      prefetchAfter(at, 2 * size);
      a = Lanes::better(a, Vector::load(at).bits);
      b = Lanes::better(b, Vector::load(at + size).bits);
    };
    for (; last - p > 8 * size; p += 8 * size) {
      two(p);
      two(p + 2 * size);
      two(p + 4 * size);
      two(p + 6 * size);
    }
    for (; last - p > 2 * size; p += 2 * size) two(p);
    prefetchAfter(p);
    prefetchAfter(last);
    a = Lanes::better(a, Vector::load(p).bits);
    if (last - p > size) b = Lanes::better(b, Vector::load(p + size).bits);
    b = Lanes::better(b, Vector::load(last).bits);
    return Lanes::better(a, b);
  }
};

template <class Lanes, class ShortRows>
class WideExtreme {
  using T = typename Lanes::Pixel;

 public:
  static T find(const T* src, int srcStep, Size roi) {
    if (roi.width < Lanes::lanes32) return ShortRows::template find<Lanes>(src, srcStep, roi);
    const Rows rows{reinterpret_cast<const unsigned char*>(src), srcStep,
                    std::int64_t{roi.width} * std::int64_t{sizeof(T)}, roi.height};
    if (rows.bytes <= 64) return find<FewVectors<Vector32, 2>>(rows, NoPrefetch());
#ifdef __AVX512BW__
    if (rows.bytes <= 128) return find<FewVectors<Vector64, 2>>(rows, NoPrefetch());
    if (rows.bytes <= 256) return find<FewVectors<Vector64, 4>>(rows, NoPrefetch());
    using Many = ManyVectors<Vector64>;
#else
    if (rows.bytes <= 128) return find<FewVectors<Vector32, 4>>(rows, NoPrefetch());
    using Many = ManyVectors<Vector32>;
#endif
    return withPrefetch(lightDistances, roi, sizeof(T),
                        [&](auto prefetchAfter) { return find<Many>(rows, prefetchAfter); });
  }

 private:
  struct Rows {
    const unsigned char* first;
    std::int64_t step;
    std::int64_t bytes;  ///< of each row
    int count;
  };

  /// Each row has a test of its own, also where a turn takes four: short rows feel the turns. Long ones stay
  /// with one loop, whose loads the processor can follow.
  template <class Row>
  static T find(const Rows& rows, auto prefetchAfter) {
    auto held = Lanes::template spread<typename Row::Vector>(Lanes::neutral);
    const unsigned char* p = rows.first;
    const auto over = [&] {
      const auto row = Row::template bestOf<Lanes>(p, rows.bytes, prefetchAfter);
      held = Lanes::better(held, row);
      p += rows.step;
      return Lanes::holds(row, Lanes::best);
    };
    int left = rows.count;
    if constexpr (Row::inFours) {
      for (; left >= 4; left -= 4) {
        if (over() || over() || over() || over()) return Lanes::best;
      }
    }
    for (; left != 0; --left) {
      if (over()) return Lanes::best;
    }
    return Lanes::bestOf(held);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
#endif
