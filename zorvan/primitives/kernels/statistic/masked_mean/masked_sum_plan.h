#pragma once

// Decisions of masked sums by size. Pure, so that both sides of each limit can be tested on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_plan.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// The number of pixels wraps: an enormous region may count as a small one.
constexpr bool unrollsByteSum(Size roi) { return wrappedCount(roi) < unrolledByteSumBelow; }

/// Additions to a lane of floats before it is added to a double and cleared.
constexpr int floatAdditions = 480;

/// Rows of words whose sums may go into the same lanes; one at least. Each 64 pixels add two words to a lane
/// of 64-byte vectors, and four to one of 32 bytes.
template <int vectorBytes>
constexpr int wordRowsInLanes(int width) {
  const int additions = ((width - 1) / 64 + 1) * (128 / vectorBytes);
  constexpr int wordsInLanes = 2 * wordIterationsInLanes;
  return additions < wordsInLanes ? wordsInLanes / additions : 1;
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
