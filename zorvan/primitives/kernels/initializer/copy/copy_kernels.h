#pragma once

// Plain copy: the entries, and which variant copies how.

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_large.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_leaf2.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_narrow.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_plan.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_row16.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_rows32.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_run32.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_short.h"

namespace Zorvan::Primitives::Copy {
namespace {

/// `copyRow(src, dst, rowBytes)` for every row.
template <class CopyRow>
inline void copyRows(Plane<const u8> src, Plane<u8> dst, std::int64_t rows, std::int64_t rowBytes,
                     CopyRow copyRow) {
  forEachRow(
      rows, [=](const u8* srcRow, u8* dstRow) { copyRow(srcRow, dstRow, rowBytes); }, src, dst);
}

struct ShortOrLargeCopy;
struct Copy32;

/// 16-byte stores, a fixed limit in bytes.
struct Copy16 {
  template <int pixelBytes>
  static void copy(Plane<const u8> src, Plane<u8> dst, Size roi) {
    const CopyPlan plan = planCopy16<pixelBytes>(roi, src.step, dst.step);
    ZORVAN_NOTE_ONE_ROW("planCopy16 as one row", plan.rows, roi.height);
    ZORVAN_NOTE_PLAN("planCopy16 streaming", plan.streaming);
    copyRows(src, dst, plan.rows, plan.rowBytes,
             [streaming = plan.streaming](const u8* srcRow, u8* dstRow, std::int64_t length) {
               copyRow16(srcRow, dstRow, length, streaming);
             });
  }
};

/// With lowered limits the tests force the answer about the cache, also in place of leaf 2, which the
/// processor at hand may not have.
#ifdef ZORVAN_LOWERED_LIMITS
constexpr auto queryLeaf2 = queryCacheSize;
#else
constexpr auto queryLeaf2 = queryLeaf2CacheSize;
#endif

/// 16-byte stores, the cache read from leaf 2.
struct Leaf2Copy {
  template <int pixelBytes>
  static void copy(Plane<const u8> src, Plane<u8> dst, Size roi) {
    const CopyShape shape = copyShape<pixelBytes>(roi, src.step, dst.step);
    const CopyPlan plan = planLeaf2Copy(shape, queryLeaf2);
    ZORVAN_NOTE_ONE_ROW("planLeaf2Copy as one row", plan.rows, roi.height);
    ZORVAN_NOTE_PLAN("planLeaf2Copy streaming", plan.streaming);
    if (plan.streaming) {
      copyRows(src, dst, plan.rows, plan.rowBytes, copyRowLeaf2Streaming);
      fenceStores();
    } else {
      copyRows(src, dst, plan.rows, plan.rowBytes, copyRowLeaf2);
    }
  }
};

#ifdef __AVX__
/// 16-byte stores for images that fit the cache, 32-byte streaming stores for larger ones.
struct ShortOrLargeCopy {
  template <int pixelBytes>
  static void copy(Plane<const u8> src, Plane<u8> dst, Size roi) {
    const CopyShape shape = copyShape<pixelBytes>(roi, src.step, dst.step);
    const CopyPlan plan = planShortOrLargeCopy(shape, queryCacheSize);
    ZORVAN_NOTE_ONE_ROW("planShortOrLargeCopy as one row", plan.rows, roi.height);
    ZORVAN_NOTE_PLAN("planShortOrLargeCopy streaming", plan.streaming);
    if (plan.streaming) {
      copyRows(src, dst, plan.rows, plan.rowBytes, copyLarge);
      fenceStores();
    } else {
      copyRows(src, dst, plan.rows, plan.rowBytes, copyShort);
    }
  }
};
#endif

#ifdef __AVX2__
/// 32-byte stores throughout.
struct Copy32 {
  template <int pixelBytes>
  static void copy(Plane<const u8> src, Plane<u8> dst, Size roi) {
    const CopyShape shape = copyShape<pixelBytes>(roi, src.step, dst.step);
    const CopyAddresses at{reinterpret_cast<std::uintptr_t>(src.pixels),
                           reinterpret_cast<std::uintptr_t>(dst.pixels)};
    switch (ZORVAN_PLANNED("planCopy32", planCopy32(at, shape, queryCacheSize))) {
      case Copy32Form::run:
        return copyContiguous(at, src.pixels, dst.pixels, shape.total());
      case Copy32Form::narrowRows:
        return copyNarrow({src, dst, shape.rows, shape.rowBytes});
      case Copy32Form::unalignedRows:
        return copyRows(src, dst, shape.rows, shape.rowBytes, copyForward);
      case Copy32Form::alignedRows:
        return copyRows(src, dst, shape.rows, shape.rowBytes, copyVectors<Stores::aligned>);
      case Copy32Form::alignedRowsBackward:
        for (std::int64_t r = shape.rows; r-- != 0;) {
          copyVectorsBackward(src.at(r), dst.at(r), shape.rowBytes);
        }
        return;
      case Copy32Form::streamingRows:
        copyRows(src, dst, shape.rows, shape.rowBytes, copyRowStreaming);
        return fenceStores();
      case Copy32Form::streamingAlignedRows:
        copyRows(src, dst, shape.rows, shape.rowBytes, copyVectors<Stores::streaming>);
        return fenceStores();
    }
  }

 private:
  [[gnu::always_inline]] static void copyContiguous(CopyAddresses at, const u8* src, u8* dst,
                                                    std::int64_t length) {
    switch (ZORVAN_PLANNED("planRunCopy", planRunCopy(at, length, queryCacheSize))) {
      case RunCopyForm::forward:
        return copyForward(src, dst, length);
      case RunCopyForm::backward:
        return copyBackward(src, dst, length);
      case RunCopyForm::streaming:
        copyStreaming(src, dst, length);
        return fenceStores();
    }
  }
};
#endif

template <class V, int pixelBytes>
struct PolicyOf {
  using type = ByVariant<V, Copy16, Leaf2Copy, Leaf2Copy, ShortOrLargeCopy, Copy32, Copy32>;
};
template <class V>
struct PolicyOf<V, 4> {
  using type = ByVariant<V, Copy16, Leaf2Copy, Leaf2Copy, Leaf2Copy, Copy32, Copy32>;
};

/// Types of one size share a copy. Out of line: their entries are then one jump each.
template <class V, int pixelBytes>
[[gnu::noinline]] int copy(const void* src, int srcStep, void* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  PolicyOf<V, pixelBytes>::type::template copy<pixelBytes>({static_cast<const u8*>(src), srcStep},
                                                           {static_cast<u8*>(dst), dstStep}, roi);
  return ippStsNoErr;
}

template <class V>
struct Bodies {
  static constexpr auto ippiCopy_8u_C1R = copy<V, 1>;
  static constexpr auto ippiCopy_16u_C1R = copy<V, 2>;
  static constexpr auto ippiCopy_16s_C1R = copy<V, 2>;
  static constexpr auto ippiCopy_32s_C1R = copy<V, 4>;
  static constexpr auto ippiCopy_32f_C1R = copy<V, 4>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Copy
