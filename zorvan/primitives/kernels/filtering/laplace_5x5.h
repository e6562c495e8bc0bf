#pragma once

// The 5 by 5 Laplace filter. Its kernel has three different rows, so each source row is weighed three ways in
// one pass, as the outermost row of the kernel (A), the one beside the middle (B) and the middle (C), and an
// output row is the sum of five such responses:
//
//   A(y - 2) + B(y - 1) + C(y) + B(y + 1) + A(y + 2)
//
// The responses wait in a ring of twelve rows, five for A, four for B and three for C: so many until the last
// use of the oldest.
//
// What the next row will load and store is fetched ahead: a row of a tile is too short for the processor to
// see where it goes on.
//
// Reads two pixels beyond the region on every side. Writes the region and the ring, to the byte.

#include "zorvan/primitives/kernels/common/Plane.h"
#include "zorvan/primitives/kernels/filtering/LaplacePlan.h"
#include "zorvan/primitives/kernels/filtering/float_vectors.h"
#include "zorvan/primitives/kernels/filtering/pair_vectors.h"
#include "zorvan/primitives/kernels/filtering/partial_vectors.h"

namespace Zorvan::Primitives {
namespace {

template <class Sums>
struct Responses {
  Sums a, b, c;
};

/// 8-bit and 16-bit pixels in vectors V: the sums of even and odd columns lie one vector behind the other.
template <class T, class V>
struct PairResponses {
  using Pixel = T;
  using Vector = V;
  using Lanes = PairLanes<T, V>;
  using Sums = Pair<V>;
  static constexpr std::int64_t sumBytes = 2 * sizeof(T);

  /// `p` is the first pixel, whose neighbours on both sides are there too.
  template <class Access>
  static Responses<Sums> of(const unsigned char* p, Access access) {
    const auto pairs = wholePairs(access);
    const V left = pairs.load(p - 2 * sizeof(T)), here = pairs.load(p),
            right = access.load(p + 2 * sizeof(T));
    const Sums a = {sum(Lanes::template weigh<-1, -3>(left), Lanes::template weigh<-4, -3>(here),
                        Lanes::template weigh<-1, 0>(right)),
                    sum(Lanes::template weigh<0, -1>(left), Lanes::template weigh<-3, -4>(here),
                        Lanes::template weigh<-3, -1>(right))};
    const Sums b = {sum(Lanes::template weigh<-3, 0>(left), Lanes::template weigh<6, 0>(here),
                        Lanes::template weigh<-3, 0>(right)),
                    sum(Lanes::template weigh<0, -3>(left), Lanes::template weigh<0, 6>(here),
                        Lanes::template weigh<0, -3>(right))};
    // The kernel's middle row is twice the difference of the other two.
    return {a, b, {twice(Lanes::sub(b.even, a.even)), twice(Lanes::sub(b.odd, a.odd))}};
  }

  static Sums add(Sums x, Sums y) { return {Lanes::add(x.even, y.even), Lanes::add(x.odd, y.odd)}; }
  static V pixels(Sums sums) { return Lanes::join(sums); }

  static void store(Sums sums, unsigned char* row, WholeVectors<V>) {
    sums.even.store(row);
    sums.odd.store(row + V::size);
  }
  static Sums load(const unsigned char* row, WholeVectors<V>) {
    return {V::load(row), V::load(row + V::size)};
  }

  /// A last block of fewer pixels has as many fewer sums of each parity.
  static void store(Sums sums, unsigned char* row, FirstBytes<V> some) {
    PartialVector<V>::store(sums.even, row, evenBytes(some));
    if (oddBytes(some) != 0) PartialVector<V>::store(sums.odd, row + evenBytes(some), oddBytes(some));
  }
  static Sums load(const unsigned char* row, FirstBytes<V> some) {
    const V even = PartialVector<V>::load(row, evenBytes(some));
    if (oddBytes(some) == 0) return {even, even};
    return {even, PartialVector<V>::load(row + evenBytes(some), oddBytes(some))};
  }

 private:
  static V sum(V x, V y, V z) { return Lanes::add(Lanes::add(x, y), z); }
  static V twice(V x) { return Lanes::add(x, x); }

  /// A last even pixel is weighed together with the odd one behind it, to its right or its left. Only the
  /// furthest one to the right has no weight, and need not be there.
  static WholeVectors<V> wholePairs(WholeVectors<V> all) { return all; }
  static FirstBytes<V> wholePairs(FirstBytes<V> some) { return {evenBytes(some)}; }

  static std::int64_t evenBytes(FirstBytes<V> some) { return (some.bytes + sizeof(T)) / sumBytes * sumBytes; }
  static std::int64_t oddBytes(FirstBytes<V> some) { return some.bytes / sumBytes * sumBytes; }
};

/// Float pixels in vectors V.
template <class V>
struct FloatResponses {
  using Pixel = float;
  using Vector = V;
  using Operations = FloatOperations<V>;
  using Sums = typename Operations::Floats;
  static constexpr std::int64_t sumBytes = sizeof(float);

  template <class Access>
  static Responses<Sums> of(const unsigned char* p, Access access) {
    const auto at = [&](int column) {
      return Operations::of(access.load(p + column * std::int64_t{sizeof(float)}));
    };
    const Sums outer = add(at(-2), at(2)), inner = add(at(-1), at(1)), here = at(0);
    return {Operations::sub(Operations::sub(Operations::negative(outer), times(3, inner)), times(4, here)),
            add(times(-3, outer), times(6, here)),
            add(add(times(-4, outer), times(6, inner)), times(20, here))};
  }

  static Sums add(Sums x, Sums y) { return Operations::add(x, y); }
  static V pixels(Sums sums) { return Operations::vector(sums); }

  template <class Access>
  static void store(Sums sums, unsigned char* row, Access access) {
    access.store(Operations::vector(sums), row);
  }
  template <class Access>
  static Sums load(const unsigned char* row, Access access) {
    return Operations::of(access.load(row));
  }

 private:
  static Sums times(float factor, Sums v) { return Operations::times(factor, v); }
};

/// `count` rows that take turns.
template <int count>
struct RowRing {
  unsigned char* row[count];

  RowRing(unsigned char* first, std::int64_t rowBytes) {
    for (int i = 0; i < count; ++i) row[i] = first + i * rowBytes;
  }
  /// The oldest row becomes the newest.
  void turn() {
    unsigned char* const oldest = row[0];
    for (int i = 0; i + 1 < count; ++i) row[i] = row[i + 1];
    row[count - 1] = oldest;
  }
};

template <class Response>
struct Laplace5x5 {
  using T = typename Response::Pixel;
  using V = typename Response::Vector;

  static void run(Plane<const T> src, Plane<T> dst, Size roi, unsigned char* rows) {
    const auto rowBytes = static_cast<std::int64_t>(sumRowBytes(roi.width, 5, sizeof(T)));
    RowRing<5> a(rows, rowBytes);
    RowRing<4> b(rows + 5 * rowBytes, rowBytes);
    RowRing<3> c(rows + 9 * rowBytes, rowBytes);
    for (std::int64_t y = -4; y < roi.height; ++y) {
      a.turn(), b.turn(), c.turn();
      weighRow(bytesAt(src, y + 2, 0), src.step, roi.width, a.row[4], b.row[3], c.row[2]);
      if (y >= 0)
        addRows(a.row[0], b.row[0], c.row[0], b.row[2], a.row[4], bytesAt(dst, y, 0), dst.step, roi.width);
    }
  }

 private:
  static void weighRow(const unsigned char* src, std::int64_t step, std::int64_t width, unsigned char* a,
                       unsigned char* b, unsigned char* c) {
    forEachVector(width, [=](std::int64_t at, std::int64_t sumAt, auto access) {
      __builtin_prefetch(src + at + step);
      const auto response = Response::of(src + at, access);
      Response::store(response.a, a + sumAt, access);
      Response::store(response.b, b + sumAt, access);
      Response::store(response.c, c + sumAt, access);
    });
  }

  static void addRows(const unsigned char* a0, const unsigned char* b1, const unsigned char* c2,
                      const unsigned char* b3, const unsigned char* a4, unsigned char* dst, std::int64_t step,
                      std::int64_t width) {
    forEachVector(width, [=](std::int64_t at, std::int64_t sumAt, auto access) {
      __builtin_prefetch(dst + at + step, 1);
      auto sum = Response::add(Response::load(a0 + sumAt, access), Response::load(b1 + sumAt, access));
      sum = Response::add(sum, Response::load(c2 + sumAt, access));
      sum = Response::add(sum, Response::load(b3 + sumAt, access));
      sum = Response::add(sum, Response::load(a4 + sumAt, access));
      access.store(Response::pixels(sum), dst + at);
    });
  }

  template <class Use>
  static void forEachVector(std::int64_t width, Use use) {
    constexpr std::int64_t sumsPerPixelByte = Response::sumBytes / sizeof(T);
    std::int64_t at = 0;
    const std::int64_t bytes = width * std::int64_t{sizeof(T)};
    for (; at + V::size <= bytes; at += V::size) use(at, at * sumsPerPixelByte, WholeVectors<V>{});
    if (at < bytes) use(at, at * sumsPerPixelByte, FirstBytes<V>{bytes - at});
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
