#pragma once

// The work memory of a flood fill. The size that the entry reports suffices for usual images only; the facade
// allocates as much as any image can need.

#include <cstdint>
#include <limits>

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Primitives {

/// A run of filled pixels whose neighbouring rows have not been examined yet: an element of the fill's stack.
struct FillSegment {
  std::int32_t y;
  std::int32_t left;
  std::int32_t right;
  std::int32_t parentLeft;  ///< with parentRight: the columns of row `y + direction` that are known already
  std::int32_t parentRight;
  std::int32_t direction;  ///< the run was reached from row `y + direction`, the other row comes next
};

/// The stack starts on a boundary of this many bytes.
inline constexpr int fillStackAlignmentBytes = 8;

namespace {

/// The size that the entry reports: a record for every four pixels, whatever their type. Wraps at 32 bits.
constexpr std::int32_t reportedFillBufferBytes(Size roi) {
  const std::uint64_t pixels = static_cast<std::uint64_t>(roi.width) * static_cast<std::uint64_t>(roi.height);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(pixels * sizeof(FillSegment) / 4 + 32));
}

/// Whether that size has not wrapped.
constexpr bool fillBufferBytesFit(Size roi) {
  constexpr std::int64_t mostBytes = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t mostPixels = (mostBytes - 32) * 4 / std::int64_t{sizeof(FillSegment)};
  return std::int64_t{roi.width} * roi.height <= mostPixels;
}

/// The most records on the stack at once. Three rows of odd width reach it: the middle row full, and single
/// pixels at every second column above and below it. The reported size has room for fewer.
constexpr std::int64_t mostFillRecords(Size roi) {
  return std::int64_t{roi.height} * (std::int64_t{roi.width} + 1) / 3;
}

/// Work memory for a stack of `records`, at any address.
constexpr std::int64_t fillBufferBytes(std::int64_t records) {
  return records * std::int64_t{sizeof(FillSegment)} + fillStackAlignmentBytes - 1;
}

}  // namespace
}  // namespace Zorvan::Primitives
