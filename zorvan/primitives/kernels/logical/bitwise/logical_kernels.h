#pragma once

// Bitwise logic on 8-bit images: the entries, and which variant walks how.
//
// All pixels are bytes, so a region is as wide in bytes as in pixels. Source and destination may be the same
// image with the same step; any other overlap is up to the caller.

#include <cstdint>

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/prefetch_plan.h"
#include "zorvan/primitives/kernels/logical/bitwise/logical_blocks.h"
#include "zorvan/primitives/kernels/logical/bitwise/logical_plan.h"
#include "zorvan/primitives/kernels/logical/bitwise/logical_row.h"

namespace Zorvan::Primitives::Bitwise {
namespace {

struct ComplementImages {
  const u8* src;
  int srcStep;
  u8* dst;
  int dstStep;
};

struct CombineImages {
  const u8* src1;
  int src1Step;
  const u8* src2;
  int src2Step;
  u8* dst;
  int dstStep;
};

/// Row by row on a 16-byte boundary.
struct RowXorConstant {
  static void run(u8 constant, ComplementImages images, Size roi) {
    for (std::int64_t r = 0; r < roi.height; ++r) {
      xorConstantRow(constant, rowAt(images.src, images.srcStep, r), rowAt(images.dst, images.dstStep, r),
                     roi.width);
    }
  }
};

/// Row by row in blocks, the longer rows aligned, past the cache where it is too small.
template <class Pieces>
struct BlockXorConstant {
  using RowRoutine = void(u8, const u8*, u8*, std::int64_t);

  template <RowRoutine* xorRow>
  static void eachRow(u8 constant, ComplementImages images, Size roi) {
    for (std::int64_t r = 0; r < roi.height; ++r) {
      xorRow(constant, rowAt(images.src, images.srcStep, r), rowAt(images.dst, images.dstStep, r), roi.width);
    }
  }
  /// Four rows a turn: a turn of its own for each costs as much as a row.
  template <int blocks, bool tail>
  static void eachShortRow(u8 constant, ComplementImages images, Size roi) {
    const auto xorRow = [&](std::int64_t r) {
      xorConstantShort<Pieces, blocks, tail>(constant, rowAt(images.src, images.srcStep, r),
                                             rowAt(images.dst, images.dstStep, r), roi.width);
    };
    std::int64_t r = 0;
    for (; r + 4 <= roi.height; r += 4) xorRow(r), xorRow(r + 1), xorRow(r + 2), xorRow(r + 3);
    for (; r < roi.height; ++r) xorRow(r);
  }
  template <int blocks>
  static void shortRowsOf(u8 constant, ComplementImages images, Size roi) {
    if (roi.width == 64 * blocks) return eachShortRow<blocks, false>(constant, images, roi);
    eachShortRow<blocks, true>(constant, images, roi);
  }
  static void shortRows(u8 constant, ComplementImages images, Size roi) {
    static_assert(XorConstantLimits::alignFromBytes == 4 * 64);
    switch (roi.width / 64) {
      case 0:
        return eachShortRow<0, true>(constant, images, roi);
      case 1:
        return shortRowsOf<1>(constant, images, roi);
      case 2:
        return shortRowsOf<2>(constant, images, roi);
      default:
        return shortRowsOf<3>(constant, images, roi);
    }
  }
  static void run(u8 constant, ComplementImages images, Size roi) {
    const bool inPlace = images.src == images.dst;
    switch (ZORVAN_PLANNED("planXorConstant", planXorConstant(inPlace, roi, queryCacheSize))) {
      case LogicalStores::anywhere:
        return shortRows(constant, images, roi);
      case LogicalStores::aligned:
        if (ZORVAN_PLANNED("prefetchesInPlace, of a constant",
                           prefetchesInPlace(inPlace, std::int64_t{roi.width} * roi.height))) {
          return eachRow<xorConstantBlocks<Pieces, LogicalStores::aligned, true>>(constant, images, roi);
        }
        return eachRow<xorConstantBlocks<Pieces, LogicalStores::aligned, false>>(constant, images, roi);
      case LogicalStores::streaming:
        eachRow<xorConstantBlocks<Pieces, LogicalStores::streaming, false>>(constant, images, roi);
        return fenceStores();
    }
  }
};

/// Row by row on a 16-byte boundary, never run together.
struct RowCombine {
  template <class Op>
  static void run(CombineImages images, Size roi) {
    for (std::int64_t r = 0; r < roi.height; ++r) {
      combineRow<Op>(rowAt(images.src1, images.src1Step, r), rowAt(images.src2, images.src2Step, r),
                     rowAt(images.dst, images.dstStep, r), roi.width);
    }
  }
};

/// Blocks on a 64-byte boundary, rows run together where nothing lies between them.
template <class Pieces>
struct BlockCombine {
  template <class Op>
  static void run(CombineImages images, Size roi) {
    if (ZORVAN_PLANNED("prefetchesInPlace, of two images",
                       prefetchesInPlace(images.src2 == images.dst, std::int64_t{roi.width} * roi.height))) {
      return rowsAhead<Op>(images, roi);
    }
    rows<Op, false>(images, roi);
  }

 private:
  /// Out of line, where it takes no registers from the walk over small images.
  template <class Op>
  [[gnu::noinline]] static void rowsAhead(CombineImages images, Size roi) {
    rows<Op, true>(images, roi);
  }
  template <class Op, bool ahead>
  [[gnu::always_inline]] static void rows(CombineImages images, Size roi) {
    const CombineRows plan = planCombine(roi, images.src1Step, images.src2Step, images.dstStep);
    ZORVAN_NOTE_ONE_ROW("planCombine as one row", plan.rows, roi.height);
    for (std::int64_t r = 0; r < plan.rows; ++r) {
      combineBlocks<Pieces, Op, ahead>(rowAt(images.src1, images.src1Step, r),
                                       rowAt(images.src2, images.src2Step, r),
                                       rowAt(images.dst, images.dstStep, r), plan.rowBytes);
    }
  }
};

template <class V>
using XorConstantPolicy =
    ByVariant<V, RowXorConstant, RowXorConstant, BlockXorConstant<Pieces16>, BlockXorConstant<Pieces16>,
              BlockXorConstant<Pieces32>, BlockXorConstant<MaskedPieces>>;
template <class V>
using CombinePolicy = ByVariant<V, RowCombine, RowCombine, RowCombine, RowCombine, BlockCombine<Pieces32>,
                                BlockCombine<MaskedPieces>>;

/// The steps are tested before the size here.
template <class V>
[[gnu::noinline]] int complement(const u8* src, int srcStep, u8* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (srcStep < 1 || dstStep < 1) return ippStsStepErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  XorConstantPolicy<V>::run(255, {src, srcStep, dst, dstStep}, roi);
  return ippStsNoErr;
}
template <class V>
int complementInPlace(u8* srcDst, int srcDstStep, Size roi) {
  return complement<V>(srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

template <class V, class Op>
[[gnu::noinline]] int combine(const u8* src1, int src1Step, const u8* src2, int src2Step, u8* dst,
                              int dstStep, Size roi) {
  if (src1 == nullptr || src2 == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (src1Step < 1 || src2Step < 1 || dstStep < 1) return ippStsStepErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  CombinePolicy<V>::template run<Op>({src1, src1Step, src2, src2Step, dst, dstStep}, roi);
  return ippStsNoErr;
}
template <class V, class Op>
int combineInPlace(const u8* src, int srcStep, u8* srcDst, int srcDstStep, Size roi) {
  return combine<V, Op>(src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

template <class V>
struct Bodies {
  static constexpr auto ippiNot_8u_C1IR = complementInPlace<V>;
  static constexpr auto ippiNot_8u_C1R = complement<V>;
  static constexpr auto ippiXor_8u_C1IR = combineInPlace<V, Xor>;
  static constexpr auto ippiXor_8u_C1R = combine<V, Xor>;
  static constexpr auto ippiOr_8u_C1IR = combineInPlace<V, Or>;
  static constexpr auto ippiOr_8u_C1R = combine<V, Or>;
  static constexpr auto ippiAnd_8u_C1IR = combineInPlace<V, And>;
  static constexpr auto ippiAnd_8u_C1R = combine<V, And>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Bitwise
