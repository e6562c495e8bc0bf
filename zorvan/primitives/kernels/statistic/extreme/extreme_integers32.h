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

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_lanes.h"
#include "zorvan/primitives/kernels/statistic/prefetch_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

struct ShortRowsScalar {
  template <class Lanes, class T>
  static T find(Plane<const T> src, Size roi) {
    T current = Lanes::neutral;
    for (std::int64_t r = 0; r < roi.height && current != Lanes::limit; ++r) {
      for (int c = 0; c < roi.width; ++c) current = Lanes::better(current, loadAs<T>(src.at(r, c)));
    }
    return current;
  }
};

struct ShortRowsMasked;
#ifdef __AVX512BW__
/// The maximum of bytes: the zeros of a masked load are neutral.
struct ShortRowsMasked {
  template <class Lanes>
  static u8 find(Plane<const u8> src, Size roi) {
    static_assert(Lanes::neutral == 0);
    const auto inRow = firstLanes<__mmask32>(roi.width);
    __m256i current = _mm256_setzero_si256();
    for (std::int64_t r = 0; r < roi.height; ++r) {
      current = Lanes::better(current, loadMaskedBytes(inRow, src.at(r)));
      if (Lanes::hasLimit(current)) return Lanes::limit;
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

  template <class Lanes, int>
  static auto bestOf(const u8* p, std::int64_t bytes, auto) {
    const auto load = [](const u8* at) { return Vector::load(at).bits; };
    const u8* const last = p + bytes - Vector::size;
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

  template <class Lanes, int pixelBytes>
  static auto bestOf(const u8* p, std::int64_t bytes, auto prefetchAfter) {
    constexpr int size = Vector::size;
    prefetchAfter(p);
    const u8* const last = p + bytes - size;
    auto a = Vector::load(p).bits, b = a;
    const std::int64_t toBoundary = bytesToBoundary(p, size);
    p += toBoundary != 0 && toBoundary % pixelBytes == 0 ? toBoundary : size;
    const auto add2 = [&](const u8* at) {
      prefetchAfter(at, 2 * size);
      a = Lanes::better(a, Vector::load(at).bits);
      b = Lanes::better(b, Vector::load(at + size).bits);
    };
    for (; last - p > 8 * size; p += 8 * size) {
      add2(p);
      add2(p + 2 * size);
      add2(p + 4 * size);
      add2(p + 6 * size);
    }
    for (; last - p > 2 * size; p += 2 * size) add2(p);
    prefetchAfter(p);
    prefetchAfter(last);
    a = Lanes::better(a, Vector::load(p).bits);
    if (last - p > size) b = Lanes::better(b, Vector::load(p + size).bits);
    b = Lanes::better(b, Vector::load(last).bits);
    return Lanes::better(a, b);
  }
};

template <Seek seek, class T, class ShortRows = ShortRowsScalar>
class IntegerExtreme32 {
  using Lanes = ExtremeLanes<seek, T>;

 public:
  static T find(Plane<const T> src, Size roi) {
    const std::int64_t bytes = roi.width * std::int64_t{sizeof(T)};
    if (bytes < 32) return ShortRows::template find<Lanes>(src, roi);
    const auto by = [&](auto row, auto prefetchAfter) {
      return find<decltype(row)>(src, bytes, roi.height, prefetchAfter);
    };
    if (bytes <= 64) return by(FewVectors<Vector32, 2>(), NoPrefetch());
#ifdef __AVX512BW__
    if (bytes <= 128) return by(FewVectors<Vector64, 2>(), NoPrefetch());
    if (bytes <= 256) return by(FewVectors<Vector64, 4>(), NoPrefetch());
    using Many = ManyVectors<Vector64>;
#else
    if (bytes <= 128) return by(FewVectors<Vector32, 4>(), NoPrefetch());
    using Many = ManyVectors<Vector32>;
#endif
    return withPrefetch(lightDistances, roi, sizeof(T),
                        [&](auto prefetchAfter) { return by(Many(), prefetchAfter); });
  }

 private:
  /// Unrolled by 4 for short rows, which pay for each iteration; every row still has its own test. Long rows
  /// gain nothing from it.
  template <class Row>
  static T find(Plane<const T> src, std::int64_t bytes, int rows, auto prefetchAfter) {
    auto current = broadcastPixels<decltype(Row::Vector::bits)>(Lanes::neutral);
    const u8* p = reinterpret_cast<const u8*>(src.pixels);
    const auto rowHasLimit = [&] {
      const auto row = Row::template bestOf<Lanes, sizeof(T)>(p, bytes, prefetchAfter);
      current = Lanes::better(current, row);
      p += src.step;
      return Lanes::hasLimit(row);
    };
    if constexpr (Row::unrolledBy4) {
      for (; rows >= 4; rows -= 4) {
        if (rowHasLimit() || rowHasLimit() || rowHasLimit() || rowHasLimit()) return Lanes::limit;
      }
    }
    for (; rows != 0; --rows) {
      if (rowHasLimit()) return Lanes::limit;
    }
    return Lanes::bestOf(current);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
