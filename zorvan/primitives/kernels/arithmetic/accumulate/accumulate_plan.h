#pragma once

// What a masked accumulation decides before it touches a pixel: whether the steps are good, and how a row is
// cut. Pure, so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/Status.h"

namespace Zorvan::Primitives {
namespace {

struct AccumulateSteps {
  int src, mask, srcDst;
};

/// The figures are formed in 64 bits: four times a width need not fit into an `int`.
constexpr bool holdsRow(int step, int width, int pixelBytes) {
  return step >= std::int64_t{width} * pixelBytes;
}

/// All minima before the multiples. The entry of 16-bit pixels finishes with its source first.
template <int srcPixelBytes>
constexpr int testAccumulateSteps(AccumulateSteps steps, int width) {
  if (!holdsRow(steps.src, width, srcPixelBytes)) return Ipp::ippStsStepErr;
  if (srcPixelBytes == 2 && steps.src % 2 != 0) return Ipp::ippStsNotEvenStepErr;
  if (!holdsRow(steps.mask, width, 1) || !holdsRow(steps.srcDst, width, 4)) return Ipp::ippStsStepErr;
  if (steps.src % srcPixelBytes != 0 || steps.srcDst % 4 != 0) return Ipp::ippStsNotEvenStepErr;
  return Ipp::ippStsNoErr;
}

struct AccumulateRowPlan {
  bool byPixels;      ///< the whole row without a pass
  std::int64_t peel;  ///< pixels in front of the first pass
};

/// The limits of a form: the shortest row with passes and the boundary that they start on.
template <int leastPixels, int boundaryBytes>
struct AccumulateLimits {
  static constexpr int least = leastPixels;
  static constexpr int boundary = boundaryBytes;
};

constexpr std::int64_t pixelsToAccumulatorBoundary(std::uintptr_t srcDst, int boundary) {
  return static_cast<std::int64_t>(-srcDst & static_cast<std::uintptr_t>(boundary - 1)) / 4;
}

/// Passes wherever there are pixels for one: an accumulator that lies across the boundary never reaches it,
/// and has no head.
constexpr AccumulateRowPlan planSelectingRow(std::uintptr_t srcDst, std::int64_t pixels) {
  const std::int64_t peel = srcDst % 4 == 0 ? pixelsToAccumulatorBoundary(srcDst, 16) : 0;
  return {false, peel < pixels ? peel : pixels};
}

/// Passes in long rows alone, and only where they can start on the boundary, which lies within the shortest
/// of them.
template <class Limits>
constexpr AccumulateRowPlan planWeightingRow(std::uintptr_t srcDst, std::int64_t pixels) {
  if (pixels < Limits::least || srcDst % 4 != 0) return {true, 0};
  return {false, pixelsToAccumulatorBoundary(srcDst, Limits::boundary)};
}

/// Whether a row of masked steps starts its passes on a boundary, after `peel` pixels.
template <class Limits>
constexpr std::int64_t planMaskedSteps(std::uintptr_t srcDst, std::int64_t pixels) {
  const bool peeled = pixels >= Limits::least && srcDst % 4 == 0;
  return peeled ? pixelsToAccumulatorBoundary(srcDst, Limits::boundary) : 0;
}

/// Whether all rows are passes of 32 pixels alone, so that none has a step of its own.
template <class Limits>
constexpr bool areWholePasses(std::uintptr_t srcDst, int srcDstStep, std::int64_t pixels) {
  if (pixels % 32 != 0) return false;
  return pixels < Limits::least || (srcDst % Limits::boundary == 0 && srcDstStep % Limits::boundary == 0);
}

}  // namespace
}  // namespace Zorvan::Primitives
