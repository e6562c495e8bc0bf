#pragma once

// Which way of scaling serves a scale factor, and how rows are walked under it. Pure, so that each limit can
// be tested from both sides on any machine.

#include <cstdint>

namespace Zorvan::Primitives {
namespace {

enum class Scaling {
  saturated,    ///< f = 0
  halved,       ///< f = 1
  rounded,      ///< f above 1
  longRounded,  ///< f above 1 where the rounding term needs more than 32 bits
  enlarged,     ///< f below 0
  signOnly,     ///< f so far below 0 that all results but 0 saturate
  zero          ///< f so far above 0 that all results round to 0
};

enum class Operation { sum, difference, product };

/// An operation's limits. The zero limit is the last f that the largest result does not round to 0 at.
struct ScalingLimits {
  int zeroAbove;
  int signOnlyBelow;
  int longRoundedAbove = 64;
};

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

constexpr Scaling planScaling(ScalingLimits limits, int f) {
  if (f == 0) return Scaling::saturated;
  if (f > limits.zeroAbove) return Scaling::zero;
  if (f < limits.signOnlyBelow) return Scaling::signOnly;
  if (f < 0) return Scaling::enlarged;
  if (f == 1) return Scaling::halved;
  return f > limits.longRoundedAbove ? Scaling::longRounded : Scaling::rounded;
}

/// A row of 16-byte stores: from which width on it runs in passes, and how long these are.
struct NarrowRowPlan {
  int passFromPixels;
  int passBytes;
  bool remainderInSteps;  ///< What the passes leave goes 16 and 8 bytes at a time where nothing overlaps.
};

constexpr NarrowRowPlan planNarrowRow(Operation operation, int pixelBytes, Scaling scaling) {
  const bool signOnly = scaling == Scaling::signOnly, saturated = scaling == Scaling::saturated;
  if (pixelBytes == 1) {
    if (operation == Operation::product) return {signOnly ? 47 : 31, 16, false};
    if (saturated) return {47, 32, true};
    const bool longer = signOnly || (operation == Operation::difference && scaling == Scaling::enlarged);
    return {longer ? 47 : 31, 16, false};
  }
  const bool wholePass = saturated || (signOnly && operation != Operation::product);
  return wholePass ? NarrowRowPlan{23, 32, false} : NarrowRowPlan{15, 16, false};
}

/// A row of 32-byte stores runs in passes of as many bytes, whatever its width.
constexpr int planWidePass(int pixelBytes, Scaling scaling) {
  const bool wholePass = scaling == Scaling::saturated || (scaling == Scaling::signOnly && pixelBytes == 2);
  return wholePass ? 64 : 32;
}

}  // namespace
}  // namespace Zorvan::Primitives
