#pragma once

// The records of the morphology entries. They lie in the caller's memory, at any address, followed by their
// tables; only the init entries write them. Masks are cells, row after row without a gap. A mask of even
// width or height is padded to the next odd number with cells that are not set.

#include <cstddef>
#include <cstdint>

#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Primitives {

/// The analysis of one mask. The record is followed by the cells, the column table and the run table.
struct MorphSpec {
  u8* cells;  ///< maskWidth * maskHeight bytes, each 255 (set) or 0
  std::int32_t maskWidth;
  std::int32_t maskHeight;
  std::int32_t anchorX;
  std::int32_t anchorY;
  u16* rowOffsets;              ///< for each row 1 + maskWidth values: the number of set cells, their columns
  std::int32_t rowsContiguous;  ///< 1 if no row holds more than one run of set cells
  u16* rowRuns;  ///< for each row its number of set cells and the column of the first; 0xFFFF if none is set
  std::uint32_t flags;
  std::int32_t isCross;  ///< 1 if the mask is one row and one column; rowRuns then begins with their numbers
  std::int32_t isKnownShape;
  unsigned char unused[76];

  static constexpr std::uint32_t allSet = 2;
  static constexpr std::uint32_t noneSet = 4;
  static constexpr std::uint32_t emptyEdge = 8;
  static constexpr std::uint32_t contiguous = 16;
  static constexpr std::uint32_t cross = 32;
  static constexpr std::uint32_t knownShape = 0x100;  ///< of 3 by 3, unless it is one of the next two
  static constexpr std::uint32_t knownShape5 = 0x300;
  static constexpr std::uint32_t knownShape7 = 0x500;
};
static_assert(sizeof(MorphSpec) == 136 && offsetof(MorphSpec, rowRuns) == 40 &&
              offsetof(MorphSpec, isKnownShape) == 56);

/// The records of a compound operation: of the mask as given and of the mask rotated by 180 degrees. Both
/// follow this record, and the rotated mask follows them.
struct MorphAdvSpec {
  MorphSpec* first;
  MorphSpec* second;
  unsigned char unused[48];
};
static_assert(sizeof(MorphAdvSpec) == 64);

}  // namespace Zorvan::Primitives
