#pragma once

// Extremes of solid rectangular neighbourhoods by rows, then by columns.
//
// A ring of rows in the work memory holds, for each source row, the extremes of as many adjacent pixels as
// the mask is wide. Each row of the result combines as many rows of extremes as the mask is high. Two rows of
// the result are computed together, block by block: they share all rows of extremes but the first and the
// last. The two new rows of extremes are combined in registers, then replace the two oldest. So the ring has
// one row less than the mask, an even number, and since an extreme does not depend on order, no row is ever
// moved.
//
// Common sizes of masks are template arguments, so that the loops over the mask are unrolled. The next rows
// of the source and the result are prefetched: rows of a band are too short for the hardware's prefetcher.
//
// Tail blocks are limited to the region, but their extremes are stored to the ring and loaded again as whole
// vectors wherever its rows have room for it: a load from a whole-vector store is forwarded at once.

#include <utility>

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/morphology/along_row.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// One block of `rows` new rows of extremes over `width` adjacent pixels; a width of 0 stands for `anyWidth`.
template <class Operation, class Lanes, int rows, int width>
struct RowPass {
  using Pixel = typename Lanes::Pixel;
  Lanes of[rows];

  template <class Active>
  RowPass(Plane<const Pixel> src, std::int64_t column, std::int64_t anyWidth, Active lanes) {
    for (int r = 0; r < rows; ++r) of[r] = firstExtreme<Operation>(Lanes::load(src.at(r, column), lanes));
    if constexpr (Lanes::areLines && width != 0 && areAll(Active{})) {
      for (int r = 0; r < rows; ++r) {
        const Lanes block = Lanes::load(src.at(r, column));
        const Lanes next = Lanes::load(src.at(r, column + Lanes::count), Lanes::first(width - 1));
        addFollowing(of[r], block, next, std::make_integer_sequence<int, width - 1>());
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
  static void addFollowing(Lanes& extreme, Lanes block, Lanes next, std::integer_sequence<int, c...>) {
    ((extreme = Operation::combine(extreme, Lanes::template following<c + 1, 0>(block, next))), ...);
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

  /// Looks up the rows of all places but the oldest, once for a row.
  void setOldest(std::int64_t place) {
    oldest = place;
    if constexpr (height != 0) {
      for (int i = 0; i < height - 2; ++i) others[i] = ring.at(i < oldest ? i : i + 1, 0);
    }
  }

  /// Adds all places but the oldest to the extreme.
  template <class Active>
  Lanes addOthers(Lanes extreme, std::int64_t column, Active lanes) const {
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

/// Two rows of the result are written alternately, so streaming stores have to be of whole lines.
template <class Lanes>
using RingAccess = std::conditional_t<Lanes::areLines, FarAccess<Lanes>, NearAccess<Lanes>>;

/// The cache lines at these pixels of two rows.
template <class Pixel>
inline void prefetchRows(Plane<const Pixel> src, Plane<Pixel> dst) {
  for (int r = 0; r < 2; ++r) {
    prefetchLine(src.at(r));
    prefetchLine(dst.at(r));
  }
}

/// `width` and `height` are those of the mask where it is of a common size, else 0.
template <class Operation, class Lanes, int width, int height>
inline void separateBand(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst, Size roi,
                         Size mask, Plane<typename Lanes::Pixel> ring, RingAccess<Lanes> access) {
  using Pixel = typename Lanes::Pixel;
  const std::int64_t places = mask.height - 1;
  const std::int64_t wholeColumns = ring.step / std::int64_t{sizeof(Pixel)} - Lanes::count;
  const std::int64_t peel = access.peel;
  ColumnPass<Operation, Lanes, height> columns{ring, places};

  /// `block(column, lanes, ringLanes)`
  const auto alongRing = [&](auto block) {
    alongRowOnce<Lanes>(roi.width, peel, [&](std::int64_t column, auto lanes) {
      // A peel may not be whole: its last lanes would overwrite columns of the block after it.
      if (areAll(lanes) || (column >= peel && column <= wholeColumns)) {
        block(column, lanes, AllLanes{});
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
    columns.setOldest(oldest);
    alongRing([&](std::int64_t column, auto lanes, auto ringLanes) {
      prefetchRows(newRows.from(2, column), results.from(2, column));
      const RowPass<Operation, Lanes, 2, width> row(newRows, column, mask.width, lanes);
      const Lanes shared = columns.addOthers(row.of[0], column, ringLanes);
      const Lanes last = Lanes::load(replaced.at(0, column), ringLanes);
      access.store(Operation::combine(shared, last), results.at(0, column), lanes);
      access.store(Operation::combine(shared, row.of[1]), results.at(1, column), lanes);
      row.of[0].store(replaced.at(0, column), ringLanes);
      row.of[1].store(replaced.at(1, column), ringLanes);
    });
    oldest = oldest + 2 < places ? oldest + 2 : 0;
  }
  if (r < roi.height) {
    columns.setOldest(oldest);
    alongRing([&](std::int64_t column, auto lanes, auto ringLanes) {
      const RowPass<Operation, Lanes, 1, width> row(src.from(r + places, 0), column, mask.width, lanes);
      const Lanes shared = columns.addOthers(row.of[0], column, ringLanes);
      const Lanes last = Lanes::load(ring.at(oldest, column), ringLanes);
      access.store(Operation::combine(shared, last), dst.at(r, column), lanes);
    });
  }
}

/// A mask of one row needs no ring.
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

/// The height for which there is code of its own. Squares from the side `leastBordered` on come here only in
/// regions too narrow for the bordered kernels.
template <int width, int height, int leastBordered>
constexpr int knownHeight = (width == height) && (width >= leastBordered) ? 0 : height;

template <class Operation, class Lanes, int leastBordered, int width>
inline void separateByHeight(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst,
                             Size roi, Size mask, Plane<typename Lanes::Pixel> ring,
                             const RingAccess<Lanes>& access) {
  constexpr int three = knownHeight<width, 3, leastBordered>, five = knownHeight<width, 5, leastBordered>;
  switch (mask.height) {
    case 1:
      return separateRows<Operation, Lanes, width>(src, dst, roi, mask);
    case 3:
      return separateBand<Operation, Lanes, width, three>(src, dst, roi, mask, ring, access);
    case 5:
      return separateBand<Operation, Lanes, width, five>(src, dst, roi, mask, ring, access);
    default:
      return separateBand<Operation, Lanes, width, 0>(src, dst, roi, mask, ring, access);
  }
}

template <class Operation, class Lanes, int leastBordered>
inline void separateBySize(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst, Size roi,
                           Size mask, Plane<typename Lanes::Pixel> ring, const RingAccess<Lanes>& access) {
  if constexpr (leastBordered == noneBordered) {
    if (mask.width == 7 && mask.height == 7) {
      return separateBand<Operation, Lanes, 7, 7>(src, dst, roi, mask, ring, access);
    }
    if (mask.width == 9 && mask.height == 9) {
      return separateBand<Operation, Lanes, 9, 9>(src, dst, roi, mask, ring, access);
    }
  }
  switch (mask.width) {
    case 3:
      return separateByHeight<Operation, Lanes, leastBordered, 3>(src, dst, roi, mask, ring, access);
    case 5:
      return separateByHeight<Operation, Lanes, leastBordered, 5>(src, dst, roi, mask, ring, access);
    default:
      return separateByHeight<Operation, Lanes, leastBordered, 0>(src, dst, roi, mask, ring, access);
  }
}

/// `src` is the first pixel of the region's first neighbourhood. Wide regions go in bands of columns, so that
/// the ring stays in the nearest cache.
template <class Operation, class Lanes, int leastBordered>
inline void separateImage(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst, Size roi,
                          Size mask, MorphWork work) {
  using Pixel = typename Lanes::Pixel;
  const int bandWidth = planRingColumns(roi.width, mask.height, sizeof(Pixel));
  ZORVAN_NOTE_PLAN("planRingColumns several bands", bandWidth < roi.width);
  // The memory of the ring has at least 32 unused bytes and begins at a multiple of 32.
  unsigned char* const first = work.ring + bytesToBoundary(work.ring, 64);
  // The first columns of all bands have the same offset from a line, but the last band may be too narrow for
  // streaming.
  RingAccess<Lanes> wide, narrow;
  if constexpr (RingAccess<Lanes>::isFar) wide = RingAccess<Lanes>(dst, roi, work.bytes);
  for (std::int64_t column = 0; column < roi.width; column += bandWidth) {
    const std::int64_t left = roi.width - column;
    const Size band{static_cast<int>(left < bandWidth ? left : bandWidth), roi.height};
    const Plane<Pixel> ring{reinterpret_cast<Pixel*>(first),
                            planRingStep(band.width, mask.height, sizeof(Pixel))};
    const RingAccess<Lanes>& access = band.width >= 2 * Lanes::count ? wide : narrow;
    separateBySize<Operation, Lanes, leastBordered>(src.from(0, column), dst.from(0, column), band, mask,
                                                    ring, access);
  }
  if (wide.streams) fenceStores();
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
