#pragma once

// How the sums of a region are cut so that 32-bit lanes hold them. Pure, so that each limit can be tested
// from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// The number of a region's pixels modulo 2^32, as a signed value.
constexpr std::int32_t wrappedCount(Size roi) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(roi.width) *
                                   static_cast<std::uint32_t>(roi.height));
}

struct SumRows {
  std::int64_t rows;
  std::int64_t pixels;  ///< of each row
};

/// Bytes without a gap between the rows run as one row.
constexpr SumRows planByteRows(Size roi, std::int64_t step) {
  if (step == roi.width) return {1, std::int64_t{roi.width} * roi.height};
  return {roi.height, roi.width};
}

constexpr bool regionFitsLanes(Size roi) { return std::int64_t{roi.width} * roi.height < regionInLanesBelow; }

constexpr Size planTile(Size roi, int limit) {
  const auto atLeastOne = [](int a) { return a > 1 ? a : 1; };
  const auto smaller = [](int a, int b) { return a < b ? a : b; };
  const int rows = smaller(atLeastOne(limit / roi.width), roi.height);
  return {smaller(atLeastOne(limit / rows), roi.width), rows};
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
