#pragma once

// The decisions of a masked accumulation before it reads a pixel: whether the steps are valid, and how a row
// is divided. Pure, so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/Status.h"

namespace Zorvan::Primitives::Accumulate {
namespace {

struct AccumulateSteps {
  int src, mask, srcDst;
};

/// In 64 bits: four times a width may exceed an `int`.
constexpr bool holdsRow(int step, int width, int pixelBytes) {
  return step >= std::int64_t{width} * pixelBytes;
}

/// Minima are tested before multiples, except that both tests of a 16-bit source come first.
template <int srcPixelBytes>
constexpr int testAccumulateSteps(AccumulateSteps steps, int width) {
  if (!holdsRow(steps.src, width, srcPixelBytes)) return Ipp::ippStsStepErr;
  if (srcPixelBytes == 2 && steps.src % 2 != 0) return Ipp::ippStsNotEvenStepErr;
  if (!holdsRow(steps.mask, width, 1) || !holdsRow(steps.srcDst, width, 4)) return Ipp::ippStsStepErr;
  if (steps.src % srcPixelBytes != 0 || steps.srcDst % 4 != 0) return Ipp::ippStsNotEvenStepErr;
  return Ipp::ippStsNoErr;
}

struct AccumulateRowPlan {
  bool scalar;        ///< no vectors in this row
  std::int64_t peel;  ///< pixels before the first vector
};

/// The shortest row with vectors, or with a peel, and the boundary of the first vector in bytes.
template <int leastPixels, int boundaryBytes>
struct AccumulateLimits {
  static constexpr int least = leastPixels;
  static constexpr int boundary = boundaryBytes;
};

constexpr std::int64_t pixelsToAccumulatorBoundary(std::uintptr_t srcDst, int boundary) {
  return static_cast<std::int64_t>(-srcDst & static_cast<std::uintptr_t>(boundary - 1)) / 4;
}

/// Vectors in rows of every length and at every address. A misaligned accumulator never reaches the boundary
/// and has no peel.
constexpr AccumulateRowPlan planSelectingRow(std::uintptr_t srcDst, std::int64_t pixels) {
  const std::int64_t peel = srcDst % 4 == 0 ? pixelsToAccumulatorBoundary(srcDst, 16) : 0;
  return {false, peel < pixels ? peel : pixels};
}

/// Vectors only in rows of at least `Limits::least` pixels, and only from the boundary on, which the peel of
/// these rows reaches.
template <class Limits>
constexpr AccumulateRowPlan planWeightingRow(std::uintptr_t srcDst, std::int64_t pixels) {
  if (pixels < Limits::least || srcDst % 4 != 0) return {true, 0};
  return {false, pixelsToAccumulatorBoundary(srcDst, Limits::boundary)};
}

/// The peel of a row whose peel and tail are masked vectors. 0 in short rows and where the boundary cannot be
/// reached.
template <class Limits>
constexpr std::int64_t planMaskedPeel(std::uintptr_t srcDst, std::int64_t pixels) {
  const bool peeled = pixels >= Limits::least && srcDst % 4 == 0;
  return peeled ? pixelsToAccumulatorBoundary(srcDst, Limits::boundary) : 0;
}

/// Whether no row has a peel or a tail: all consist of iterations of 32 pixels.
template <class Limits>
constexpr bool areFullVectors(std::uintptr_t srcDst, std::int64_t srcDstStep, std::int64_t pixels) {
  if (pixels % 32 != 0) return false;
  return pixels < Limits::least || (srcDst % Limits::boundary == 0 && srcDstStep % Limits::boundary == 0);
}

}  // namespace
}  // namespace Zorvan::Primitives::Accumulate
