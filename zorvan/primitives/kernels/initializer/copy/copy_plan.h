#pragma once

// What a plain copy does before it touches a pixel: whether the rows run together as one, which stores are
// used, and from which end. Pure, so that each limit can be tested from both sides on any machine. A plan
// asks for the cache's size only above its limit: the question may cost more than a small copy.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives {
namespace {

/// A region in bytes: copying never looks at the pixels.
struct CopyShape {
  std::int64_t rowBytes;
  std::int64_t rows;
  int srcStep;
  int dstStep;

  constexpr std::int64_t total() const { return rowBytes * rows; }
  /// Neither image has a gap between its rows.
  constexpr bool isOneRun() const { return rowBytes == srcStep && rowBytes == dstStep; }
};

template <int pixelBytes>
constexpr CopyShape copyShape(Size roi, int srcStep, int dstStep) {
  return {std::int64_t{roi.width} * pixelBytes, roi.height, srcStep, dstStep};
}

/// Rows to copy one by one, already run together where nothing lies between them.
struct CopyPlan {
  std::int64_t rows;
  std::int64_t rowBytes;
  bool streaming;
};

constexpr CopyPlan copyPlan(const CopyShape& shape, bool fused, bool streaming) {
  return {fused ? 1 : shape.rows, fused ? shape.total() : shape.rowBytes, streaming};
}

template <int pixelBytes>
constexpr CopyPlan planRowCopy(Size roi, int srcStep, int dstStep) {
  const CopyShape shape = copyShape<pixelBytes>(roi, srcStep, dstStep);
  const bool mayFuse = pixelBytes != 1 || (roi.width < RowCopyLimits::fuseBelowPixels &&
                                           roi.height < RowCopyLimits::fuseBelowPixels);
  return copyPlan(shape, mayFuse && shape.isOneRun(), shape.total() > RowCopyLimits::streamAboveBytes);
}

template <class Query>
constexpr CopyPlan planLeaf2Copy(const CopyShape& shape, Query queryCache) {
  CopyPlan plan = copyPlan(shape, shape.isOneRun(), false);
  if (plan.rowBytes >= Leaf2CopyLimits::leastRowBytes && shape.total() > Leaf2CopyLimits::queryAboveBytes) {
    const auto cache = queryCache();
    plan.streaming = cache.known && 2 * shape.total() > cache.bytes;
  }
  return plan;
}

/// `streaming` means the large copier; without it the short copier does the work.
template <class Query>
constexpr CopyPlan planShortOrLargeCopy(const CopyShape& shape, Query queryCache) {
  const std::int64_t twice = 2 * shape.total();
  bool streaming = false;
  if (shape.rowBytes >= LargeCopyLimits::leastRowBytes && twice > LargeCopyLimits::queryAboveTwice) {
    const auto cache = queryCache();
    streaming = cache.known && twice > cache.bytes;
  }
  return copyPlan(shape, shape.isOneRun(), streaming);
}

/// Where in their pages the first bytes lie, which is all that a plan needs of an address.
struct CopyAddresses {
  std::uintptr_t src;
  std::uintptr_t dst;

  /// The destination lies at or a little ahead of the source, modulo the page. A forward copy would then
  /// load right behind its own stores, and each load would wait for a store that only looks like the same.
  constexpr bool destinationJustAhead() const {
    constexpr std::uintptr_t page = 4096;
    constexpr std::uintptr_t reach = 160;
    return dst % page - src % page < reach;
  }
};

enum class RunCopyForm { forward, backward, streaming };

template <class Query>
constexpr RunCopyForm planRunCopy(const CopyAddresses& at, std::int64_t length, Query queryCache) {
  if (length < RunCopyLimits::forwardBelowBytes) return RunCopyForm::forward;
  if (length > RunCopyLimits::queryAboveBytes) {
    const auto cache = queryCache();
    if (cache.known && 2 * length >= cache.bytes) return RunCopyForm::streaming;
  }
  return at.destinationJustAhead() ? RunCopyForm::backward : RunCopyForm::forward;
}

enum class WideCopyForm {
  run,                  ///< no gaps: planRunCopy decides further
  narrowRows,           ///< one straight-line body for all rows
  unalignedRows,        ///< each row finds its own boundary
  alignedRows,          ///< all rows are whole 32-byte vectors
  alignedRowsBackward,  ///< the same from the end
  streamedRows,         ///< streaming, each row finds its own boundary
  streamedAlignedRows,  ///< streaming, all rows start on a cache line
};

template <class Query>
constexpr WideCopyForm planWideCopy(const CopyAddresses& at, const CopyShape& shape, Query queryCache) {
  const std::int64_t total = shape.total();
  bool streaming = total > WideCopyLimits::streamAlwaysAboveBytes;
  if (!streaming) {
    if (shape.isOneRun()) return WideCopyForm::run;
    if (shape.rowBytes < WideCopyLimits::narrowBelowBytes) return WideCopyForm::narrowRows;
    if (total > WideCopyLimits::queryAboveBytes) {
      const auto cache = queryCache();
      streaming = cache.known && 2 * total >= cache.bytes;
    }
  }
  if (streaming) {
    const bool aligned = at.dst % 64 == 0 && shape.dstStep % 64 == 0 && shape.rowBytes % 32 == 0;
    return aligned ? WideCopyForm::streamedAlignedRows : WideCopyForm::streamedRows;
  }
  if (at.dst % 32 != 0 || shape.dstStep % 32 != 0 || shape.rowBytes % 32 != 0) {
    return WideCopyForm::unalignedRows;
  }
  return shape.srcStep == shape.dstStep && at.destinationJustAhead() ? WideCopyForm::alignedRowsBackward
                                                                     : WideCopyForm::alignedRows;
}

}  // namespace
}  // namespace Zorvan::Primitives
