#pragma once

// Bitwise logic on 8-bit images: the entries, and which variant uses which loops.
//
// All pixels are bytes, so a region is as wide in bytes as in pixels. Source and destination may be the same
// image with the same step; any other overlap is the caller's responsibility.

#include <cstdint>

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/common/prefetch_plan.h"
#include "zorvan/primitives/kernels/logical/bitwise/logical_blocks.h"
#include "zorvan/primitives/kernels/logical/bitwise/logical_plan.h"
#include "zorvan/primitives/kernels/logical/bitwise/logical_row.h"

namespace Zorvan::Primitives::Bitwise {
namespace {

/// Row by row on a 16-byte boundary.
struct XorConstant16 {
  static void run(u8 constant, Plane<const u8> src, Plane<u8> dst, Size roi) {
    for (std::int64_t r = 0; r < roi.height; ++r) xorConstantRow(constant, src.at(r), dst.at(r), roi.width);
  }
};

/// Row by row in blocks, longer rows aligned, streaming if the images do not fit the cache.
template <class Ends>
struct BlockXorConstant {
  using RowRoutine = void(u8, const u8*, u8*, std::int64_t);

  template <RowRoutine* xorRow>
  static void eachRow(u8 constant, Plane<const u8> src, Plane<u8> dst, Size roi) {
    for (std::int64_t r = 0; r < roi.height; ++r) xorRow(constant, src.at(r), dst.at(r), roi.width);
  }
  /// Unrolled by 4: the loop over the rows costs as much as a short row.
  template <int blocks, bool tail>
  static void eachShortRow(u8 constant, Plane<const u8> src, Plane<u8> dst, Size roi) {
    const auto xorRow = [&](std::int64_t r) {
      xorConstantShort<Ends, blocks, tail>(constant, src.at(r), dst.at(r), roi.width);
    };
    std::int64_t r = 0;
    for (; r + 4 <= roi.height; r += 4) xorRow(r), xorRow(r + 1), xorRow(r + 2), xorRow(r + 3);
    for (; r < roi.height; ++r) xorRow(r);
  }
  template <int blocks>
  static void shortRowsOf(u8 constant, Plane<const u8> src, Plane<u8> dst, Size roi) {
    if (roi.width == 64 * blocks) return eachShortRow<blocks, false>(constant, src, dst, roi);
    eachShortRow<blocks, true>(constant, src, dst, roi);
  }
  static void shortRows(u8 constant, Plane<const u8> src, Plane<u8> dst, Size roi) {
    static_assert(XorConstantLimits::alignFromBytes == 4 * 64);
    switch (roi.width / 64) {
      case 0:
        return eachShortRow<0, true>(constant, src, dst, roi);
      case 1:
        return shortRowsOf<1>(constant, src, dst, roi);
      case 2:
        return shortRowsOf<2>(constant, src, dst, roi);
      default:
        return shortRowsOf<3>(constant, src, dst, roi);
    }
  }
  static void run(u8 constant, Plane<const u8> src, Plane<u8> dst, Size roi) {
    const bool inPlace = src.pixels == dst.pixels;
    switch (ZORVAN_PLANNED("planXorConstant", planXorConstant(inPlace, roi, queryCacheSize))) {
      case Stores::plain:
        return shortRows(constant, src, dst, roi);
      case Stores::aligned:
        if (ZORVAN_PLANNED("prefetchesInPlace, of a constant",
                           prefetchesInPlace(inPlace, std::int64_t{roi.width} * roi.height))) {
          return eachRow<xorConstantBlocks<Ends, Stores::aligned, true>>(constant, src, dst, roi);
        }
        return eachRow<xorConstantBlocks<Ends, Stores::aligned, false>>(constant, src, dst, roi);
      case Stores::streaming:
        eachRow<xorConstantBlocks<Ends, Stores::streaming, false>>(constant, src, dst, roi);
        return fenceStores();
    }
  }
};

/// Row by row on a 16-byte boundary, also of images without gaps.
struct Combine16 {
  template <class Op>
  static void run(Plane<const u8> src1, Plane<const u8> src2, Plane<u8> dst, Size roi) {
    for (std::int64_t r = 0; r < roi.height; ++r) {
      combineRow<Op>(src1.at(r), src2.at(r), dst.at(r), roi.width);
    }
  }
};

/// Blocks on a 64-byte boundary; images without gaps are one row.
template <class Ends>
struct BlockCombine {
  template <class Op>
  [[gnu::always_inline]] static void run(Plane<const u8> src1, Plane<const u8> src2, Plane<u8> dst,
                                         Size roi) {
    if (ZORVAN_PLANNED("prefetchesInPlace, of two images",
                       prefetchesInPlace(src2.pixels == dst.pixels, std::int64_t{roi.width} * roi.height))) {
      return prefetchedRows<Op>(src1, src2, dst, roi);
    }
    rows<Op, false>(src1, src2, dst, roi);
  }

 private:
  /// Out of line: it would take registers from the loop over small images.
  template <class Op>
  [[gnu::noinline]] static void prefetchedRows(Plane<const u8> src1, Plane<const u8> src2, Plane<u8> dst,
                                               Size roi) {
    rows<Op, true>(src1, src2, dst, roi);
  }
  template <class Op, bool prefetching>
  [[gnu::always_inline]] static void rows(Plane<const u8> src1, Plane<const u8> src2, Plane<u8> dst,
                                          Size roi) {
    const CombineRows plan = planCombine(roi, src1.step, src2.step, dst.step);
    ZORVAN_NOTE_ONE_ROW("planCombine as one row", plan.rows, roi.height);
    for (std::int64_t r = 0; r < plan.rows; ++r) {
      combineBlocks<Ends, Op, prefetching>(src1.at(r), src2.at(r), dst.at(r), plan.rowBytes);
    }
  }
};

template <class V>
using XorConstantPolicy =
    ByVariant<V, XorConstant16, XorConstant16, BlockXorConstant<Ends16>, BlockXorConstant<Ends16>,
              BlockXorConstant<Ends32>, BlockXorConstant<Ends64>>;
template <class V>
using CombinePolicy =
    ByVariant<V, Combine16, Combine16, Combine16, Combine16, BlockCombine<Ends32>, BlockCombine<Ends64>>;

/// The steps are tested before the size here.
template <class V>
[[gnu::noinline]] int complement(const u8* src, int srcStep, u8* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (srcStep < 1 || dstStep < 1) return ippStsStepErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  XorConstantPolicy<V>::run(255, {src, srcStep}, {dst, dstStep}, roi);
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
  CombinePolicy<V>::template run<Op>({src1, src1Step}, {src2, src2Step}, {dst, dstStep}, roi);
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
