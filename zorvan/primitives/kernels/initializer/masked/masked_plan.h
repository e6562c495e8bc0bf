#pragma once

// Decisions of a masked fill or copy: whether the rows are processed as one, and how a row is divided. Pure,
// so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::Masked {
namespace {

/// When rows without gaps are joined to one long row.
enum class MaskedRows { apart, joinedIfSmall, joinedUnlessOverflow };

struct MaskedPlan {
  std::int64_t rows;
  std::int64_t pixels;  ///< of each row
};

constexpr bool isTight(Size roi, int pixelBytes, std::int64_t step) {
  return std::int64_t{roi.width} * pixelBytes == step;
}

/// `tight`: neither the mask nor any image has a gap between its rows.
template <MaskedRows joining>
constexpr MaskedPlan planMasked(Size roi, bool tight) {
  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  bool joined = false;
  if (joining == MaskedRows::joinedIfSmall)
    joined = tight && roi.width < joinMaskedBelow && roi.height < joinMaskedBelow;
  if (joining == MaskedRows::joinedUnlessOverflow) joined = tight && pixels <= INT32_MAX;
  if (joined) return {1, pixels};
  return {roi.height, roi.width};
}

/// What is done about stores without a selected pixel, and about lines that are not in a cache.
enum class MaskedStores { all, selected, prefetched };

/// To skip an empty store saves the transfer of a cache line, and costs a branch that is hard to predict: it
/// pays for images that lie in farther caches. Those that lie in memory wait for each line that a masked
/// store completes, unless it was prefetched. `pixelBytes` are written, `bytesRead` read from the source,
/// and one byte from the mask.
template <int pixelBytes, int bytesRead>
constexpr MaskedStores planMaskedStores(const MaskedPlan& plan) {
  const std::int64_t pixels = plan.rows * plan.pixels;
  if (pixels * pixelBytes <= MaskedStoreLimits::skipAboveBytes) return MaskedStores::all;
  const bool inMemory = pixels * (pixelBytes + bytesRead + 1) >= MaskedStoreLimits::prefetchFromBytes;
  return inMemory ? MaskedStores::prefetched : MaskedStores::selected;
}

struct MaskedRowPlan {
  bool byPixels;    ///< the whole row pixel by pixel
  bool onBoundary;  ///< blocks start on the boundary, after `peel` pixels
  std::int64_t peel;
};

/// A row whose pixels lie across the boundary never reaches it: it has no peel.
template <int pixelBytes, int byPixelsUpTo>
constexpr MaskedRowPlan planMaskedRow(std::int64_t pixels, std::int64_t bytesToBoundary) {
  if (pixels <= byPixelsUpTo) return {true, false, 0};
  if (bytesToBoundary % pixelBytes != 0) return {false, false, 0};
  const std::int64_t peel = bytesToBoundary / pixelBytes;
  return {false, true, peel < pixels ? peel : pixels};
}

}  // namespace
}  // namespace Zorvan::Primitives::Masked
