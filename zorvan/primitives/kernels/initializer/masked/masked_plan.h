#pragma once

// What a masked fill or copy decides before it touches a pixel: whether the rows run together as one, and how
// a row is cut. Pure, so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives {
namespace {

/// When rows without gaps run as one long row.
enum class MaskedRows { apart, joinedBelow32768, joinedUnlessOverflow };

struct MaskedPlan {
  std::int64_t rows;
  std::int64_t pixels;  ///< of each row: the work length
};

constexpr bool isTight(Size roi, int pixelBytes, int step) {
  return std::int64_t{roi.width} * pixelBytes == step;
}

/// `tight`: neither the mask nor any image has a gap between its rows.
template <MaskedRows when>
constexpr MaskedPlan planMasked(Size roi, bool tight) {
  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  bool joined = false;
  if (when == MaskedRows::joinedBelow32768)
    joined = tight && roi.width < joinMaskedBelow && roi.height < joinMaskedBelow;
  if (when == MaskedRows::joinedUnlessOverflow) joined = tight && pixels <= INT32_MAX;
  if (joined) return {1, pixels};
  return {roi.height, roi.width};
}

/// Whether stores without a selected pixel are left out. That saves a line's way to the processor and back,
/// and costs a branch that is hard to foresee: it pays for images that lie farther away.
template <int pixelBytes>
constexpr bool planSkipsEmptyStores(const MaskedPlan& plan) {
  return plan.rows * plan.pixels * pixelBytes > EmptyStoreLimits::skipAboveBytes;
}

struct MaskedRowPlan {
  bool byPixels;    ///< the whole row pixel by pixel
  bool onBoundary;  ///< blocks start on the boundary after `peel` pixels
  std::int64_t peel;
};

/// A row whose pixels lie across the boundary never reaches it, whatever its length: it has no head.
template <int pixelBytes, int byPixelsUpTo>
constexpr MaskedRowPlan planMaskedRow(std::int64_t pixels, std::int64_t bytesToBoundary) {
  if (pixels <= byPixelsUpTo) return {true, false, 0};
  if (bytesToBoundary % pixelBytes != 0) return {false, false, 0};
  const std::int64_t peel = bytesToBoundary / pixelBytes;
  return {false, true, peel < pixels ? peel : pixels};
}

}  // namespace
}  // namespace Zorvan::Primitives
