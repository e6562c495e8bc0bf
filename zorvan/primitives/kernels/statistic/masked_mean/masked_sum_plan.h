#pragma once

// What masked sums decide by size. Pure, so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/statistic/mean/sum_plan.h"

namespace Zorvan::Primitives {
namespace {

constexpr bool takesNarrowSum(Size roi) { return wrappedCount(roi) < narrowSumBelow; }

/// Additions into a lane of floats before it is emptied into a double.
constexpr int floatAdditions = 480;

/// Rows of words whose sums may go into the same lanes; one at least.
constexpr int wordRowsInLanes(int width) {
  const int steps = (width - 1) / 64 + 1;
  return steps < wordStepsInLanes ? wordStepsInLanes / steps : 1;
}

}  // namespace
}  // namespace Zorvan::Primitives
