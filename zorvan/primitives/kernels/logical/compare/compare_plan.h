#pragma once

// Decisions of a comparison: whether the rows are compared as one, and with which loads and stores. Pure, so
// that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/Wrapping.h"
#include "zorvan/primitives/kernels/common/image_limits.h"
#include "zorvan/primitives/kernels/simd/stores.h"

namespace Zorvan::Primitives::Compare {
namespace {

/// The five operators by their codes.
enum class Operator { less, lessEqual, equal, greaterEqual, greater };
constexpr unsigned operatorCount = 5;

/// The address of an image, and its step.
struct ComparePlace {
  std::uintptr_t address;
  std::int32_t step;
};

/// The loads are aligned if the stores are.
constexpr Stores planCompare16(ComparePlace src, ComparePlace dst, Size roi) {
  const auto onBoundary = [](ComparePlace image) { return image.address % 16 == 0 && image.step % 16 == 0; };
  if (!onBoundary(src) || !onBoundary(dst)) return Stores::plain;
  const std::int32_t touched = wrappedProduct(wrappedSum(src.step, dst.step), roi.height);
  return touched > Compare16Limits::streamAboveBytes ? Stores::streaming : Stores::aligned;
}

/// A region as rows, one if neither image has gaps.
struct CompareRows {
  std::int64_t rows;
  std::int64_t pixels;  // in a row
};

template <int pixelBytes>
constexpr CompareRows planCompare32(Size roi, std::int64_t srcStep, std::int64_t dstStep) {
  const bool gapless = srcStep == std::int64_t{roi.width} * pixelBytes && dstStep == roi.width;
  if (gapless && (roi.width | roi.height) <= Compare32Limits::fuseUpToBits) {
    return {1, std::int64_t{roi.width} * roi.height};
  }
  return {roi.height, roi.width};
}

}  // namespace
}  // namespace Zorvan::Primitives::Compare
