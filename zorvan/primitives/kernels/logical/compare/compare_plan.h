#pragma once

// What a comparison does before it touches a pixel: whether rows run together as one, and which loads and
// stores are used. Pure, so that each limit can be tested from both sides on any machine.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/Wrapping.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::Compare {
namespace {

/// The five operators, by the codes that callers give.
enum class Operator { less, lessEqual, equal, greaterEqual, greater };
constexpr unsigned operatorCount = 5;

enum class CompareAccess {
  unaligned,
  aligned,    ///< all rows of both images start on 16-byte boundaries
  streaming,  ///< the same, with whole vectors stored past the cache
};

/// What a plan needs of an image: where it begins, and its step.
struct ComparePlace {
  std::uintptr_t address;
  int step;
};

constexpr CompareAccess planRowCompare(ComparePlace src, ComparePlace dst, Size roi) {
  const auto onBoundary = [](ComparePlace image) { return image.address % 16 == 0 && image.step % 16 == 0; };
  if (!onBoundary(src) || !onBoundary(dst)) return CompareAccess::unaligned;
  const std::int32_t touched = wrappedProduct(wrappedSum(src.step, dst.step), roi.height);
  return touched > RowCompareLimits::streamAboveBytes ? CompareAccess::streaming : CompareAccess::aligned;
}

/// A region as rows, already run together where nothing lies between them.
struct CompareRows {
  std::int64_t rows;
  std::int64_t pixels;  // in a row
};

template <int pixelBytes>
constexpr CompareRows planWideCompare(Size roi, int srcStep, int dstStep) {
  const bool gapless = srcStep == std::int64_t{roi.width} * pixelBytes && dstStep == roi.width;
  if (gapless && (roi.width | roi.height) <= WideCompareLimits::fuseUpToBits) {
    return {1, std::int64_t{roi.width} * roi.height};
  }
  return {roi.height, roi.width};
}

}  // namespace
}  // namespace Zorvan::Primitives::Compare
