#pragma once

// Extremes of solid rectangular neighbourhoods by rows, then by columns.
//
// A ring of rows in the work memory holds, for each source row, the extremes of as many pixels side by side
// as the mask is wide. Each row of the result combines as many rows of extremes as the mask is high. Two rows
// of the result are made at a time, block by block: all rows but the first and the last belong to both, and
// the two new rows go from the registers into the results, then to the places of the two oldest. So the ring
// holds one row less than the mask is high, an even number, and since order does not matter to an extreme it
// is never turned: pairs of places are replaced in turn.
//
// Usual sides are known where the loops over them are compiled, which leaves none of these loops.
// The next rows of the source and the result are fetched ahead: a row of a band is too short for the
// processor to see where it goes on.
//
// Blocks at a row's end are limited to the region, but their extremes go to the ring and come back as whole
// vectors wherever its rows have room for that: a vector that was stored as a whole can be read again at
// once.

#include <utility>

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/morphology/along_row.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"

namespace Zorvan::Primitives {
namespace {

/// One block of `rows` new rows of extremes, each of `width` pixels side by side; a width of 0 is `anyWidth`.
template <class Operation, class Lanes, int rows, int width>
struct RowPass {
  using Pixel = typename Lanes::Pixel;
  Lanes of[rows];

  template <class Which>
  RowPass(Plane<const Pixel> src, std::int64_t column, std::int64_t anyWidth, Which lanes) {
    for (int r = 0; r < rows; ++r) of[r] = firstExtreme<Operation>(Lanes::load(src.at(r, column), lanes));
    if constexpr (Lanes::areLines && width != 0 && areAll(Which{})) {
      for (int r = 0; r < rows; ++r) {
        const Lanes block = Lanes::load(src.at(r, column));
        const Lanes next = Lanes::load(src.at(r, column + Lanes::count), Lanes::some(width - 1));
        addBehind(of[r], block, next, std::make_integer_sequence<int, width - 1>());
      }
    } else {
      const std::int64_t columns = width != 0 ? width : anyWidth;
      for (std::int64_t c = 1; c < columns; ++c) {
        for (int r = 0; r < rows; ++r) {
          of[r] = Operation::combine(of[r], Lanes::load(src.at(r, column + c), lanes));
        }
      }
    }
  }

 private:
  template <int... c>
  static void addBehind(Lanes& extreme, Lanes block, Lanes next, std::integer_sequence<int, c...>) {
    ((extreme = Operation::combine(extreme, Lanes::template behind<c + 1, 0>(block, next))), ...);
  }
};

/// The ring's rows of extremes, `places` of them, for one block of columns.
template <class Operation, class Lanes, int height>
struct ColumnPass {
  using Pixel = typename Lanes::Pixel;
  Plane<Pixel> ring;
  std::int64_t places;
  std::int64_t oldest = 0;
  const Pixel* others[height == 0 ? 1 : height - 2] = {};

  /// Where all places but the oldest are is found once for a row.
  void turnTo(std::int64_t place) {
    oldest = place;
    if constexpr (height != 0) {
      for (int i = 0; i < height - 2; ++i) others[i] = ring.at(i < oldest ? i : i + 1, 0);
    }
  }

  /// Adds all places but the oldest to the extreme.
  template <class Which>
  Lanes addOthers(Lanes extreme, std::int64_t column, Which lanes) const {
    const auto add = [&](const Pixel* row) {
      extreme = Operation::combine(extreme, Lanes::load(row + column, lanes));
    };
    if constexpr (height != 0) {
      for (const Pixel* const row : others) add(row);
    } else {
      for (std::int64_t place = 0; place < oldest; ++place) add(ring.at(place, 0));
      for (std::int64_t place = oldest + 1; place < places; ++place) add(ring.at(place, 0));
    }
    return extreme;
  }
};

/// The lines of two rows from here on.
template <class Pixel>
inline void fetchAhead(Plane<const Pixel> src, Plane<Pixel> dst) {
  for (int r = 0; r < 2; ++r) {
    __builtin_prefetch(src.at(r, 0));
    __builtin_prefetch(dst.at(r, 0), 1);
  }
}

/// `width` and `height` are the mask's where it has a form of its own, else 0.
template <class Operation, class Lanes, int width, int height>
inline void separateBand(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst, Size roi,
                         Size mask, Plane<typename Lanes::Pixel> ring, ResultStores<Lanes> stores) {
  using Pixel = typename Lanes::Pixel;
  const std::int64_t places = mask.height - 1;
  const std::int64_t wholeColumns = ring.step / std::int64_t{sizeof(Pixel)} - Lanes::count;
  const std::int64_t peel = stores.peel;
  ColumnPass<Operation, Lanes, height> columns{ring, places};

  /// `block(column, lanes, ringLanes)`
  const auto alongRing = [&](auto block) {
    alongRowOnce<Lanes>(roi.width, peel, [&](std::int64_t column, auto lanes) {
      // A head may not be whole: the block behind it has columns in its lanes that were stored before.
      if (areAll(lanes) || (column >= peel && column <= wholeColumns)) {
        block(column, lanes, All{});
      } else {
        block(column, lanes, lanes);
      }
    });
  };

  for (std::int64_t place = 0; place < places; ++place) {
    alongRing([&](std::int64_t column, auto lanes, auto ringLanes) {
      const RowPass<Operation, Lanes, 1, width> row(src.from(place, 0), column, mask.width, lanes);
      row.of[0].store(ring.at(place, column), ringLanes);
    });
  }

  std::int64_t oldest = 0, r = 0;
  for (; r + 2 <= roi.height; r += 2) {
    const Plane<const Pixel> newRows = src.from(r + places, 0);
    const Plane<Pixel> results = dst.from(r, 0);
    const Plane<Pixel> replaced = ring.from(oldest, 0);
    columns.turnTo(oldest);
    alongRing([&](std::int64_t column, auto lanes, auto ringLanes) {
      fetchAhead(newRows.from(2, column), results.from(2, column));
      const RowPass<Operation, Lanes, 2, width> row(newRows, column, mask.width, lanes);
      const Lanes shared = columns.addOthers(row.of[0], column, ringLanes);
      const Lanes last = Lanes::load(replaced.at(0, column), ringLanes);
      stores.store(Operation::combine(shared, last), results.at(0, column), lanes);
      stores.store(Operation::combine(shared, row.of[1]), results.at(1, column), lanes);
      row.of[0].store(replaced.at(0, column), ringLanes);
      row.of[1].store(replaced.at(1, column), ringLanes);
    });
    oldest = oldest + 2 < places ? oldest + 2 : 0;
  }
  if (r < roi.height) {
    columns.turnTo(oldest);
    alongRing([&](std::int64_t column, auto lanes, auto ringLanes) {
      const RowPass<Operation, Lanes, 1, width> row(src.from(r + places, 0), column, mask.width, lanes);
      const Lanes shared = columns.addOthers(row.of[0], column, ringLanes);
      const Lanes last = Lanes::load(ring.at(oldest, column), ringLanes);
      stores.store(Operation::combine(shared, last), dst.at(r, column), lanes);
    });
  }
}

/// A mask of one row has nothing to keep.
template <class Operation, class Lanes, int width>
inline void separateRows(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst, Size roi,
                         Size mask) {
  for (std::int64_t r = 0; r < roi.height; ++r) {
    alongRow<Lanes>(roi.width, [&](std::int64_t column, auto lanes) {
      const RowPass<Operation, Lanes, 1, width> row(src.from(r, 0), column, mask.width, lanes);
      row.of[0].store(dst.at(r, column), lanes);
    });
  }
}

template <class Operation, class Lanes, int width>
inline void separateByHeight(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst,
                             Size roi, Size mask, Plane<typename Lanes::Pixel> ring,
                             const ResultStores<Lanes>& stores) {
  switch (mask.height) {
    case 1:
      return separateRows<Operation, Lanes, width>(src, dst, roi, mask);
    case 3:
      return separateBand<Operation, Lanes, width, 3>(src, dst, roi, mask, ring, stores);
    case 5:
      return separateBand<Operation, Lanes, width, 5>(src, dst, roi, mask, ring, stores);
    default:
      return separateBand<Operation, Lanes, width, 0>(src, dst, roi, mask, ring, stores);
  }
}

template <class Operation, class Lanes>
inline void separateBySize(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst, Size roi,
                           Size mask, Plane<typename Lanes::Pixel> ring, const ResultStores<Lanes>& stores) {
  if (mask.width == 7 && mask.height == 7) {
    return separateBand<Operation, Lanes, 7, 7>(src, dst, roi, mask, ring, stores);
  }
  if (mask.width == 9 && mask.height == 9) {
    return separateBand<Operation, Lanes, 9, 9>(src, dst, roi, mask, ring, stores);
  }
  switch (mask.width) {
    case 3:
      return separateByHeight<Operation, Lanes, 3>(src, dst, roi, mask, ring, stores);
    case 5:
      return separateByHeight<Operation, Lanes, 5>(src, dst, roi, mask, ring, stores);
    default:
      return separateByHeight<Operation, Lanes, 0>(src, dst, roi, mask, ring, stores);
  }
}

/// `src` is the first pixel of the region's first neighbourhood. Wide regions go in bands of columns, one
/// after the other, for which the ring stays in the nearest cache.
template <class Operation, class Lanes>
inline void separateImage(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst, Size roi,
                          Size mask, MorphWork work) {
  using Pixel = typename Lanes::Pixel;
  const int bandWidth = planRingColumns(roi.width, mask.height, sizeof(Pixel));
  ZORVAN_NOTE_PLAN("planRingColumns several bands", bandWidth < roi.width);
  // The room for the ring has at least 32 bytes to spare, and begins at a multiple of 32.
  unsigned char* const first = work.ring + bytesToBoundary(work.ring, 64);
  // The bands' first columns lie alike in their blocks, but a last one may be too narrow to stream.
  const ResultStores<Lanes> wide(dst, roi, work), narrow;
  for (std::int64_t column = 0; column < roi.width; column += bandWidth) {
    const std::int64_t left = roi.width - column;
    const Size band{static_cast<int>(left < bandWidth ? left : bandWidth), roi.height};
    const Plane<Pixel> ring{reinterpret_cast<Pixel*>(first),
                            planRingStep(band.width, mask.height, sizeof(Pixel))};
    const ResultStores<Lanes>& stores = band.width >= 2 * Lanes::count ? wide : narrow;
    separateBySize<Operation, Lanes>(src.from(0, column), dst.from(0, column), band, mask, ring, stores);
  }
  wide.finish();
}

}  // namespace
}  // namespace Zorvan::Primitives
