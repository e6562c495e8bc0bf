#pragma once

// Decisions of the logical operations: whether the rows are processed as one, aligned, and with which stores.
// Pure, so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/Wrapping.h"
#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/simd/stores.h"

namespace Zorvan::Primitives::Bitwise {
namespace {

struct XorConstantLimits {
  static constexpr int alignFromBytes = 256;
};

/// Short rows take plain stores from their first byte on, others stores on 64-byte boundaries. Those stream
/// if source and destination together do not fit the cache. Both sizes are signed and have 32 bits: an
/// unknown cache, which is reported as 0 or -1, always streams, and a product that wraps to a negative value
/// never does.
template <class Query>
constexpr Stores planXorConstant(bool inPlace, Size roi, Query queryCache) {
  if (roi.width < XorConstantLimits::alignFromBytes) return Stores::plain;
  if (inPlace) return Stores::aligned;
  const std::int32_t both = wrappedProduct(wrappedProduct(2, roi.width), roi.height);
  return both >= queryCache().bytes ? Stores::streaming : Stores::aligned;
}

struct CombineRows {
  std::int64_t rows;
  std::int64_t rowBytes;
};

constexpr CombineRows planCombine(Size roi, std::int64_t src1Step, std::int64_t src2Step,
                                  std::int64_t dstStep) {
  const bool gapless = src1Step == roi.width && src2Step == roi.width && dstStep == roi.width;
  if (gapless && (roi.width | roi.height) <= CombineLimits::fuseUpToBits) {
    return {1, std::int64_t{roi.width} * roi.height};
  }
  return {roi.height, roi.width};
}

}  // namespace
}  // namespace Zorvan::Primitives::Bitwise
