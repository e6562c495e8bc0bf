#pragma once

// The 3 by 3 Laplace filter: nine times the pixel less the sum of the nine pixels around and at it.
//
// Each output row takes two passes: sums of three pixels down each column from -1 to the width into a row of
// sums, then three neighbouring sums for each pixel. The row of integer sums is kept as two, of the even and
// of the odd columns, in which neighbours of both sides lie in the same lane or the next.
//
// What the next output row will load and store is fetched ahead: a row of a tile is too short for the
// processor to see where it goes on. Large results are stored past the caches instead, where their rows
// allow.
//
// Reads one pixel beyond the region on every side. Writes the region and the row of sums, to the byte.

#include "zorvan/primitives/kernels/common/Plane.h"
#include "zorvan/primitives/kernels/filtering/LaplacePlan.h"
#include "zorvan/primitives/kernels/filtering/float_vectors.h"
#include "zorvan/primitives/kernels/filtering/pair_vectors.h"
#include "zorvan/primitives/kernels/filtering/partial_vectors.h"

namespace Zorvan::Primitives {
namespace {

/// Stores with the place of the next row fetched ahead.
template <class V>
struct CachedStores {
  static constexpr std::int64_t head = 0;
  std::int64_t step;

  void store(V vector, unsigned char* p, WholeVectors<V> = {}) const {
    __builtin_prefetch(p + step, 1);
    vector.store(p);
  }
  void store(V vector, unsigned char* p, FirstBytes<V> some) const { some.store(vector, p); }
};

/// Stores past the caches, of vectors on their own boundaries: each row begins with `head` bytes before them.
template <class V>
struct StreamingStores {
  std::int64_t head;

  void store(V vector, unsigned char* p, WholeVectors<V> = {}) const { vector.stream(p); }
  void store(V vector, unsigned char* p, FirstBytes<V> some) const { some.store(vector, p); }
};

/// `rows(stores)` with the kind of stores for a tile.
template <class V, class T, class Rows>
inline void withRowStores(Plane<T> dst, Size tile, Rows rows) {
  const std::int64_t head = bytesToBoundary(dst.pixels, V::size);
  if (planLaplaceStreaming(tile, sizeof(T), dst.step, head, V::size)) {
    rows(StreamingStores<V>{head});
    fenceStores();
  } else {
    rows(CachedStores<V>{dst.step});
  }
}

/// 8-bit and 16-bit pixels in vectors V.
template <class T, class V>
struct LaplacePairs3x3 {
  using Lanes = PairLanes<T, V>;
  static constexpr std::int64_t laneBytes = 2 * sizeof(T);

  static void run(Plane<const T> src, Plane<T> dst, Size roi, unsigned char* rows) {
    const std::int64_t columns = std::int64_t{roi.width} + 2;
    unsigned char* const even = rows;
    unsigned char* const odd = rows + (columns + 1) / 2 * laneBytes;
    withRowStores<V>(dst, roi, [=](auto stores) {
      for (std::int64_t y = 0; y < roi.height; ++y) {
        addColumns(bytesAt(src, y - 1, -1), bytesAt(src, y, -1), bytesAt(src, y + 1, -1), src.step, columns,
                   even, odd);
        addRow(bytesAt(src, y, 0), even, odd, bytesAt(dst, y, 0), roi.width, stores);
      }
    });
  }

 private:
  static std::int64_t evenBytes(std::int64_t columns) { return (columns + 1) / 2 * laneBytes; }
  static std::int64_t oddBytes(std::int64_t columns) { return columns / 2 * laneBytes; }

  static Pair<V> sumOf(V above, V here, V below) {
    return {Lanes::add(Lanes::add(Lanes::even(above), Lanes::even(here)), Lanes::even(below)),
            Lanes::add(Lanes::add(Lanes::odd(above), Lanes::odd(here)), Lanes::odd(below))};
  }

  static void addColumns(const unsigned char* above, const unsigned char* here, const unsigned char* below,
                         std::int64_t step, std::int64_t columns, unsigned char* even, unsigned char* odd) {
    std::int64_t at = 0;  // in bytes of pixels, which are those of the sums of one parity
    const std::int64_t bytes = columns * std::int64_t{sizeof(T)};
    for (; at + V::size <= bytes; at += V::size) {
      __builtin_prefetch(below + at + step);
      const Pair<V> sum = sumOf(V::load(above + at), V::load(here + at), V::load(below + at));
      sum.even.store(even + at);
      sum.odd.store(odd + at);
    }
    if (at == bytes) return;
    const std::int64_t rest = (bytes - at) / std::int64_t{sizeof(T)};
    const FirstBytes<V> some{bytes - at};
    const Pair<V> sum = sumOf(some.load(above + at), some.load(here + at), some.load(below + at));
    PartialVector<V>::store(sum.even, even + at, evenBytes(rest));
    if (rest > 1) PartialVector<V>::store(sum.odd, odd + at, oddBytes(rest));
  }

  /// Of the sums, `even` and `odd` are at a pixel's left, `nextEven` and `nextOdd` those two columns on.
  static V resultOf(V pixel, V even, V nextEven, V odd, V nextOdd) {
    const V middle = Lanes::add(odd, nextEven);
    return Lanes::join({Lanes::sub(Lanes::template weigh<9, 0>(pixel), Lanes::add(even, middle)),
                        Lanes::sub(Lanes::template weigh<0, 9>(pixel), Lanes::add(middle, nextOdd))});
  }

  template <class Stores>
  static void addRow(const unsigned char* src, const unsigned char* even, const unsigned char* odd,
                     unsigned char* dst, std::int64_t width, Stores stores) {
    std::int64_t bytes = width * std::int64_t{sizeof(T)};
    if (stores.head != 0 && stores.head < bytes) {
      addPart(src, even, odd, dst, stores.head);
      src += stores.head, dst += stores.head, bytes -= stores.head;
      const std::int64_t sums = stores.head & -laneBytes;
      const unsigned char* const left = even + sums;
      const unsigned char* const here = odd + sums;
      const bool whole = sums == stores.head;  // else the first pixel is the second one of a pair
      even = whole ? left : here;
      odd = whole ? here : left + laneBytes;
    }
    std::int64_t at = 0;
    for (; at + V::size <= bytes; at += V::size) {
      stores.store(resultOf(V::load(src + at), V::load(even + at), V::load(even + at + laneBytes),
                            V::load(odd + at), V::load(odd + at + laneBytes)),
                   dst + at);
    }
    if (at != bytes) addPart(src + at, even + at, odd + at, dst + at, bytes - at);
  }

  /// Up to a vector. The columns -1 to the width are there: as many sums as pixels, and two more.
  static void addPart(const unsigned char* src, const unsigned char* even, const unsigned char* odd,
                      unsigned char* dst, std::int64_t bytes) {
    const std::int64_t pixels = bytes / std::int64_t{sizeof(T)};
    const FirstBytes<V> some{bytes};
    const FirstBytes<V> wholePairs{evenBytes(pixels)}, nextOdds{oddBytes(pixels)};
    const V oddSums = wholePairs.load(odd);
    const V nextOddSums = pixels > 1 ? nextOdds.load(odd + laneBytes) : oddSums;  // only odd pixels use them
    some.store(resultOf(some.load(src), wholePairs.load(even), wholePairs.load(even + laneBytes), oddSums,
                        nextOddSums),
               dst);
  }
};

/// Float pixels in vectors V.
template <class V>
struct LaplaceFloats3x3 {
  using Operations = FloatOperations<V>;
  using Floats = typename Operations::Floats;

  static void run(Plane<const float> src, Plane<float> dst, Size roi, unsigned char* rows) {
    withRowStores<V>(dst, roi, [=](auto stores) {
      for (std::int64_t y = 0; y < roi.height; ++y) {
        addColumns(bytesAt(src, y - 1, -1), bytesAt(src, y, -1), bytesAt(src, y + 1, -1), src.step,
                   std::int64_t{roi.width} + 2, rows);
        addRow(bytesAt(src, y, 0), rows, bytesAt(dst, y, 0), roi.width, stores);
      }
    });
  }

 private:
  static void addColumns(const unsigned char* above, const unsigned char* here, const unsigned char* below,
                         std::int64_t step, std::int64_t columns, unsigned char* sums) {
    const auto add = [=](std::int64_t at, auto access) {
      __builtin_prefetch(below + at + step);
      const Floats two =
          Operations::add(Operations::of(access.load(above + at)), Operations::of(access.load(here + at)));
      access.store(Operations::vector(Operations::add(two, Operations::of(access.load(below + at)))),
                   sums + at);
    };
    forEachVector(columns, 0, add);
  }

  template <class Stores>
  static void addRow(const unsigned char* src, const unsigned char* sums, unsigned char* dst,
                     std::int64_t width, Stores stores) {
    constexpr std::int64_t next = sizeof(float);
    const auto add = [=](std::int64_t at, auto access) {
      const Floats two = Operations::add(Operations::of(access.load(sums + at)),
                                         Operations::of(access.load(sums + at + next)));
      const Floats sum = Operations::add(two, Operations::of(access.load(sums + at + 2 * next)));
      const Floats nine = Operations::times(9.0F, Operations::of(access.load(src + at)));
      stores.store(Operations::vector(Operations::sub(nine, sum)), dst + at, access);
    };
    forEachVector(width, stores.head, add);
  }

  /// With `head` bytes in front of the first whole vector.
  template <class Use>
  static void forEachVector(std::int64_t floats, std::int64_t head, Use use) {
    std::int64_t at = 0;
    const std::int64_t bytes = floats * std::int64_t{sizeof(float)};
    if (head != 0 && head < bytes) {
      use(at, FirstBytes<V>{head});
      at = head;
    }
    for (; at + V::size <= bytes; at += V::size) use(at, WholeVectors<V>{});
    if (at < bytes) use(at, FirstBytes<V>{bytes - at});
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
