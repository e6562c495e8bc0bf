#pragma once

// Conversion of 32-bit signed pixels to bytes and to floats: the entries, and which variant converts how.

#include <cstdint>

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/initializer/convert/convert_float.h"
#include "zorvan/primitives/kernels/initializer/convert/convert_narrow_rows.h"
#include "zorvan/primitives/kernels/initializer/convert/convert_plan.h"

namespace Zorvan::Primitives {
namespace {

/// The images of one call as bytes: pixels may start at any address.
struct ConvertImages {
  const unsigned char* src;
  int srcStep;
  unsigned char* dst;
  int dstStep;

  /// `convertRow(src, dst, n)` for every row.
  template <class Rows, class ConvertRow>
  void eachRow(const Rows& rows, ConvertRow convertRow) const {
    for (std::int64_t r = 0; r < rows.rows; ++r) {
      convertRow(rowAt(src, srcStep, r), rowAt(dst, dstStep, r), rows.rowPixels);
    }
  }
};

/// Row by row with plain stores, whatever the size.
struct NarrowAligned {
  static void convert(const ConvertImages& images, Size roi) {
    images.eachRow(planConvertRows<1>(roi, images.srcStep, images.dstStep), narrowRowAligned);
  }
};

/// Streams what does not fit into the cache.
struct NarrowStreaming {
  static void convert(const ConvertImages& images, Size roi) {
    const ConvertPlan plan =
        planConvertImage<1>(roi, images.srcStep, images.dstStep, queryCacheSize, queryCacheLineSize);
    ZORVAN_NOTE_ONE_ROW("planConvertImage as one row", plan.rows, roi.height);
    if (!ZORVAN_PLANNED("planConvertImage streaming", plan.streaming))
      return images.eachRow(plan, narrowBody64<false>);
    images.eachRow(plan,
                   [&](auto* src, auto* dst, auto n) { narrowRowStreaming(src, dst, n, plan.lineBytes); });
    fenceStores();
  }
};

struct NarrowGroups32;
struct NarrowGroups64;

/// Row by row with plain stores again, with wider loads.
template <class Groups>
struct NarrowWide {
#ifdef __AVX2__
  static void convert(const ConvertImages& images, Size roi) {
    images.eachRow(planConvertRows<1>(roi, images.srcStep, images.dstStep), narrowRowWide<Groups>);
  }
#endif
};

template <class V>
using NarrowPolicy = ByVariant<V, NarrowAligned, NarrowAligned, NarrowStreaming, NarrowStreaming,
                               NarrowWide<NarrowGroups32>, NarrowWide<NarrowGroups64>>;

/// Row by row with plain stores, whatever the size.
struct ToFloatByRow {
  static void convert(const ConvertImages& images, Size roi) {
    images.eachRow(planConvertRows<4>(roi, images.srcStep, images.dstStep), toFloatRow);
  }
};

struct Vector32;
struct Vector64;

/// Streams what does not fit into the cache.
template <class Vector>
struct ToFloatStreaming {
  static void convert(const ConvertImages& images, Size roi) {
    const ConvertPlan plan =
        planConvertImage<4>(roi, images.srcStep, images.dstStep, queryCacheSize, queryCacheLineSize);
    ZORVAN_NOTE_ONE_ROW("planConvertImage as one row", plan.rows, roi.height);
    if (!ZORVAN_PLANNED("planConvertImage streaming", plan.streaming))
      return images.eachRow(plan, toFloatRowPlain<Vector>);
    images.eachRow(plan, [&](auto* src, auto* dst, auto n) {
      toFloatRowStreaming<Vector>(src, dst, n, plan.lineBytes);
    });
    fenceStores();
  }
};

template <class V>
using ToFloatPolicy =
    ByVariant<V, ToFloatByRow, ToFloatByRow, ToFloatStreaming<Vector16>, ToFloatStreaming<Vector32>,
              ToFloatStreaming<Vector32>, ToFloatStreaming<Vector64>>;

inline ConvertImages convertImages(const int* src, int srcStep, void* dst, int dstStep) {
  return {reinterpret_cast<const unsigned char*>(src), srcStep, static_cast<unsigned char*>(dst), dstStep};
}

}  // namespace

template <class V>
int Routines<V>::ippiConvert_32s8u_C1R(const int* src, int srcStep, u8* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (srcStep < 1 || dstStep < 1) return ippStsStepErr;
  NarrowPolicy<V>::convert(convertImages(src, srcStep, dst, dstStep), roi);
  return ippStsNoErr;
}

/// Takes any step: with a `dstStep` of 0 the last row remains.
template <class V>
int Routines<V>::ippiConvert_32s32f_C1R(const int* src, int srcStep, float* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  ToFloatPolicy<V>::convert(convertImages(src, srcStep, dst, dstStep), roi);
  return ippStsNoErr;
}

}  // namespace Zorvan::Primitives
