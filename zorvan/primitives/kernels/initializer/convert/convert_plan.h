#pragma once

// Decisions of a conversion of 32-bit pixels: whether the rows are converted as one, with which stores, and
// the length of a row's peel. Pure, so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Primitives::Convert {
namespace {

struct ConvertRows {
  std::int64_t rows;
  std::int64_t rowPixels;
};

/// One row if neither image has gaps. All products have 64 bits: a region whose size does not fit into 32
/// bits is still converted whole.
template <int dstPixelBytes>
constexpr ConvertRows planConvertRows(Size roi, std::int64_t srcStep, std::int64_t dstStep) {
  const std::int64_t width = roi.width;
  const bool fused = srcStep == 4 * width && dstStep == dstPixelBytes * width;
  return fused ? ConvertRows{1, width * roi.height} : ConvertRows{roi.height, width};
}

struct ConvertPlan {
  std::int64_t rows;
  std::int64_t rowPixels;
  bool streaming;
  std::int64_t lineBytes;  ///< boundary of the streaming stores
};

/// Streams if both images together fill the cache, and a row of the destination has two cache lines at least.
/// A line of unknown size has no boundary to stream from.
template <int dstPixelBytes, class QueryCache, class QueryLineSize>
constexpr ConvertPlan planConvertImage(Size roi, std::int64_t srcStep, std::int64_t dstStep,
                                       QueryCache queryCache, QueryLineSize queryLineSize) {
  constexpr std::int64_t bytesPerPixel = 4 + dstPixelBytes;
  const ConvertRows rows = planConvertRows<dstPixelBytes>(roi, srcStep, dstStep);
  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  const auto cache = queryCache();
  const std::int64_t line = queryLineSize();
  const bool streaming = cache.known && line > 0 && rows.rowPixels * dstPixelBytes >= 2 * line &&
                         pixels * bytesPerPixel >= cache.bytes;
  return {rows.rows, rows.rowPixels, streaming, line};
}

/// Whether a run is converted pixel by pixel: if it has less than 8, if it overlaps its source, or if it
/// starts at an address between floats, from where no aligned store can be reached.
constexpr bool planScalarFloats(std::uintptr_t src, std::uintptr_t dst, std::int64_t n) {
  const auto bytes = static_cast<std::uintptr_t>(4 * n);
  const bool overlapping = src < dst + bytes && dst < src + bytes;
  return n < 8 || overlapping || dst % 4 != 0;
}

/// Pixels of a row of `n` that end at or before the next multiple of `boundary` bytes, which need be no power
/// of two. The address after the peel may not be aligned, if no pixel ends at the boundary.
constexpr std::int64_t pixelsToBoundary(std::uintptr_t address, std::int64_t boundary, int pixelBytes,
                                        std::int64_t n) {
  const std::int64_t past = static_cast<std::int64_t>(address % static_cast<std::uintptr_t>(boundary));
  const std::int64_t peel = past == 0 ? 0 : (boundary - past) / pixelBytes;
  return peel < n ? peel : n;
}

}  // namespace
}  // namespace Zorvan::Primitives::Convert
