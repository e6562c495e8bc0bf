#pragma once

// What the logical operations do before they touch a pixel: whether rows run together as one, where they are
// aligned and which stores are used. Pure, so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/Wrapping.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::Bitwise {
namespace {

enum class LogicalStores {
  anywhere,   ///< from the row's first byte on
  aligned,    ///< on 64-byte boundaries
  streaming,  ///< on 64-byte boundaries, past the cache
};

struct XorConstantLimits {
  static constexpr int alignFromBytes = 256;
};

/// Rows are streamed where source and destination together do not fit the cache. Both figures are 32-bit and
/// signed, so an unknown cache, which answers 0 or -1, always streams, and a product that wraps to a negative
/// figure never does.
template <class Query>
constexpr LogicalStores planXorConstant(bool inPlace, Size roi, Query queryCache) {
  if (roi.width < XorConstantLimits::alignFromBytes) return LogicalStores::anywhere;
  if (inPlace) return LogicalStores::aligned;
  const std::int32_t both = wrappedProduct(wrappedProduct(2, roi.width), roi.height);
  return both >= queryCache().bytes ? LogicalStores::streaming : LogicalStores::aligned;
}

struct CombineRows {
  std::int64_t rows;
  std::int64_t rowBytes;
};

constexpr CombineRows planCombine(Size roi, int src1Step, int src2Step, int dstStep) {
  const bool gapless = src1Step == roi.width && src2Step == roi.width && dstStep == roi.width;
  if (gapless && (roi.width | roi.height) <= CombineLimits::fuseUpToBits) {
    return {1, std::int64_t{roi.width} * roi.height};
  }
  return {roi.height, roi.width};
}

}  // namespace
}  // namespace Zorvan::Primitives::Bitwise
