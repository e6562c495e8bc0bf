#pragma once

// Minimum and maximum of integers with 32-byte vectors, and 64-byte ones for rows from 65 bytes on where the
// variant has them: the two newest variants.
//
// A row's first vector is unaligned; the next ones start on the boundary after it, unless a pixel straddles
// that boundary. The row's last vector ends with the row and may overlap the one before, which changes no
// extreme. Rows shorter than 32 bytes are searched pixel by pixel, or with one masked load.
//
// The search ends after the first row that has the type's limit; no later row is read. Each row has its own
// accumulators, so that its test waits for no other row.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"
#include "zorvan/primitives/kernels/statistic/prefetch_rows.h"

#ifdef __AVX2__
namespace Zorvan::Primitives::Statistic {
namespace {

struct ShortRowsScalar {
  template <class Lanes, class T>
  static T find(const T* src, int srcStep, Size roi) {
    T current = Lanes::neutral;
    for (std::int64_t r = 0; r < roi.height && current != Lanes::limit; ++r) {
      const T* row = rowAt(src, srcStep, r);
      for (int c = 0; c < roi.width; ++c) {
        current = Lanes::better(current, loadAs<T>(reinterpret_cast<const char*>(row) + c * int{sizeof(T)}));
      }
    }
    return current;
  }
};

#ifdef __AVX512BW__
/// The maximum of bytes: the zeros of a masked load are neutral.
struct ShortRowsMasked {
  template <class Lanes>
  static std::uint8_t find(const std::uint8_t* src, int srcStep, Size roi) {
    static_assert(Lanes::neutral == 0);
    const __mmask32 inRow = _bzhi_u32(~0u, static_cast<unsigned>(roi.width));
    __m256i current = _mm256_setzero_si256();
    for (std::int64_t r = 0; r < roi.height; ++r) {
      current = Lanes::better(current, _mm256_maskz_loadu_epi8(inRow, rowAt(src, srcStep, r)));
      if (Lanes::holds(current, Lanes::limit)) return Lanes::limit;
    }
    return Lanes::bestOf(current);
  }
};
#endif

/// A row of `count` vectors at most and half as many at least. There is no branch, since short rows pay for
/// each. Half of the loads follow the row's start, half precede its end.
template <class V, int count>
struct FewVectors {
  using Vector = V;
  static constexpr bool unrolledBy4 = true;

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
  static constexpr bool unrolledBy4 = false;

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
class IntegerExtreme32 {
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

  /// Unrolled by 4 for short rows, which pay for each iteration; every row still has its own test. Long rows
  /// gain nothing from it.
  template <class Row>
  static T find(const Rows& rows, auto prefetchAfter) {
    auto current = Lanes::template spread<typename Row::Vector>(Lanes::neutral);
    const unsigned char* p = rows.first;
    const auto over = [&] {
      const auto row = Row::template bestOf<Lanes>(p, rows.bytes, prefetchAfter);
      current = Lanes::better(current, row);
      p += rows.step;
      return Lanes::holds(row, Lanes::limit);
    };
    int left = rows.count;
    if constexpr (Row::unrolledBy4) {
      for (; left >= 4; left -= 4) {
        if (over() || over() || over() || over()) return Lanes::limit;
      }
    }
    for (; left != 0; --left) {
      if (over()) return Lanes::limit;
    }
    return Lanes::bestOf(current);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
#endif
