#pragma once

// Which scaling serves a scale factor. Pure, so that each limit can be tested from both sides on any machine.

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

/// An operation's limits: its largest result rounds to 0 from the next scale factor after `zeroAbove` on.
struct ScalingLimits {
  int zeroAbove;
  int signOnlyBelow;
  int longRoundedAbove = 64;
};

constexpr Scaling planScaling(ScalingLimits limits, int f) {
  if (f == 0) return Scaling::saturated;
  if (f > limits.zeroAbove) return Scaling::zero;
  if (f < limits.signOnlyBelow) return Scaling::signOnly;
  if (f < 0) return Scaling::enlarged;
  if (f == 1) return Scaling::halved;
  return f > limits.longRoundedAbove ? Scaling::longRounded : Scaling::rounded;
}

}  // namespace
}  // namespace Zorvan::Primitives
