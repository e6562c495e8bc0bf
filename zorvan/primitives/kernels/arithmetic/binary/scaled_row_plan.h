#pragma once

// The limits of each integer operation's scaling, and how a row is unrolled under it. Pure, so that each
// limit can be tested from both sides on any machine.

#include "zorvan/primitives/kernels/common/scaling_plan.h"

namespace Zorvan::Primitives::Arithmetic {
namespace {

enum class Operation { sum, difference, product };

constexpr ScalingLimits scalingLimits(Operation operation, int pixelBytes, bool isSigned) {
  const bool bytes = pixelBytes == 1;
  switch (operation) {
    case Operation::sum:
      return bytes ? ScalingLimits{9, -7} : isSigned ? ScalingLimits{16, -15} : ScalingLimits{17, -15};
    case Operation::difference:
      return bytes ? ScalingLimits{8, -7} : isSigned ? ScalingLimits{16, -15} : ScalingLimits{16, -15};
    case Operation::product:
      return bytes ? ScalingLimits{16, -7} : isSigned ? ScalingLimits{30, -14} : ScalingLimits{32, -15, 16};
  }
  return {};
}

/// A row of 16-byte stores.
struct ScaledRow16Plan {
  int vectorsFromPixels;  ///< Shorter rows go pixel by pixel.
  int iterationBytes;
  bool tailInVectors;  ///< The tail begins with 16 and 8 bytes where nothing overlaps.
};

constexpr ScaledRow16Plan planScaledRow16(Operation operation, int pixelBytes, Scaling scaling) {
  const bool signOnly = scaling == Scaling::signOnly, saturated = scaling == Scaling::saturated;
  if (pixelBytes == 1) {
    if (operation == Operation::product) return {signOnly ? 47 : 31, 16, false};
    if (saturated) return {47, 32, true};
    const bool longer = signOnly || (operation == Operation::difference && scaling == Scaling::enlarged);
    return {longer ? 47 : 31, 16, false};
  }
  const bool twoVectors = saturated || (signOnly && operation != Operation::product);
  return twoVectors ? ScaledRow16Plan{23, 32, false} : ScaledRow16Plan{15, 16, false};
}

/// Bytes of an iteration in a row of 32-byte stores, whatever its width.
constexpr int planScaledRow32(int pixelBytes, Scaling scaling) {
  const bool twoVectors = scaling == Scaling::saturated || (scaling == Scaling::signOnly && pixelBytes == 2);
  return twoVectors ? 64 : 32;
}

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
