#pragma once

// Extremes of solid square neighbourhoods with their border made in registers: the column-wise extreme of the
// rows, then that combined with its neighbours in the row.
//
// A row above or below the region is the nearest or the mirrored row, or a row of the constant in the work
// memory. To the left and right, the column-wise extremes of a repeated column are the repeated extremes, and
// those of a constant are the constant. So the vectors before the first and after the last are broadcasts,
// and no pixel is copied; those of mirrored columns are the first and last extremes in reverse.
//
// Several rows of the result are computed together, since they share most of their source rows. The remaining
// rows are computed one by one. Along a row, each vector of extremes is computed once; its neighbours come
// from the vectors before and after it. The last vector ends with the row and computes some pixels again, so
// all loads are of whole vectors. Wide regions go in strips of columns, so that source rows that are read
// again for the next rows of the result stay in a near cache.
//
// Large images: the rows that follow are prefetched, since the processor's own prefetches end with each page,
// which may have a single row. Results are streamed in whole lines, which are collected in registers where a
// line has several vectors.

#include <utility>

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/morphology/along_row.h"
#include "zorvan/primitives/kernels/morphology/lane_ends.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"
#include "zorvan/primitives/kernels/neighbourhood/border_rows.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// Where the pixels beside a row come from.
enum class Beside { memory, nearest, mirrored, constant };

constexpr Beside besideOf(BorderWord word, int side) {
  if (word.has(side)) return Beside::memory;
  if (word.type() == BorderType::replicate) return Beside::nearest;
  return word.type() == BorderType::mirror ? Beside::mirrored : Beside::constant;
}

/// A region and its border.
template <class Pixel>
struct BorderedRegion {
  Size roi;
  BorderWord word;
  Pixel value;  ///< of a constant border
  BorderRows<Pixel> rows;

  /// `room` has space for a row of pixels with the reach on both sides. Masks are square.
  BorderedRegion(Plane<const Pixel> source, Size size, int reach, BorderWord given, Pixel constant,
                 Pixel* room)
      : roi(size),
        word(given.of(size, {2 * reach + 1, 2 * reach + 1})),
        value(constant),
        rows(source, size, word, constant, room, reach) {}
};

/// How many rows of the result are computed together. For a mask of three rows, four take as many comparisons
/// as two pairs, and save loads only if all vectors stay in registers: in the 32 that AVX-512 has.
template <class Lanes, int height>
constexpr int rowsAtOnce = Lanes::hasMasks || height > 3 ? 4 : 2;

/// Whether the kernel is so fast that it waits for memory: the comparisons for large masks take longer in the
/// shortest vectors.
template <class Lanes, int width>
constexpr bool isFast = width <= 5 || Lanes::lineVectors <= 2;

/// Column-wise extremes for `rows` rows of the result: 1, 2 or 4.
template <class Lanes, int rows>
struct Extremes {
  Lanes of[rows];
};

/// `rows` rows of the result, between two columns.
template <class Operation, class Lanes, int width, int height, int rows>
struct BorderedRows {
  using Pixel = typename Lanes::Pixel;
  using Vectors = Extremes<Lanes, rows>;

  static constexpr int reach = (width - 1) / 2, readRows = height - 1 + rows;

  const Pixel* src[readRows];  ///< column 0 of each row that is read
  std::int64_t pitch;          ///< pixels from one source row to the next
  std::int64_t columns;        ///< of the region
  Beside left, right;
  Lanes constant;

  /// `first` is the first row that is read.
  [[gnu::always_inline]] BorderedRows(const BorderedRegion<Pixel>& region, std::int64_t first)
      : pitch(region.rows.src.step / std::int64_t{sizeof(Pixel)}),
        columns(region.roi.width),
        left(besideOf(region.word, BorderWord::leftInMemory)),
        right(besideOf(region.word, BorderWord::rightInMemory)),
        constant(Lanes::broadcast(region.value)) {
    for (int i = 0; i < readRows; ++i) src[i] = region.rows.at(first + i);
  }

  /// Continues with the next `rows` rows of the result; row `r` is the last one that they read.
  [[gnu::always_inline]] void advance(const BorderedRegion<Pixel>& region, std::int64_t r) {
    for (int i = 0; i < height - 1; ++i) src[i] = src[i + rows];
    for (int i = 0; i < rows; ++i) src[height - 1 + i] = region.rows.at(r - rows + 1 + i);
  }

  template <class Make>
  static Vectors each(Make make) {
    Vectors made;
    for (int r = 0; r < rows; ++r) made.of[r] = make(r);
    return made;
  }

  [[gnu::always_inline]] Vectors load(std::int64_t column) const {
    const auto with = [&](Lanes extreme, int r) {
      return Operation::combine(extreme, Lanes::load(src[r] + column));
    };
    const auto extremeOf = [&](int first, int stop) {
      Lanes extreme = firstExtreme<Operation>(Lanes::load(src[first] + column));
      for (int r = first + 1; r < stop; ++r) extreme = with(extreme, r);
      return extreme;
    };
    if constexpr (rows == 1) {
      return {{extremeOf(0, height)}};
    } else if constexpr (rows == 2) {
      const Lanes shared = extremeOf(1, height);
      return {{with(shared, 0), with(shared, height)}};
    } else if constexpr (height == 3) {
      const Lanes upper = extremeOf(1, 3), lower = extremeOf(3, 5);
      return {{with(upper, 0), with(upper, 3), with(lower, 2), with(lower, 5)}};
    } else {
      const Lanes shared = extremeOf(3, height);
      const Lanes upper = with(with(shared, 2), 1);
      const Lanes lower = with(with(shared, height), height + 1);
      return {{with(upper, 0), with(upper, height), with(lower, 2), with(lower, height + 2)}};
    }
  }

  /// The same for four rows under a mask of more than three. `use(r, extreme)` gets the extremes of each row
  /// as soon as they are computed, which needs fewer registers than all of them at once.
  template <class Use>
  [[gnu::always_inline]] void eachExtreme(std::int64_t column, Use use) const {
    const auto with = [&](Lanes extreme, int r) {
      return Operation::combine(extreme, Lanes::load(src[r] + column));
    };
    Lanes shared = firstExtreme<Operation>(Lanes::load(src[3] + column));
    for (int r = 4; r < height; ++r) shared = with(shared, r);
    const Lanes upper = with(with(shared, 2), 1);
    use(0, with(upper, 0));
    use(1, with(upper, height));
    const Lanes lower = with(with(shared, height), height + 1);
    use(2, with(lower, 2));
    use(3, with(lower, height + 2));
  }

  /// Mirrored columns: those beside a row are the columns next to its end, in reverse. The other lanes are
  /// zero.
  [[gnu::noinline]] Vectors mirroredBefore() const {
    return inReverse(
        load(inset), [](int n) { return Lanes::count - n; }, [](int n) { return n - inset; });
  }
  [[gnu::noinline]] Vectors mirroredAfter() const {
    return inReverse(
        load(columns - inset - Lanes::count), [](int n) { return n - 1; },
        [](int n) { return Lanes::count - 1 + inset - n; });
  }
  /// The columns within the reach are in the vector at the row's end, or in one that begins a column later.
  static constexpr int inset = reach < Lanes::count ? 0 : 1;
  template <class To, class From>
  static Vectors inReverse(const Vectors& found, To to, From from) {
    return each([&](int r) {
      Pixel pixels[Lanes::count], reversed[Lanes::count] = {};
      found.of[r].store(pixels);
      for (int n = 1; n <= reach; ++n) reversed[to(n)] = pixels[from(n)];
      return Lanes::load(reversed);
    });
  }

  /// The vector before or after `column`, of which only the columns within the reach are read; the other
  /// lanes are unspecified.
  [[gnu::always_inline]] Vectors readBefore(std::int64_t column) const {
    const Vectors found = load(column - reach);
    return each([&](int r) { return Lanes::template following<reach, reach>(found.of[r], found.of[r]); });
  }
  [[gnu::always_inline]] Vectors readAfter(std::int64_t column) const {
    const Vectors found = load(column + reach - Lanes::count);
    return each([&](int r) { return Lanes::template before<reach, reach>(found.of[r], found.of[r]); });
  }

  /// The vector before `column`, which is the first column of `vector`.
  [[gnu::always_inline]] Vectors before(std::int64_t column, const Vectors& vector) const {
    if (column != 0 || left == Beside::memory) return readBefore(column);
    if (left == Beside::nearest) return each([&](int r) { return broadcastFirst(vector.of[r]); });
    if (left == Beside::mirrored) return mirroredBefore();
    return each([&](int) { return constant; });
  }
  /// The vector after the last one of the row, `vector`.
  [[gnu::always_inline]] Vectors after(const Vectors& vector) const {
    if (right == Beside::nearest) return each([&](int r) { return broadcastLast(vector.of[r]); });
    if (right == Beside::mirrored) return mirroredAfter();
    if (right == Beside::constant) return each([&](int) { return constant; });
    return readAfter(columns);
  }

  template <int... n>
  static Lanes acrossRow(Lanes previous, Lanes vector, Lanes next, std::integer_sequence<int, n...>) {
    Lanes extreme = vector;
    ((extreme = Operation::combine(extreme, Lanes::template before<n + 1, reach>(vector, previous))), ...);
    ((extreme = Operation::combine(extreme, Lanes::template following<n + 1, reach>(vector, next))), ...);
    return extreme;
  }
  static Lanes resultOf(Lanes previous, Lanes vector, Lanes next) {
    return acrossRow(previous, vector, next, std::make_integer_sequence<int, reach>());
  }
  static Vectors results(const Vectors& previous, const Vectors& vector, const Vectors& next) {
    return each([&](int r) { return resultOf(previous.of[r], vector.of[r], next.of[r]); });
  }

  /// The lines of the rows that the next call reads, and of those that it writes through the caches.
  [[gnu::always_inline]] void prefetchNext(Plane<Pixel> dst, std::int64_t column, bool streams) const {
    for (int r = 0; r < rows; ++r) {
      prefetchLine(src[readRows - 1] + (r + 1) * pitch + column);
      if (!streams) prefetchLine(dst.at(r + rows, column));
    }
  }

  /// Strips but the last one are of whole lines, after the peel. The last one is not narrower than a
  /// vector.
  template <class Access>
  [[gnu::always_inline]] void run(Plane<Pixel> dst, std::int64_t column, std::int64_t stop,
                                  Access access) const {
    const auto store = [&](const Vectors& made, auto lanes) {
      for (int r = 0; r < rows; ++r) made.of[r].store(dst.at(r, column), lanes);
    };
    Vectors vector = load(column);
    Vectors previous = before(column, vector);
    // Passes the results of `vector` to `use(r, result)`, and goes on to the next one.
    const auto pass = [&](auto use) __attribute__((always_inline)) {
      if constexpr (rows == 4 && height > 3) {
        eachExtreme(column + Lanes::count, [&](int r, Lanes next) {
          use(r, resultOf(previous.of[r], vector.of[r], next));
          previous.of[r] = vector.of[r];
          vector.of[r] = next;
        });
      } else {
        const Vectors next = load(column + Lanes::count);
        const Vectors made = results(previous, vector, next);
        for (int r = 0; r < rows; ++r) use(r, made.of[r]);
        previous = vector;
        vector = next;
      }
      column += Lanes::count;
    };
    const auto storeNext = [&]() __attribute__((always_inline)) {
      pass([&](int r, Lanes made) { made.store(dst.at(r, column)); });
    };
    const std::int64_t last = columns - Lanes::count;
    const std::int64_t whole = stop < columns ? stop : last;
    if constexpr (Access::isFar) {
      if (const std::int64_t rest = access.peel % Lanes::count; column == 0 && rest != 0) {
        store(results(previous, vector, load(Lanes::count)), Lanes::first(rest));
        column = rest;
        previous = each([&](int r) { return fromLane(previous.of[r], vector.of[r], rest); });
        vector = load(column);
      }
      const std::int64_t firstLine = access.streams ? access.peel : columns;
      while (column + Lanes::linePixels <= whole) {
        if (access.prefetches) prefetchNext(dst, column, access.streams);
        if (column < firstLine) {
          storeNext();
          continue;
        }
        const Plane<Pixel> to = dst.from(0, column);
        Vectors line[Lanes::lineVectors];
        for (Vectors& part : line) pass([&](int r, Lanes made) { part.of[r] = made; });
        for (int r = 0; r < rows; ++r) {
          for (int i = 0; i < Lanes::lineVectors; ++i) line[i].of[r].stream(to.at(r, i * Lanes::count));
        }
      }
    }
    while (column + Lanes::count <= whole) storeNext();
    if (column == stop) return;
    if (column == last) return store(results(previous, vector, after(vector)), AllLanes{});

    std::int64_t beyond = last - column;  // columns after those of `vector`
    if (beyond >= reach) {
      store(results(previous, vector, readAfter(column + Lanes::count)), AllLanes{});
    } else {
      column = last - reach;
      vector = load(column);
      store(results(before(column, vector), vector, readAfter(column + Lanes::count)),
            lastLanes<Lanes>(Lanes::count - reach + beyond));
      beyond = reach;
    }
    column = last;
    vector = load(column);
    store(results(readBefore(column), vector, after(vector)), lastLanes<Lanes>(beyond));
  }
};

/// The strip of columns from `begin` to `stop`.
template <class Operation, class Lanes, int width, int height, class Access>
inline void borderedStrip(const BorderedRegion<typename Lanes::Pixel>& region,
                          Plane<typename Lanes::Pixel> dst, std::int64_t begin, std::int64_t stop,
                          Access access) {
  constexpr int above = (height - 1) / 2, rows = rowsAtOnce<Lanes, height>;
  std::int64_t r = 0;
  if (region.roi.height >= rows) {
    BorderedRows<Operation, Lanes, width, height, rows> several(region, -above);
    for (;;) {
      several.run(dst.from(r, 0), begin, stop, access);
      r += rows;
      if (r + rows > region.roi.height) break;
      several.advance(region, r + above + rows - 1);
    }
  }
  for (; r < region.roi.height; ++r) {
    const BorderedRows<Operation, Lanes, width, height, 1> single(region, r - above);
    single.run(dst.from(r, 0), begin, stop, access);
  }
}

template <class Operation, class Lanes, int width, int height>
inline void borderedImage(const BorderedRegion<typename Lanes::Pixel>& region,
                          Plane<typename Lanes::Pixel> dst, MorphWork work) {
  const std::int64_t columns = region.roi.width;
  constexpr int readRows = height - 1 + rowsAtOnce<Lanes, height>;
  const std::int64_t strip = planStripColumns(region.roi.width, readRows, sizeof(typename Lanes::Pixel));
  ZORVAN_NOTE_PLAN("planStripColumns several strips", strip < columns);
  const auto alongStrips = [&](std::int64_t firstStop, auto access) {
    std::int64_t begin = 0, stop = firstStop;
    for (; begin < columns; begin = stop, stop += strip) {
      if (stop > columns - Lanes::count) stop = columns;
      borderedStrip<Operation, Lanes, width, height>(region, dst, begin, stop, access);
    }
  };
  if constexpr (isFast<Lanes, width>) {
    const FarAccess<Lanes> access(dst, region.roi, work.bytes);
    if (access.prefetches || access.streams) {
      alongStrips(access.peel + strip, access);
      return fenceStores();
    }
  }
  alongStrips(strip, NearAccess<Lanes>());
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
