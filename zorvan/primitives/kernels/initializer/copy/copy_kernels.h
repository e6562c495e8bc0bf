#pragma once

// Plain copy: the entries, and which variant copies how.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_large.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_leaf2.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_narrow.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_plan.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_row.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_run.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_short.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_wide.h"

namespace Zorvan::Primitives {
namespace {

struct CopyImages {
  const unsigned char* src;
  int srcStep;
  unsigned char* dst;
  int dstStep;
};

/// By value: pixels are bytes, so a store to them would make the compiler read what it holds by address anew.
template <class CopyOne>
inline void copyEachRow(CopyImages images, std::int64_t rows, std::int64_t rowBytes, CopyOne copyOne) {
  for (std::int64_t r = 0; r < rows; ++r) {
    copyOne(rowAt(images.src, images.srcStep, r), rowAt(images.dst, images.dstStep, r), rowBytes);
  }
}

struct ShortOrLargeCopy;
struct WideCopy;

/// 16-byte stores, a fixed limit in bytes.
struct RowCopy {
  template <int pixelBytes>
  static void copy(const CopyImages& images, Size roi) {
    const CopyPlan plan = planRowCopy<pixelBytes>(roi, images.srcStep, images.dstStep);
    ZORVAN_NOTE_ONE_ROW("planRowCopy as one row", plan.rows, roi.height);
    ZORVAN_NOTE_PLAN("planRowCopy streaming", plan.streaming);
    copyEachRow(images, plan.rows, plan.rowBytes,
                [streaming = plan.streaming](const auto* src, auto* dst, std::int64_t length) {
                  copyRow(src, dst, length, streaming);
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
  static void copy(const CopyImages& images, Size roi) {
    const CopyShape shape = copyShape<pixelBytes>(roi, images.srcStep, images.dstStep);
    const CopyPlan plan = planLeaf2Copy(shape, queryLeaf2);
    ZORVAN_NOTE_ONE_ROW("planLeaf2Copy as one row", plan.rows, roi.height);
    ZORVAN_NOTE_PLAN("planLeaf2Copy streaming", plan.streaming);
    if (plan.streaming) {
      copyEachRow(images, plan.rows, plan.rowBytes, copyPastCache);
      fenceStores();
    } else {
      copyEachRow(images, plan.rows, plan.rowBytes, copyThroughCache);
    }
  }
};

#ifdef __AVX__
/// 16-byte stores while it fits the cache, 32-byte streaming stores beyond.
struct ShortOrLargeCopy {
  template <int pixelBytes>
  static void copy(const CopyImages& images, Size roi) {
    const CopyShape shape = copyShape<pixelBytes>(roi, images.srcStep, images.dstStep);
    const CopyPlan plan = planShortOrLargeCopy(shape, queryCacheSize);
    ZORVAN_NOTE_ONE_ROW("planShortOrLargeCopy as one row", plan.rows, roi.height);
    ZORVAN_NOTE_PLAN("planShortOrLargeCopy streaming", plan.streaming);
    if (plan.streaming) {
      copyEachRow(images, plan.rows, plan.rowBytes, copyLarge);
      fenceStores();
    } else {
      copyEachRow(images, plan.rows, plan.rowBytes, copyShort);
    }
  }
};
#endif

#ifdef __AVX2__
/// 32-byte stores throughout.
struct WideCopy {
  template <int pixelBytes>
  static void copy(const CopyImages& images, Size roi) {
    const CopyShape shape = copyShape<pixelBytes>(roi, images.srcStep, images.dstStep);
    const CopyAddresses at{reinterpret_cast<std::uintptr_t>(images.src),
                           reinterpret_cast<std::uintptr_t>(images.dst)};
    switch (ZORVAN_PLANNED("planWideCopy", planWideCopy(at, shape, queryCacheSize))) {
      case WideCopyForm::run:
        return copyRun(ZORVAN_PLANNED("planRunCopy", planRunCopy(at, shape.total(), queryCacheSize)),
                       images.src, images.dst, shape.total());
      case WideCopyForm::narrowRows:
        return copyNarrow({images.src, images.srcStep, images.dst, images.dstStep, shape.rows},
                          shape.rowBytes);
      case WideCopyForm::unalignedRows:
        return copyEachRow(images, shape.rows, shape.rowBytes, copyForward);
      case WideCopyForm::alignedRows:
        return copyEachRow(images, shape.rows, shape.rowBytes, copyVectors<AlignedStores>);
      case WideCopyForm::alignedRowsBackward:
        for (std::int64_t r = shape.rows; r-- != 0;) {
          copyVectorsBackward(rowAt(images.src, images.srcStep, r), rowAt(images.dst, images.dstStep, r),
                              shape.rowBytes);
        }
        return;
      case WideCopyForm::streamedRows:
        copyEachRow(images, shape.rows, shape.rowBytes, copyRowStreaming);
        return fenceStores();
      case WideCopyForm::streamedAlignedRows:
        copyEachRow(images, shape.rows, shape.rowBytes, copyVectors<StreamingStores>);
        return fenceStores();
    }
  }
};
#endif

template <class V, int pixelBytes>
struct CopyPolicyOf {
  using type = ByVariant<V, RowCopy, Leaf2Copy, Leaf2Copy, ShortOrLargeCopy, WideCopy, WideCopy>;
};
template <class V>
struct CopyPolicyOf<V, 4> {
  using type = ByVariant<V, RowCopy, Leaf2Copy, Leaf2Copy, Leaf2Copy, WideCopy, WideCopy>;
};

/// Bits are carried as they are, so all types of one size share a copy. Kept out of line: their entries are
/// then one jump each.
template <class V, int pixelBytes>
[[gnu::noinline]] int copyPlain(const void* src, int srcStep, void* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  CopyPolicyOf<V, pixelBytes>::type::template copy<pixelBytes>(
      {static_cast<const unsigned char*>(src), srcStep, static_cast<unsigned char*>(dst), dstStep}, roi);
  return ippStsNoErr;
}

}  // namespace

template <class V>
int Routines<V>::ippiCopy_8u_C1R(const u8* src, int srcStep, u8* dst, int dstStep, Size roi) {
  return copyPlain<V, 1>(src, srcStep, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiCopy_16u_C1R(const u16* src, int srcStep, u16* dst, int dstStep, Size roi) {
  return copyPlain<V, 2>(src, srcStep, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiCopy_16s_C1R(const s16* src, int srcStep, s16* dst, int dstStep, Size roi) {
  return copyPlain<V, 2>(src, srcStep, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiCopy_32s_C1R(const int* src, int srcStep, int* dst, int dstStep, Size roi) {
  return copyPlain<V, 4>(src, srcStep, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiCopy_32f_C1R(const float* src, int srcStep, float* dst, int dstStep, Size roi) {
  return copyPlain<V, 4>(src, srcStep, dst, dstStep, roi);
}

}  // namespace Zorvan::Primitives
