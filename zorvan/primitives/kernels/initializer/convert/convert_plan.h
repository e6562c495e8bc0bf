#pragma once

// What a conversion of 32-bit pixels does before it touches one: whether the rows run together, which stores
// are used, and how far a row goes to reach its first boundary. Pure, so that each limit can be tested from
// both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Primitives {
namespace {

struct ConvertRows {
  std::int64_t rows;
  std::int64_t rowPixels;
};

/// Rows without gaps on both sides are one row. All products are 64 bits wide: a region whose size does not
/// fit into 32 bits is still converted whole.
template <int dstPixelBytes>
constexpr ConvertRows planConvertRows(Size roi, int srcStep, int dstStep) {
  const std::int64_t width = roi.width;
  const bool fused = srcStep == 4 * width && dstStep == dstPixelBytes * width;
  return fused ? ConvertRows{1, width * roi.height} : ConvertRows{roi.height, width};
}

struct ConvertPlan {
  std::int64_t rows;
  std::int64_t rowPixels;
  bool streaming;
  std::int64_t lineBytes;  ///< Boundary of the streaming stores; means nothing without them.
};

/// Whole images may stream: where the bytes that are moved fill the cache, and a row of the destination
/// holds two cache lines at least. A line of unknown size has no boundary to stream from.
template <int dstPixelBytes, class QueryCache, class QueryLineSize>
constexpr ConvertPlan planConvertImage(Size roi, int srcStep, int dstStep, QueryCache queryCache,
                                       QueryLineSize queryLineSize) {
  constexpr std::int64_t movedBytesPerPixel = 4 + dstPixelBytes;
  const ConvertRows rows = planConvertRows<dstPixelBytes>(roi, srcStep, dstStep);
  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  const auto cache = queryCache();
  const std::int64_t line = queryLineSize();
  const bool streaming = cache.known && line > 0 && rows.rowPixels * dstPixelBytes >= 2 * line &&
                         pixels * movedBytesPerPixel >= cache.bytes;
  return {rows.rows, rows.rowPixels, streaming, line};
}

/// Whether a run of floats is converted one by one: where it is too short for a turn of 8, where it overlaps
/// its source, and where its floats straddle their own alignment, which no aligned store can reach.
constexpr bool planSingleFloats(std::uintptr_t src, std::uintptr_t dst, std::int64_t n) {
  const auto bytes = static_cast<std::uintptr_t>(4 * n);
  const bool overlapping = src < dst + bytes && dst < src + bytes;
  return n < 8 || overlapping || dst % 4 != 0;
}

/// Pixels of a row of `n` that end at or before the next multiple of `boundary` bytes, which need be no power
/// of two. Where no pixel ends at it, the stores behind the head do not reach it either: test the address.
constexpr std::int64_t pixelsToBoundary(std::uintptr_t address, std::int64_t boundary, int pixelBytes,
                                        std::int64_t n) {
  const std::int64_t past = static_cast<std::int64_t>(address % static_cast<std::uintptr_t>(boundary));
  const std::int64_t peel = past == 0 ? 0 : (boundary - past) / pixelBytes;
  return peel < n ? peel : n;
}

}  // namespace
}  // namespace Zorvan::Primitives
