#pragma once

// The loop over the blocks of a result for masks that are not solid: bands of four rows, then the last rows
// one by one.

#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/morphology/along_row.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// The extremes of a block: `rows` rows by `columns` vectors.
template <class Operation, class Lanes, int rows, int columns>
struct ExtremeBlock {
  using Pixel = typename Lanes::Pixel;
  Lanes of[rows][columns];

  ExtremeBlock() {
    for (auto& row : of) {
      for (Lanes& extreme : row) extreme = neutralLanes<Operation, Lanes>();
    }
  }

  /// Combines the extremes with the block of pixels at `src`.
  template <class Active>
  void add(Plane<const Pixel> src, Active lanes) {
    for (int r = 0; r < rows; ++r) {
      const Pixel* const row = src.at(r, 0);
      for (int c = 0; c < columns; ++c) {
        of[r][c] = Operation::combine(of[r][c], Lanes::load(row + c * Lanes::count, lanes));
      }
    }
  }

  template <class Active>
  void store(Plane<Pixel> dst, Active lanes) const {
    for (int r = 0; r < rows; ++r) {
      for (int c = 0; c < columns; ++c) of[r][c].store(dst.at(r, c * Lanes::count), lanes);
    }
  }
};

/// `cells.addTo(block, src, lanes)` adds all pixels under the mask, whose first cell lies at `src`.
template <class Operation, class Lanes, int rows, int columns, class Cells, class Active>
inline void computeBlock(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst,
                         const Cells& cells, Active lanes) {
  ExtremeBlock<Operation, Lanes, rows, columns> block;
  cells.addTo(block, src, lanes);
  block.store(dst, lanes);
}

/// A band of `rows` rows: blocks of `columns` vectors while they fit, then of one.
template <class Operation, class Lanes, int rows, int columns, class Cells>
inline void computeBand(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst,
                        std::int64_t width, const Cells& cells) {
  std::int64_t column = 0;
  if constexpr (columns > 1) {
    for (; column + columns * Lanes::count <= width; column += columns * Lanes::count) {
      computeBlock<Operation, Lanes, rows, columns>(src.from(0, column), dst.from(0, column), cells,
                                                    AllLanes{});
    }
  }
  alongRow<Lanes>(
      width,
      [&](std::int64_t c, auto lanes) {
        computeBlock<Operation, Lanes, rows, 1>(src.from(0, c), dst.from(0, c), cells, lanes);
      },
      column);
}

/// Bands of four rows by `bandColumns` vectors, then single rows by `rowColumns`.
template <class Operation, class Lanes, int bandColumns, int rowColumns, class Cells>
inline void computeImage(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst, Size roi,
                         const Cells& cells) {
  std::int64_t r = 0;
  for (; r + 4 <= roi.height; r += 4) {
    computeBand<Operation, Lanes, 4, bandColumns>(src.from(r, 0), dst.from(r, 0), roi.width, cells);
  }
  for (; r < roi.height; ++r) {
    computeBand<Operation, Lanes, 1, rowColumns>(src.from(r, 0), dst.from(r, 0), roi.width, cells);
  }
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
