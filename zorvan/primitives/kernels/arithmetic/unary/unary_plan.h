#pragma once

// What an operation on one image, or from one to another, decides before it touches a pixel. Pure, so
// that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives {
namespace {

/// Whether pixels of `pixelBytes` that go from one image to another go past the cache. Squares of floats have
/// a rule of their own.
template <int pixelBytes, class Query>
constexpr bool planStreaming(std::int64_t pixels, Query queryCache) {
  constexpr std::int32_t above = pixelBytes == 1 ? streamByteImagesAbove : streamAboveBytes;
  if (pixels <= above / (2 * pixelBytes)) return false;
  return pixels > streamUnknownCacheAboveBytes / (2 * pixelBytes) || queryCache().known;
}

/// The row distance in whole pixels. Entries that walk their rows one by one do not honour the bytes left.
constexpr int wholePixels(int step) { return step & ~3; }

struct SquarePlan {
  std::int64_t rows;
  std::int64_t rowPixels;
  int prefetchBytes;  ///< how far ahead of the source; 0: not at all
  bool streaming;
};

/// Rows without a gap run as one. The figure that decides on the memory wraps on 32 bits, as the row's does
/// not: a region beyond 2 GiB is squared whole, if at another pace.
constexpr SquarePlan planSquareFrame(Size roi, int srcStep, int dstStep, bool inPlace) {
  const std::int64_t width = roi.width;
  const auto total = static_cast<std::int32_t>(static_cast<std::uint32_t>(roi.width) * (inPlace ? 4U : 8U) *
                                               static_cast<std::uint32_t>(roi.height));
  const bool fused = srcStep == dstStep && srcStep == 4 * width;
  const bool oneRow = fused || roi.height == 1;
  SquarePlan plan{roi.height, width, 0, false};
  if (fused) plan = {1, width * roi.height, 0, false};
  if (total < prefetchFromBytes) return plan;
  plan.prefetchBytes = oneRow && total <= streamAboveBytes ? 256 : srcStep;
  plan.streaming = !inPlace && total > streamAboveBytes;
  return plan;
}

struct FloatRows {
  std::int64_t rows;
  std::int64_t rowPixels;
};

/// Rows of floats without a gap in whole pixels run as one, where the result does not depend on a pixel's
/// place in its row.
constexpr FloatRows planFloatRows(Size roi, int srcStep, int dstStep) {
  const std::int64_t tight = 4 * std::int64_t{roi.width};
  if (wholePixels(srcStep) != tight || wholePixels(dstStep) != tight) return {roi.height, roi.width};
  return {1, std::int64_t{roi.width} * roi.height};
}

/// Pixels of a row of `pixels` in front of the boundary. Pixels that lie across it never reach it: they have
/// no head.
constexpr std::int64_t planPeel(std::uintptr_t dst, std::int64_t pixels, int boundaryBytes) {
  if (dst % 4 != 0) return 0;
  const auto peel = static_cast<std::int64_t>(-dst & static_cast<std::uintptr_t>(boundaryBytes - 1)) / 4;
  return peel < pixels ? peel : pixels;
}

struct ByteRowsPlan {
  std::int64_t rows;
  std::int64_t rowPixels;
  bool streaming;
};

/// Rows without a gap run as one. A destination of its own that cannot stay in the cache goes past it.
template <class Query>
constexpr ByteRowsPlan planByteRows(Size roi, int srcStep, int dstStep, bool inPlace, Query queryCache) {
  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  const bool fused = srcStep == roi.width && dstStep == roi.width;
  const bool streaming = !inPlace && planStreaming<1>(pixels, queryCache);
  return fused ? ByteRowsPlan{1, pixels, streaming} : ByteRowsPlan{roi.height, roi.width, streaming};
}

}  // namespace
}  // namespace Zorvan::Primitives
