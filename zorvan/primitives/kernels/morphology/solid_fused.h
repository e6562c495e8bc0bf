#pragma once

// Extremes of 3 by 3 neighbourhoods, straight from the image: the column-wise extreme of three rows, then
// that combined with itself shifted by one and by two pixels, in registers.
//
// Two rows of the result are computed together, since they share the extreme of their middle rows; an odd
// last row has a loop of its own. Each block needs the first two columns of the next one, so the main loop
// ends where these are no longer inside. The peel up to an aligned address and the tail load each shifted
// column.

#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/morphology/along_row.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// Column-wise extremes for `rows` rows of the result, 1 or 2.
template <class Lanes, int rows>
struct ColumnExtremes {
  Lanes of[rows];
};

template <class Operation, class Lanes, int rows, class Active>
inline ColumnExtremes<Lanes, rows> columnExtremes(const typename Lanes::Pixel* src, std::int64_t step,
                                                  Active lanes) {
  const auto row = [&](std::int64_t r) {
    return Lanes::load(Plane<const typename Lanes::Pixel>{src, step}.at(r, 0), lanes);
  };
  const Lanes first = Operation::combine(neutralLanes<Operation, Lanes>(), row(0));
  if constexpr (rows == 1) {
    return {{Operation::combine(Operation::combine(first, row(1)), row(2))}};
  } else {
    const Lanes shared =
        Operation::combine(Operation::combine(neutralLanes<Operation, Lanes>(), row(1)), row(2));
    return {{Operation::combine(shared, row(0)), Operation::combine(shared, row(3))}};
  }
}

/// A block combined with itself shifted by one and by two pixels; `next` follows it.
template <class Operation, class Lanes>
inline Lanes shiftedExtreme(Lanes block, Lanes next) {
  return Operation::combine(Operation::combine(block, Lanes::template following<1, 2>(block, next)),
                            Lanes::template following<2, 2>(block, next));
}

/// `rows` rows of the result, of which the first neighbourhood begins at `src`.
template <class Operation, class Lanes, int rows>
inline void fusedRows(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst,
                      std::int64_t width, ResultStores<Lanes> stores) {
  using Pixel = typename Lanes::Pixel;
  const auto direct = [&](std::int64_t column, auto lanes) {
    ColumnExtremes<Lanes, rows> extremes =
        columnExtremes<Operation, Lanes, rows>(src.at(0, column), src.step, lanes);
    for (std::int64_t c = 1; c <= 2; ++c) {
      const auto following = columnExtremes<Operation, Lanes, rows>(src.at(0, column + c), src.step, lanes);
      for (int r = 0; r < rows; ++r) extremes.of[r] = Operation::combine(extremes.of[r], following.of[r]);
    }
    for (int r = 0; r < rows; ++r) extremes.of[r].store(dst.at(r, column), lanes);
  };

  std::int64_t column = 0;
  if (width >= 3 * Lanes::count) {
    const std::int64_t peel = bytesToBoundary(dst.pixels, Lanes::count * sizeof(Pixel));
    if (peel % std::int64_t{sizeof(Pixel)} == 0 && peel != 0) {
      direct(0, AllLanes{});
      column = peel / std::int64_t{sizeof(Pixel)};
    }
    auto current = columnExtremes<Operation, Lanes, rows>(src.at(0, column), src.step, AllLanes{});
    for (; column + 2 * Lanes::count <= width + 2; column += Lanes::count) {
      const auto next =
          columnExtremes<Operation, Lanes, rows>(src.at(0, column + Lanes::count), src.step, AllLanes{});
      for (int r = 0; r < rows; ++r) {
        stores.store(shiftedExtreme<Operation>(current.of[r], next.of[r]), dst.at(r, column), AllLanes{});
      }
      current = next;
    }
  }
  if constexpr (Lanes::hasMasks) {
    for (; column < width; column += Lanes::count) {
      const std::int64_t here = width + 2 - column, there = here - Lanes::count;
      const auto limited = [&](std::int64_t from, std::int64_t pixels) {
        return columnExtremes<Operation, Lanes, rows>(
            src.at(0, from), src.step, Lanes::first(pixels < Lanes::count ? pixels : Lanes::count));
      };
      const auto current = limited(column, here);
      const auto next = there > 0 ? limited(column + Lanes::count, there) : current;
      const auto lanes = Lanes::first(width - column < Lanes::count ? width - column : Lanes::count);
      for (int r = 0; r < rows; ++r) {
        shiftedExtreme<Operation>(current.of[r], next.of[r]).store(dst.at(r, column), lanes);
      }
    }
  } else {
    alongRow<Lanes>(width, direct, column);
  }
}

template <class Operation, class Lanes>
inline void fusedImage(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst, Size roi,
                       MorphWork work) {
  // The main loop needs a block more than streaming does: narrower rows do not reach it.
  const auto stores =
      roi.width >= 3 * Lanes::count ? ResultStores<Lanes>(dst, roi, work) : ResultStores<Lanes>();
  std::int64_t r = 0;
  for (; r + 2 <= roi.height; r += 2) {
    fusedRows<Operation, Lanes, 2>(src.from(r - 1, -1), dst.from(r, 0), roi.width, stores);
  }
  if (r < roi.height) fusedRows<Operation, Lanes, 1>(src.from(r - 1, -1), dst.from(r, 0), roi.width, stores);
  stores.finish();
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
