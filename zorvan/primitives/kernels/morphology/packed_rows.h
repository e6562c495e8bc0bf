#pragma once

// Narrow images without a gap between rows, computed as one long row: in the stripes at a region's left and
// right, which are a few pixels wide, most lanes of a vector would be idle. The neighbourhoods between the
// end of one row and the start of the next are inside the image too; their results are computed and
// discarded.

#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/morphology/along_row.h"
#include "zorvan/primitives/kernels/morphology/morph_plan.h"
#include "zorvan/primitives/kernels/simd/short_runs.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// `computeRow(src, results, length)` computes one row of `length` pixels. `src` is the first pixel of the
/// region's first neighbourhood.
template <class Pixel, class ComputeRow>
inline void computePacked(Plane<const Pixel> src, Plane<Pixel> dst, Size roi, ComputeRow computeRow) {
  alignas(64) Pixel results[morphPackedBytes / sizeof(Pixel)];
  const std::int64_t pitch = src.step / std::int64_t{sizeof(Pixel)};
  const std::int64_t rowsAtOnce = morphPackedBytes / src.step;
  for (std::int64_t r = 0; r < roi.height; r += rowsAtOnce) {
    const std::int64_t left = roi.height - r, rows = left < rowsAtOnce ? left : rowsAtOnce;
    computeRow(src.from(r, 0), results, (rows - 1) * pitch + roi.width);
    withCopier(roi.width * std::int64_t{sizeof(Pixel)}, [&, to = dst.from(r, 0)](auto copyRow) {
      for (std::int64_t i = 0; i < rows; ++i) copyRow(to.at(i, 0), results + i * pitch);
    });
  }
}

/// Solid masks: the column-wise extreme of the rows from each pixel on, then the extreme along the row.
template <class Operation, class Lanes>
inline void computePackedSolid(Plane<const typename Lanes::Pixel> src, Plane<typename Lanes::Pixel> dst,
                               Size roi, Size mask) {
  using Pixel = typename Lanes::Pixel;
  alignas(64) Pixel columns[(morphPackedBytes + packedRowBytes) / sizeof(Pixel)];
  computePacked(src, dst, roi, [&](Plane<const Pixel> from, Pixel* results, std::int64_t length) {
    alongRow<Lanes>(length + mask.width - 1, [&](std::int64_t column, auto lanes) {
      Lanes extreme = neutralLanes<Operation, Lanes>();
      for (std::int64_t r = 0; r < mask.height; ++r) {
        extreme = Operation::combine(extreme, Lanes::load(from.at(r, column), lanes));
      }
      extreme.store(columns + column, lanes);
    });
    alongRow<Lanes>(length, [&](std::int64_t column, auto lanes) {
      Lanes extreme = Lanes::load(columns + column, lanes);
      for (std::int64_t c = 1; c < mask.width; ++c) {
        extreme = Operation::combine(extreme, Lanes::load(columns + column + c, lanes));
      }
      extreme.store(results + column, lanes);
    });
  });
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
