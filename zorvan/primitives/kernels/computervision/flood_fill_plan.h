#pragma once

// Sizes and limits of a flood fill. Pure, so that each can be tested on any machine.

#include <cstdint>

#include "zorvan/primitives/frame/FloodFillSizes.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::FloodFill {
namespace {

/// How far the bound of a scan must lie ahead of a found pixel for its run's end to be searched by vectors.
inline constexpr int vectorSearchPixels = 16;

/// Scans of fewer pixels go pixel by pixel: a vector would not pay.
inline constexpr int vectorScanPixels = 4;

/// Windows consist of blocks of so many pixels.
inline constexpr int leastWindowRowPixels = 16;

constexpr bool searchesByVectors(std::int64_t x, std::int64_t scanRight) {
  return scanRight - x >= vectorSearchPixels;
}

/// Whether columns of single pixels are followed in registers. If rows lie whole pages apart, a column's
/// pixels have addresses with equal low bits, and loading the next one so soon after a store took twice as
/// long.
constexpr bool followsColumns(std::int64_t step) { return step % aliasedStepBytes != 0; }

/// Whether the runs of a region are searched in windows of bits, which cost more than they save where the
/// runs are few and short.
constexpr bool usesWindows(Size roi) {
  return roi.width >= leastWindowRowPixels && std::int64_t{roi.width} * roi.height >= windowedFillPixels;
}

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
