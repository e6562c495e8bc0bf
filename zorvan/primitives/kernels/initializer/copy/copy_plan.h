#pragma once

// Decisions of a plain copy: whether the rows are copied as one, with which stores, and from which end. Pure,
// so that each limit can be tested from both sides on any machine. A plan queries the cache only above its
// limit: the query may take longer than a small copy.

#include <cstdint>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::Copy {
namespace {

/// A region in bytes: a copy does not depend on the pixels' type.
struct CopyShape {
  std::int64_t rowBytes;
  std::int64_t rows;
  std::int64_t srcStep;
  std::int64_t dstStep;

  constexpr std::int64_t total() const { return rowBytes * rows; }
  /// Neither image has a gap between its rows.
  constexpr bool isOneRun() const { return rowBytes == srcStep && rowBytes == dstStep; }
};

template <int pixelBytes>
constexpr CopyShape copyShape(Size roi, std::int64_t srcStep, std::int64_t dstStep) {
  return {std::int64_t{roi.width} * pixelBytes, roi.height, srcStep, dstStep};
}

/// Rows to copy one by one; one row where the images have no gaps.
struct CopyPlan {
  std::int64_t rows;
  std::int64_t rowBytes;
  bool streaming;
};

constexpr CopyPlan copyPlan(const CopyShape& shape, bool fused, bool streaming) {
  return {fused ? 1 : shape.rows, fused ? shape.total() : shape.rowBytes, streaming};
}

template <int pixelBytes>
constexpr CopyPlan planCopy16(Size roi, std::int64_t srcStep, std::int64_t dstStep) {
  const CopyShape shape = copyShape<pixelBytes>(roi, srcStep, dstStep);
  const bool mayFuse = pixelBytes != 1 || (roi.width < Copy16Limits::fuseBelowPixels &&
                                           roi.height < Copy16Limits::fuseBelowPixels);
  return copyPlan(shape, mayFuse && shape.isOneRun(), shape.total() > Copy16Limits::streamAboveBytes);
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

/// The first bytes of both images. Plans depend on their places within a page only.
struct CopyAddresses {
  std::uintptr_t src;
  std::uintptr_t dst;

  /// Whether the destination lies at or shortly after the source, modulo the page. In a forward copy each
  /// load would then wait for an earlier store whose address has the same low bits.
  constexpr bool destinationJustAfter() const {
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
  return at.destinationJustAfter() ? RunCopyForm::backward : RunCopyForm::forward;
}

enum class Copy32Form {
  run,                   ///< no gaps: planRunCopy decides further
  narrowRows,            ///< one straight-line body for all rows
  unalignedRows,         ///< each row finds its own boundary
  alignedRows,           ///< all rows are whole 32-byte vectors
  alignedRowsBackward,   ///< the same from the end
  streamingRows,         ///< streaming, each row finds its own boundary
  streamingAlignedRows,  ///< streaming, all rows start on a cache line
};

template <class Query>
constexpr Copy32Form planCopy32(const CopyAddresses& at, const CopyShape& shape, Query queryCache) {
  const std::int64_t total = shape.total();
  bool streaming = total > Copy32Limits::streamAlwaysAboveBytes;
  if (!streaming) {
    if (shape.isOneRun()) return Copy32Form::run;
    if (shape.rowBytes < Copy32Limits::narrowBelowBytes) return Copy32Form::narrowRows;
    if (total > Copy32Limits::queryAboveBytes) {
      const auto cache = queryCache();
      streaming = cache.known && 2 * total >= cache.bytes;
    }
  }
  if (streaming) {
    const bool aligned = at.dst % 64 == 0 && shape.dstStep % 64 == 0 && shape.rowBytes % 32 == 0;
    return aligned ? Copy32Form::streamingAlignedRows : Copy32Form::streamingRows;
  }
  if (at.dst % 32 != 0 || shape.dstStep % 32 != 0 || shape.rowBytes % 32 != 0) {
    return Copy32Form::unalignedRows;
  }
  return shape.srcStep == shape.dstStep && at.destinationJustAfter() ? Copy32Form::alignedRowsBackward
                                                                     : Copy32Form::alignedRows;
}

}  // namespace
}  // namespace Zorvan::Primitives::Copy
