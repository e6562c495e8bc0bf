#pragma once

// Decisions of a fill: whether the rows are filled as one, and with which stores. Pure, so that each limit
// can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::Fill {
namespace {

enum class FillStores {
  plain,
  prefetched,  ///< plain, with the lines prefetched for writing
  streaming,
  anyAddress  ///< plain, of 16-bit pixels at odd addresses
};

struct FillPlan {
  std::int64_t rows;
  std::int64_t rowBytes;
  FillStores stores;
};

/// The older variants. 16-bit fills query the cache, and never stream.
template <int pixelBytes, class Query>
constexpr FillPlan planFill16(Size roi, std::int64_t dstStep, Query queryCache) {
  const std::int64_t rowBytes = std::int64_t{roi.width} * pixelBytes;
  const std::int64_t total = rowBytes * roi.height;
  bool streaming = false;
  if (total > Fill16Limits::queryAboveBytes) {
    const auto cache = queryCache();
    streaming = pixelBytes != 2 && cache.known && total >= cache.bytes;
  }
  const bool fused = rowBytes == dstStep;
  return {fused ? 1 : roi.height, fused ? total : rowBytes,
          streaming ? FillStores::streaming : FillStores::plain};
}

constexpr int bitLength(std::int32_t positive) { return 32 - __builtin_clz(static_cast<unsigned>(positive)); }

/// `oddRows`: some row starts at an odd address. That matters to 16-bit fills only.
template <int pixelBytes, class Query>
constexpr FillPlan planFill32(Size roi, std::int64_t dstStep, bool oddRows, Query queryCache) {
  using Limits = Fill32Limits<pixelBytes>;
  const std::int64_t rowBytes = std::int64_t{roi.width} * pixelBytes;
  if (pixelBytes == 2 && oddRows) return {roi.height, rowBytes, FillStores::anyAddress};

  if (bitLength(roi.width) + bitLength(roi.height) >= Limits::streamFromBits)
    return {roi.height, rowBytes, FillStores::streaming};

  const std::int64_t pixels = std::int64_t{roi.width} * roi.height;
  FillStores stores =
      pixels * pixelBytes > Limits::prefetchAboveBytes ? FillStores::prefetched : FillStores::plain;
  if (pixels > Limits::queryAbovePixels) {
    const auto cache = queryCache();
    if (!cache.known) stores = FillStores::plain;
    if (cache.known && pixels >= (cache.bytes >> Limits::cacheShift)) stores = FillStores::streaming;
  }
  const bool fused = rowBytes == dstStep;
  return {fused ? 1 : roi.height, fused ? pixels * pixelBytes : rowBytes, stores};
}

}  // namespace
}  // namespace Zorvan::Primitives::Fill
