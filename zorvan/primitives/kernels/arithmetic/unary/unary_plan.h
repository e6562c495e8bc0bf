#pragma once

// The decisions of an operation on one image, or from one to another, before it reads a pixel. Pure, so that
// each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::Unary {
namespace {

/// Whether pixels of `pixelBytes` are written to another image by streaming stores. Squares of floats have a
/// rule of their own.
template <int pixelBytes, class Query>
constexpr bool planStreaming(std::int64_t pixels, Query queryCache) {
  constexpr std::int32_t above =
      pixelBytes == 1 ? UnaryLimits::streamByteImagesAboveBytes : UnaryLimits::streamAboveBytes;
  if (pixels <= above / (2 * pixelBytes)) return false;
  return pixels > UnaryLimits::streamUnknownCacheAboveBytes / (2 * pixelBytes) || queryCache().known;
}

/// The step in whole pixels: entries that compute row by row ignore the bytes beyond them.
constexpr std::int64_t wholePixels(std::int64_t step) { return step & ~3; }

struct SquarePlan {
  std::int64_t rows;
  std::int64_t rowPixels;
  std::int64_t prefetchBytes;  ///< distance from the pixels that are read; 0: no prefetch
  bool streaming;
};

/// Rows without a gap run as one. The number of bytes that decides on prefetches and streaming wraps on 32
/// bits, which for regions beyond 2 GiB costs speed only; the number of pixels does not wrap.
constexpr SquarePlan planSquareImage(Size roi, std::int64_t srcStep, std::int64_t dstStep, bool inPlace) {
  const std::int64_t width = roi.width;
  const auto total = static_cast<std::int32_t>(static_cast<std::uint32_t>(roi.width) * (inPlace ? 4U : 8U) *
                                               static_cast<std::uint32_t>(roi.height));
  const bool fused = srcStep == dstStep && srcStep == 4 * width;
  const bool oneRow = fused || roi.height == 1;
  SquarePlan plan{roi.height, width, 0, false};
  if (fused) plan = {1, width * roi.height, 0, false};
  if (total < UnaryLimits::prefetchFromBytes) return plan;
  plan.prefetchBytes = oneRow && total <= UnaryLimits::streamAboveBytes ? 256 : srcStep;
  plan.streaming = !inPlace && total > UnaryLimits::streamAboveBytes;
  return plan;
}

struct FloatRowsPlan {
  std::int64_t rows;
  std::int64_t rowPixels;
};

/// Rows without a gap in whole pixels run as one. For operations whose results do not depend on a pixel's
/// position in its row.
constexpr FloatRowsPlan planFloatRows(Size roi, std::int64_t srcStep, std::int64_t dstStep) {
  const std::int64_t tight = 4 * std::int64_t{roi.width};
  if (wholePixels(srcStep) != tight || wholePixels(dstStep) != tight) return {roi.height, roi.width};
  return {1, std::int64_t{roi.width} * roi.height};
}

/// Pixels of a row of `pixels` before the boundary. Rows of misaligned pixels never reach it and have no
/// peel.
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

/// Rows without a gap run as one.
template <class Query>
constexpr ByteRowsPlan planByteRows(Size roi, std::int64_t srcStep, std::int64_t dstStep, bool inPlace,
                                    Query queryCache) {
  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  const bool fused = srcStep == roi.width && dstStep == roi.width;
  const bool streaming = !inPlace && planStreaming<1>(pixels, queryCache);
  return fused ? ByteRowsPlan{1, pixels, streaming} : ByteRowsPlan{roi.height, roi.width, streaming};
}

}  // namespace
}  // namespace Zorvan::Primitives::Unary
