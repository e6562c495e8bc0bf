#pragma once

// Any mask that is not solid, pixel by pixel: the algorithm of the two oldest variants. Mask rows of 16 cells
// and more of 8-bit images go 16 cells at a time, with the cells as bit masks.

#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/morphology/pixel_lanes.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// The extreme of all lanes.
template <class Operation>
inline u8 extremeOfLanes(ByteLanes16 lanes) {
  lanes = Operation::combine(lanes, ByteLanes16{_mm_srli_si128(lanes.bits, 8)});
  lanes = Operation::combine(lanes, ByteLanes16{_mm_srli_si128(lanes.bits, 4)});
  lanes = Operation::combine(lanes, ByteLanes16{_mm_srli_si128(lanes.bits, 2)});
  lanes = Operation::combine(lanes, ByteLanes16{_mm_srli_si128(lanes.bits, 1)});
  return static_cast<u8>(_mm_cvtsi128_si32(lanes.bits));
}

/// The pixels under set cells, and the neutral pixel under the others. Cells are 255 or 0.
template <class Operation>
inline ByteLanes16 underCells(ByteLanes16 pixels, ByteLanes16 cells) {
  const ByteLanes16 others = neutralLanes<Operation, ByteLanes16>();
  return {select(cells.bits, pixels.bits, others.bits)};
}

template <class Operation, class Pixel>
inline Pixel scanPixel(Plane<const Pixel> src, Size mask, const u8* cells) {
  Pixel extreme = Operation::neutral(Pixel{});
  ByteLanes16 extremes = neutralLanes<Operation, ByteLanes16>();
  for (std::int64_t r = 0; r < mask.height; ++r, cells += mask.width) {
    std::int64_t c = 0;
    if constexpr (sizeof(Pixel) == 1) {
      for (; c + 16 <= mask.width; c += 16) {
        const ByteLanes16 pixels = ByteLanes16::load(src.at(r, c));
        extremes = Operation::combine(extremes, underCells<Operation>(pixels, ByteLanes16::load(cells + c)));
      }
    }
    for (; c < mask.width; ++c) {
      if (cells[c] != 0) extreme = Operation::combinePixel(extreme, loadAs<Pixel>(src.at(r, c)));
    }
  }
  if constexpr (sizeof(Pixel) == 1) {
    if (mask.width >= 16) extreme = Operation::combinePixel(extreme, extremeOfLanes<Operation>(extremes));
  }
  return extreme;
}

template <class Operation, class Pixel>
inline void scanImage(Plane<const Pixel> src, Plane<Pixel> dst, Size roi, Size mask, const u8* cells) {
  for (std::int64_t r = 0; r < roi.height; ++r) {
    for (std::int64_t c = 0; c < roi.width; ++c) {
      storeAs(dst.at(r, c), scanPixel<Operation>(src.from(r, c), mask, cells));
    }
  }
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
