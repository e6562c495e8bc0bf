#pragma once

// What masked sums decide by size. Pure, so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/statistic/SumPlan.h"

namespace Zorvan::Primitives {
namespace {

/// Regions with less pixels than this take the narrow path of byte means: 32 bits hold their sum. The count
/// wraps on 32 bits, so an enormous region may come out as a small one.
constexpr std::int32_t narrowSumBelow = 0x800000;

constexpr bool takesNarrowSum(Size roi) { return wrappedCount(roi) < narrowSumBelow; }

/// Additions into a lane of floats before it is emptied into a double.
constexpr int floatAdditions = 480;

/// Steps of 64 words that lanes of 32 bits with a sign hold: each adds two words to a lane.
constexpr int wordStepsInLanes = 16384;

/// Rows of words whose sums may go into the same lanes; one at least.
constexpr int wordRowsInLanes(int width) {
  const int steps = (width - 1) / 64 + 1;
  return steps < wordStepsInLanes ? wordStepsInLanes / steps : 1;
}

/// Selected pixels of a row whose squares of bytes fit a lane of 32 bits, whatever the vector's width: a lane
/// takes four squares of each 16 pixels at most.
constexpr std::int64_t squaresInLanes = std::int64_t{1} << 17;

}  // namespace
}  // namespace Zorvan::Primitives
