#pragma once

// What a fill does before it touches a pixel: whether the rows run together as one, and which stores are
// used. Pure, so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives {
namespace {

enum class FillStores {
  plain,
  claimed,    ///< plain, with the lines asked for ahead of the stores
  streaming,  ///< past the cache
  unphased    ///< plain, at any address and phase
};

struct FillPlan {
  std::int64_t rows;
  std::int64_t rowBytes;
  FillStores stores;
};

/// The older variants. 16-bit fills never stream although they ask.
template <int pixelBytes, class Query>
constexpr FillPlan planRowFill(Size roi, int dstStep, Query queryCache) {
  const std::int64_t rowBytes = std::int64_t{roi.width} * pixelBytes;
  const std::int64_t total = rowBytes * roi.height;
  bool streaming = false;
  if (total > RowFillLimits::queryAboveBytes) {
    const auto cache = queryCache();
    streaming = pixelBytes != 2 && cache.known && total >= cache.bytes;
  }
  const bool fused = rowBytes == dstStep;
  return {fused ? 1 : roi.height, fused ? total : rowBytes,
          streaming ? FillStores::streaming : FillStores::plain};
}

constexpr int bitLength(std::int32_t positive) { return 32 - __builtin_clz(static_cast<unsigned>(positive)); }

/// `oddRows`: some row starts at an odd address. Only 16-bit fills care: their pattern has no phase for it.
template <int pixelBytes, class Query>
constexpr FillPlan planWideFill(Size roi, int dstStep, bool oddRows, Query queryCache) {
  using Limits = WideFillLimits<pixelBytes>;
  const std::int64_t rowBytes = std::int64_t{roi.width} * pixelBytes;
  if (pixelBytes == 2 && oddRows) return {roi.height, rowBytes, FillStores::unphased};

  if (bitLength(roi.width) + bitLength(roi.height) >= Limits::streamFromBits)
    return {roi.height, rowBytes, FillStores::streaming};

  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  FillStores stores =
      pixels * pixelBytes > Limits::prefetchAboveBytes ? FillStores::claimed : FillStores::plain;
  if (pixels > Limits::queryAbovePixels) {
    const auto cache = queryCache();
    if (!cache.known) stores = FillStores::plain;
    if (cache.known && pixels >= (cache.bytes >> Limits::cacheShift)) stores = FillStores::streaming;
  }
  const bool fused = rowBytes == dstStep;
  return {fused ? 1 : roi.height, fused ? pixels * pixelBytes : rowBytes, stores};
}

}  // namespace
}  // namespace Zorvan::Primitives
