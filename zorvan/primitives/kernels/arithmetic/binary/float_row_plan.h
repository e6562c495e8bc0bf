#pragma once

// Peel, vectors and tail of a row of 32-bit float pixels in sums, differences and products. Pure, so that
// each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::Arithmetic {
namespace {

struct FloatRowPlan {
  bool inVectors;     ///< Otherwise all pixels go one by one.
  bool aligned;       ///< The vectors begin on the boundary.
  std::int64_t peel;  ///< Pixels before the vectors.
  bool streaming;

  friend constexpr bool operator==(const FloatRowPlan&, const FloatRowPlan&) = default;
};

constexpr FloatRowPlan pixelByPixel{false, false, 0, false};

constexpr bool holdsWholePixels(std::uintptr_t address) { return address % 4 == 0; }
constexpr std::int64_t floatsToBoundary(std::uintptr_t address, std::uintptr_t boundary) {
  return static_cast<std::int64_t>((-address & (boundary - 1)) / 4);
}

/// 16-byte stores. Rows that cannot reach a boundary run in vectors all the same. Long ones may stream.
constexpr FloatRowPlan planFloatRow16(std::uintptr_t dst, std::int64_t n, bool mayStream) {
  constexpr std::int64_t vectorsFromPixels = 11;
  if (n < vectorsFromPixels) return pixelByPixel;
  if (!holdsWholePixels(dst)) return {true, false, 0, false};
  const std::int64_t peel = floatsToBoundary(dst, 16);
  return {true, true, peel, mayStream && (n - peel) / 8 > floatRowStreamAboveIterations};
}

/// 16-byte stores, but vectors only where a boundary can be reached.
constexpr FloatRowPlan planAlignedFloatRow16(std::uintptr_t dst, std::int64_t n) {
  constexpr std::int64_t vectorsFromPixels = 8;
  if (n < vectorsFromPixels || !holdsWholePixels(dst)) return pixelByPixel;
  const std::int64_t peel = floatsToBoundary(dst, 16);
  return {true, true, peel, false};
}

/// 32-byte stores: rows below `alignFromPixels` run in vectors at any address, longer ones from a boundary or
/// not at all.
constexpr FloatRowPlan planFloatRow32(std::uintptr_t dst, std::int64_t n, std::int64_t alignFromPixels) {
  constexpr std::int64_t vectorsFromPixels = 16;
  if (n < vectorsFromPixels) return pixelByPixel;
  if (n < alignFromPixels) return {true, false, 0, false};
  if (!holdsWholePixels(dst)) return pixelByPixel;
  return {true, true, floatsToBoundary(dst, 32), false};
}

/// Whether 64-byte vectors are worth it. Larger images wait for the memory, and vectors of 32 bytes wait
/// less.
constexpr bool prefersFloats64(std::int64_t pixels) { return pixels <= floats64UpToPixels; }

/// Whether all rows are like the first: whole multiples of 16 pixels without a peel.
constexpr bool needNoPeelOrTail(const FloatRowPlan& first, std::int64_t dstStep, std::int64_t n) {
  const bool alike = !first.aligned || dstStep % 32 == 0;
  return first.inVectors && first.peel == 0 && alike && n % 16 == 0;
}

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
