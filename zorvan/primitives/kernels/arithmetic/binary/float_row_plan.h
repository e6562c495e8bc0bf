#pragma once

// How a row of 32-bit float pixels is walked in sums, differences and products. Pure, so that each limit can
// be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives {
namespace {

struct FloatRowPlan {
  bool inBlocks;      ///< Otherwise all pixels go one by one.
  bool aligned;       ///< The blocks begin on the boundary.
  std::int64_t peel;  ///< Pixels in front of the blocks.
  bool streaming;

  friend constexpr bool operator==(const FloatRowPlan&, const FloatRowPlan&) = default;
};

constexpr FloatRowPlan pixelByPixel{false, false, 0, false};

constexpr bool holdsWholePixels(std::uintptr_t address) { return address % 4 == 0; }
constexpr std::int64_t floatsToBoundary(std::uintptr_t address, std::uintptr_t boundary) {
  return static_cast<std::int64_t>((-address & (boundary - 1)) / 4);
}

/// 16-byte stores. Rows that cannot come to a boundary run in blocks all the same. Long ones may stream.
constexpr FloatRowPlan planFloatRow(std::uintptr_t dst, std::int64_t n, bool mayStream) {
  constexpr std::int64_t blocksFromPixels = 11;
  if (n < blocksFromPixels) return pixelByPixel;
  if (!holdsWholePixels(dst)) return {true, false, 0, false};
  const std::int64_t peel = floatsToBoundary(dst, 16);
  return {true, true, peel, mayStream && (n - peel) / 8 > floatRowStreamAboveBlocks};
}

/// 16-byte stores again, but blocks only where a boundary can be reached.
constexpr FloatRowPlan planAlignedFloatRow(std::uintptr_t dst, std::int64_t n) {
  constexpr std::int64_t blocksFromPixels = 8;
  if (n < blocksFromPixels || !holdsWholePixels(dst)) return pixelByPixel;
  const std::int64_t peel = floatsToBoundary(dst, 16);
  return {true, true, peel, false};
}

/// 32-byte stores: rows below `alignFromPixels` run in blocks at any address, longer ones from a boundary or
/// not at all.
constexpr FloatRowPlan planWideFloatRow(std::uintptr_t dst, std::int64_t n, std::int64_t alignFromPixels) {
  constexpr std::int64_t blocksFromPixels = 16;
  if (n < blocksFromPixels) return pixelByPixel;
  if (n < alignFromPixels) return {true, false, 0, false};
  if (!holdsWholePixels(dst)) return pixelByPixel;
  return {true, true, floatsToBoundary(dst, 32), false};
}

/// Whether 64-byte registers are worth it. In larger images all wait for the memory, and 32 bytes at a time
/// wait less.
constexpr bool planWidestFloats(std::int64_t pixels) { return pixels <= widestFloatsUpToPixels; }

/// Whether all rows are blocks of 16 pixels from the first one on, as the first row is.
constexpr bool areWholeBlocks(const FloatRowPlan& first, int dstStep, std::int64_t n) {
  const bool alike = !first.aligned || dstStep % 32 == 0;
  return first.inBlocks && first.peel == 0 && alike && n % 16 == 0;
}

}  // namespace
}  // namespace Zorvan::Primitives
