#pragma once

// Extremes of solid square neighbourhoods with their border made in registers: the column-wise extreme of the
// rows, then that combined with its neighbours in the row.
//
// A row above or below the region is the nearest or the mirrored row, or a row of the constant in the work
// memory. To the left and right, the column-wise extremes of a repeated column are the repeated extremes, and
// those of a constant are the constant. So the vectors before the first and after the last are broadcasts,
// and no pixel is copied; those of mirrored columns are computed again.
//
// Several rows of the result are computed together, since they share most of their source rows. The remaining
// rows are computed one by one. Along a row, each vector of extremes is computed once; its neighbours come
// from the vectors before and after it. Wide regions go in strips of columns, so that source rows that are
// read again for the next rows of the result stay in a near cache.

#include <utility>

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/morphology/along_row.h"
#include "zorvan/primitives/kernels/morphology/lane_ends.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"
#include "zorvan/primitives/kernels/neighbourhood/border_rows.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// A region and its border.
template <class Pixel>
struct BorderedRegion {
  Size roi;
  BorderWord word;
  Pixel value;  ///< of a constant border
  BorderRows<Pixel> rows;
  std::int64_t left, right;  ///< columns in memory beside the region

  /// `room` has space for a row of pixels with the reach on both sides. Masks are square.
  BorderedRegion(Plane<const Pixel> source, Size size, int reach, BorderWord given, Pixel constant,
                 Pixel* room)
      : roi(size),
        word(given.of(size, {2 * reach + 1, 2 * reach + 1})),
        value(constant),
        rows(source, size, word, constant, room, reach),
        left(word.has(BorderWord::leftInMemory) ? reach : 0),
        right(word.has(BorderWord::rightInMemory) ? reach : 0) {}

  std::int64_t end() const { return roi.width + right; }
};

/// How many rows of the result are computed together. For a mask of three rows, four take as many comparisons
/// as two pairs, and save loads only if all vectors stay in registers: in the 32 that AVX-512 has.
template <class Lanes, int height>
constexpr int rowsAtOnce = Lanes::hasMasks || height > 3 ? 4 : 2;

/// Column-wise extremes for `rows` rows of the result: 1, 2 or 4.
template <class Lanes, int rows>
struct Extremes {
  Lanes of[rows];
};

/// `rows` rows of the result, between two columns.
template <class Operation, class Lanes, int width, int height, int rows>
struct BorderedRows {
  using Pixel = typename Lanes::Pixel;
  using Ends = LaneEnds<Lanes>;
  using Vectors = Extremes<Lanes, rows>;

  static constexpr int reach = (width - 1) / 2, readRows = height - 1 + rows;

  const Pixel* src[readRows];  ///< column 0 of each row that is read
  std::int64_t left, end;      ///< columns in memory before column 0; the first after them that is not
  std::int64_t columns;        ///< of the region
  BorderType type;
  Lanes constant;
  typename Ends::Place last;  ///< of the last column in memory, in its vector

  /// `first` is the first row that is read.
  [[gnu::always_inline]] BorderedRows(const BorderedRegion<Pixel>& region, std::int64_t first,
                                      std::int64_t column)
      : left(region.left),
        end(region.end()),
        columns(region.roi.width),
        type(region.word.type()),
        constant(Lanes::broadcast(region.value)),
        last(Ends::place((end - 1 - column) & (Lanes::count - 1))) {
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

  template <class Active>
  [[gnu::always_inline]] Vectors load(std::int64_t column, Active lanes) const {
    const auto with = [&](Lanes extreme, int r) {
      return Operation::combine(extreme, Ends::load(src[r] + column, lanes));
    };
    const auto extremeOf = [&](int first, int stop) {
      Lanes extreme = firstExtreme<Operation>(Ends::load(src[first] + column, lanes));
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

  /// The border in the vector at `column`: `nearest(r)` in row r, the constant, or mirrored columns.
  template <class Nearest>
  Vectors border(std::int64_t column, Nearest nearest) const {
    if (type == BorderType::replicate) return each(nearest);
    if (type == BorderType::mirror) return mirroredBorder(column);
    return each([&](int) { return constant; });
  }
  /// The columns within the reach; the other lanes are zero.
  [[gnu::noinline]] Vectors mirroredBorder(std::int64_t column) const {
    Pixel pixels[rows][Lanes::count] = {};
    const auto mirror = [&](std::int64_t c) {
      if (c < column || c >= column + Lanes::count) return;
      const std::int64_t source = mirrored(c, columns), lastWhole = end - Lanes::count;
      const std::int64_t first = lastWhole < 0 ? 0 : source < lastWhole ? source : lastWhole;
      const Vectors extremes = lastWhole < 0 ? load(0, Lanes::first(end)) : load(first, AllLanes{});
      for (int r = 0; r < rows; ++r) {
        Pixel found[Lanes::count];
        extremes.of[r].store(found);
        pixels[r][c - column] = found[source - first];
      }
    };
    for (int n = 1; n <= reach; ++n) {
      mirror(-n);
      mirror(end - 1 + n);
    }
    return each([&](int r) { return Lanes::load(pixels[r]); });
  }
  template <class Active>
  Vectors bordered(const Vectors& found, Active lanes, const Vectors& border) const {
    return each([&](int r) { return Ends::blend(lanes, found.of[r], border.of[r]); });
  }

  /// The vector before `column`, which is the first column of `vector`.
  [[gnu::always_inline]] Vectors before(std::int64_t column, const Vectors& vector) const {
    const std::int64_t available = column + left;
    if (available >= Lanes::count) return load(column - Lanes::count, AllLanes{});
    const Vectors first = column == 0 ? vector : load(0, Lanes::first(1));
    const Vectors beside =
        border(column - Lanes::count, [&](int r) { return Ends::broadcastFirst(first.of[r]); });
    if (available == 0) return beside;
    const auto lanes = Ends::last(available);
    return bordered(load(column - Lanes::count, lanes), lanes, beside);
  }

  /// The vector at `column`, which may extend or lie beyond the last column; `previous` is the vector before
  /// it.
  [[gnu::always_inline]] Vectors from(std::int64_t column, const Vectors& previous) const {
    const std::int64_t available = end - column;
    if (available >= Lanes::count) return load(column, AllLanes{});
    if (available <= 0)
      return border(column, [&](int r) { return Ends::broadcastLane(previous.of[r], last); });
    const auto lanes = Lanes::first(available);
    const Vectors found = load(column, lanes);
    return bordered(found, lanes,
                    border(column, [&](int r) { return Ends::broadcastLane(found.of[r], last); }));
  }

  template <int... n>
  static Lanes acrossRow(Lanes previous, Lanes vector, Lanes next, std::integer_sequence<int, n...>) {
    Lanes extreme = vector;
    ((extreme = Operation::combine(extreme, Lanes::template before<n + 1, reach>(vector, previous))), ...);
    ((extreme = Operation::combine(extreme, Lanes::template following<n + 1, reach>(vector, next))), ...);
    return extreme;
  }
  static Vectors results(const Vectors& previous, const Vectors& vector, const Vectors& next) {
    constexpr auto distances = std::make_integer_sequence<int, reach>();
    return each([&](int r) { return acrossRow(previous.of[r], vector.of[r], next.of[r], distances); });
  }

  [[gnu::always_inline]] void run(Plane<Pixel> dst, std::int64_t column, std::int64_t stop,
                                  ResultStores<Lanes> stores) const {
    const auto store = [&](const Vectors& made, auto lanes) {
      for (int r = 0; r < rows; ++r) stores.store(made.of[r], dst.at(r, column), lanes);
    };
    Vectors vector = from(column, Vectors{});
    Vectors previous = before(column, vector);
    const std::int64_t whole = stop < end - Lanes::count ? stop : end - Lanes::count;
    for (; column + Lanes::count <= whole; column += Lanes::count) {
      const Vectors next = load(column + Lanes::count, AllLanes{});
      store(results(previous, vector, next), AllLanes{});
      previous = vector;
      vector = next;
    }
    for (; column < stop; column += Lanes::count) {
      const Vectors next = from(column + Lanes::count, vector);
      const Vectors made = results(previous, vector, next);
      if (column + Lanes::count <= stop) {
        store(made, AllLanes{});
      } else {
        store(made, Lanes::first(stop - column));
      }
      previous = vector;
      vector = next;
    }
  }
};

/// The strip of columns from `begin` to `stop`.
template <class Operation, class Lanes, int width, int height>
inline void borderedStrip(const BorderedRegion<typename Lanes::Pixel>& region,
                          Plane<typename Lanes::Pixel> dst, std::int64_t begin, std::int64_t stop,
                          ResultStores<Lanes> stores) {
  constexpr int above = (height - 1) / 2, rows = rowsAtOnce<Lanes, height>;
  std::int64_t r = 0;
  if (region.roi.height >= rows) {
    BorderedRows<Operation, Lanes, width, height, rows> several(region, -above, begin);
    for (;;) {
      several.run(dst.from(r, 0), begin, stop, stores);
      r += rows;
      if (r + rows > region.roi.height) break;
      several.advance(region, r + above + rows - 1);
    }
  }
  for (; r < region.roi.height; ++r) {
    const BorderedRows<Operation, Lanes, width, height, 1> single(region, r - above, begin);
    single.run(dst.from(r, 0), begin, stop, stores);
  }
}

/// With streaming stores, the peel before the first aligned vector is a strip of its own.
template <class Operation, class Lanes, int width, int height>
inline void borderedImage(const BorderedRegion<typename Lanes::Pixel>& region,
                          Plane<typename Lanes::Pixel> dst, MorphWork work) {
  const ResultStores<Lanes> stores(dst, region.roi, work);
  const std::int64_t columns = region.roi.width;
  constexpr int readRows = height - 1 + rowsAtOnce<Lanes, height>;
  const std::int64_t strip = planStripColumns(region.roi.width, readRows, sizeof(typename Lanes::Pixel));
  ZORVAN_NOTE_PLAN("planStripColumns several strips", strip < columns);
  std::int64_t begin = 0, stop = stores.peel != 0 ? stores.peel : strip;
  for (; begin < columns; begin = stop, stop += strip) {
    if (stop > columns) stop = columns;
    borderedStrip<Operation, Lanes, width, height>(region, dst, begin, stop, stores);
  }
  stores.finish();
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
