#pragma once

// Windows of 32 columns of a row, one bit for each column that holds the old value, and where the run that
// continues another one in the next row begins and ends.
//
// The ends of consecutive runs lie near each other, but by how much they differ cannot be predicted. So they
// are computed from the bits of windows around both ends, without branches. The windows stay where they are
// from row to row: their next loads need not wait for the ends that are being computed.

#include <cstdint>

#include "zorvan/primitives/kernels/simd/bits.h"

namespace Zorvan::Primitives::FloodFill {
namespace {

inline constexpr int windowPixels = 32;

/// How far the ends of a run may be from those of its parent, for which there are places in the windows too.
inline constexpr std::int32_t nearColumns = 8;

/// The first column of the window with column `x` in its middle, or nearest to it in the region.
constexpr std::int64_t windowAround(std::int64_t x, std::int64_t last, std::int64_t pixels = windowPixels) {
  const std::int64_t first = x - pixels / 2;
  const std::int64_t rightmost = last - (pixels - 1);
  return first > rightmost ? (rightmost > 0 ? rightmost : 0) : first > 0 ? first : 0;
}

/// The bits before `place`, and those up to and with it.
constexpr std::uint64_t bitsBefore(std::int64_t place) { return (std::uint64_t{1} << place) - 1; }
constexpr std::uint64_t bitsUpTo(std::int64_t place) { return (std::uint64_t{2} << place) - 1; }

/// `a` if the bit at `place` is set, else `b`, without a branch.
constexpr std::int64_t chosen(std::uint64_t matches, std::int64_t place, std::int64_t a, std::int64_t b) {
  const auto isSet = -static_cast<std::int64_t>(matches >> place & 1);
  return b ^ ((a ^ b) & isSet);
}

/// The first place of the run that contains `place`, or of the first run after it; 63 if there is none.
inline std::int64_t firstOfRun(std::uint64_t matches, std::int64_t place) {
  const std::uint64_t before = bitsBefore(place);
  const int reached = highestSetBit((~matches & before) << 1 | 1);
  const int next = lowestSetBit((matches & ~before) | std::uint64_t{1} << 63);
  return chosen(matches, place, reached, next);
}

/// The last place of the run that contains `place`, or of the last run before it; 0 if there is none.
inline std::int64_t lastOfRun(std::uint64_t matches, std::int64_t place) {
  const std::uint64_t upTo = bitsUpTo(place);
  const int reached = lowestSetBit((~matches & ~upTo) >> 1 | std::uint64_t{1} << 63);
  const int next = highestSetBit((matches & upTo) | 1);
  return chosen(matches, place, reached, next);
}

/// The windows around the first and the last column of a run, as 64 bits: the columns between the windows
/// have none. A short run lies in two windows that adjoin. In regions of less than 64 columns they overlap.
struct EndWindows {
  std::int64_t left, right;  ///< the first columns of both

  /// In the region's columns, 0 to `last`. Blocks of 16 pixels fit between the windows, unless the run ends
  /// near the region's last column.
  static EndWindows around(std::int64_t first, std::int64_t end, std::int64_t last) {
    if (end - first + 1 + 2 * nearColumns < 2 * windowPixels) {
      const std::int64_t left = windowAround((first + end) / 2, last, 2 * windowPixels);
      return {left, windowAround(left + windowPixels + windowPixels / 2, last)};
    }
    const std::int64_t left = windowAround(first, last), right = windowAround(end, last);
    const std::int64_t blocks = left + (right + 8 - left) / 16 * 16;
    const bool fits = blocks + windowPixels - 1 <= last && end < blocks + 24;
    return {left, fits ? blocks : right};
  }

  /// The place of the right window's first column.
  std::int64_t rightPlace() const { return right - left < windowPixels ? right - left : windowPixels; }
};

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
