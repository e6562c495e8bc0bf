#pragma once

// Sizes and limits of a flood fill. Pure, so that each can be tested on any machine.

#include <cstdint>
#include <limits>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::FloodFill {

/// A run of filled pixels whose neighbouring rows are still to be examined: the element of the fill's stack.
struct FillSegment {
  std::int32_t y;
  std::int32_t left;
  std::int32_t right;
  std::int32_t parentLeft;  ///< to parentRight: columns of row `y + direction` that are examined already
  std::int32_t parentRight;
  std::int32_t direction;  ///< row `y + direction` is the parent's, row `y - direction` the next
};

/// The stack starts on a boundary of this many bytes.
inline constexpr int fillStackAlignmentBytes = 8;

namespace {

/// The work memory that the size entry reports: a record for every four pixels of any type. Wraps on 32 bits.
constexpr std::int32_t reportedFillBufferBytes(Size roi) {
  const std::uint64_t pixels = static_cast<std::uint64_t>(roi.width) * static_cast<std::uint64_t>(roi.height);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(pixels * sizeof(FillSegment) / 4 + 32));
}

/// Whether that length has not wrapped.
constexpr bool fillBufferBytesFit(Size roi) {
  constexpr std::int64_t mostBytes = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t mostPixels = (mostBytes - 32) * 4 / std::int64_t{sizeof(FillSegment)};
  return std::int64_t{roi.width} * roi.height <= mostPixels;
}

/// At most this many records are on the stack at once. Three rows of an odd width reach it: the middle one
/// full, and the others with every second pixel. The reported size holds fewer.
constexpr std::int64_t mostFillRecords(Size roi) {
  return std::int64_t{roi.height} * (std::int64_t{roi.width} + 1) / 3;
}

/// Work memory for a stack of `records`, at any address.
constexpr std::int64_t fillBufferBytes(std::int64_t records) {
  return records * std::int64_t{sizeof(FillSegment)} + fillStackAlignmentBytes - 1;
}

/// The end of a run is searched by vectors if the scan goes on for this many pixels after the one found.
inline constexpr int vectorSearchPixels = 16;

/// Scans of fewer pixels go pixel by pixel: a vector would not pay.
inline constexpr int vectorScanPixels = 4;

constexpr bool searchesByVectors(std::int64_t x, std::int64_t scanRight) {
  return scanRight - x >= vectorSearchPixels;
}

/// Whether columns of single pixels are followed in registers. If rows lie whole pages apart, a column's
/// pixels have addresses with equal low bits, and loading the next one so soon after a store took twice as
/// long.
constexpr bool followsColumns(std::int64_t step) { return step % aliasedStepBytes != 0; }

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
