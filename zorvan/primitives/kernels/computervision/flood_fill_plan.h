#pragma once

// The sizes that a flood fill goes by. Pure, so that each limit can be tested on any machine.

#include <cstdint>
#include <limits>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives {

/// A run of filled pixels whose neighbouring rows are still to be examined: the element of the fill's stack.
struct FillSegment {
  std::int32_t y;
  std::int32_t left;
  std::int32_t right;
  std::int32_t parentLeft;  ///< with parentRight: the columns of row `y + direction` that are known already
  std::int32_t parentRight;
  std::int32_t
      direction;  ///< row `y + direction` is where the run was reached from, the other one lies ahead
};

/// The stack starts on a boundary of this many bytes.
inline constexpr int fillStackAlignmentBytes = 8;

namespace {

/// The work memory that the size entry tells: a record for every four pixels, whatever their type. Wraps on
/// 32 bits.
constexpr std::int32_t reportedFillBufferBytes(Size roi) {
  const std::uint64_t pixels = static_cast<std::uint64_t>(roi.width) * static_cast<std::uint64_t>(roi.height);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(pixels * sizeof(FillSegment) / 4 + 32));
}

/// Whether that length is the true one.
constexpr bool fillBufferBytesFit(Size roi) {
  constexpr std::int64_t mostBytes = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t mostPixels = (mostBytes - 32) * 4 / std::int64_t{sizeof(FillSegment)};
  return std::int64_t{roi.width} * roi.height <= mostPixels;
}

/// At most this many records are on the stack at once. Three rows with an odd width reach it: the middle one
/// full, and teeth of one pixel at every second column above and below it. The told size holds fewer.
constexpr std::int64_t mostFillRecords(Size roi) {
  return std::int64_t{roi.height} * (std::int64_t{roi.width} + 1) / 3;
}

/// Work memory for a stack of so many records, wherever the memory starts.
constexpr std::int64_t fillBufferBytes(std::int64_t records) {
  return records * std::int64_t{sizeof(FillSegment)} + fillStackAlignmentBytes - 1;
}

/// How far the bound of a scan must lie ahead of a found pixel for its run's end to be searched by vectors.
inline constexpr int vectorSearchPixels = 16;

/// Scans of fewer pixels are not worth a vector.
inline constexpr int vectorScanPixels = 4;

constexpr bool searchesByVectors(std::int64_t x, std::int64_t scanRight) {
  return scanRight - x >= vectorSearchPixels;
}

/// Whether columns of single pixels are followed in registers. Where rows lie whole pages apart a column's
/// pixels share the low bits of their addresses, and asking so soon for the next one took twice as long.
constexpr bool followsColumns(int step) { return step % aliasedStepBytes != 0; }

}  // namespace
}  // namespace Zorvan::Primitives
