#pragma once

// Conversion of 32-bit signed pixels to bytes and to floats: the entries, and which variant converts how.

#include <cstdint>

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/initializer/convert/convert_float.h"
#include "zorvan/primitives/kernels/initializer/convert/convert_narrow_rows.h"
#include "zorvan/primitives/kernels/initializer/convert/convert_plan.h"

namespace Zorvan::Primitives::Convert {
namespace {

/// `convertRow(src, dst, n)` for every row.
template <class Plan, class ConvertRow>
inline void convertRows(Plane<const u8> src, Plane<u8> dst, const Plan& plan, ConvertRow convertRow) {
  for (std::int64_t r = 0; r < plan.rows; ++r) convertRow(src.at(r), dst.at(r), plan.rowPixels);
}

/// Row by row with plain stores, whatever the size.
struct NarrowAligned {
  static void convert(Plane<const u8> src, Plane<u8> dst, Size roi) {
    convertRows(src, dst, planConvertRows<1>(roi, src.step, dst.step), narrowRowAligned);
  }
};

/// Streams what does not fit into the cache.
struct NarrowStreaming {
  static void convert(Plane<const u8> src, Plane<u8> dst, Size roi) {
    const ConvertPlan plan = planConvertImage<1>(roi, src.step, dst.step, queryCacheSize, queryCacheLineSize);
    ZORVAN_NOTE_ONE_ROW("planConvertImage as one row", plan.rows, roi.height);
    if (!ZORVAN_PLANNED("planConvertImage streaming", plan.streaming))
      return convertRows(src, dst, plan, narrowBody64<Stores::plain>);
    convertRows(src, dst, plan, [&](const u8* srcRow, u8* dstRow, std::int64_t n) {
      narrowRowStreaming(srcRow, dstRow, n, plan.lineBytes);
    });
    fenceStores();
  }
};

struct NarrowGroups32;
struct NarrowGroups64;

/// Row by row with plain stores, whatever the size.
template <class Groups>
struct NarrowByGroups {
#ifdef __AVX2__
  static void convert(Plane<const u8> src, Plane<u8> dst, Size roi) {
    convertRows(src, dst, planConvertRows<1>(roi, src.step, dst.step), narrowRowByGroups<Groups>);
  }
#endif
};

template <class V>
using NarrowPolicy = ByVariant<V, NarrowAligned, NarrowAligned, NarrowStreaming, NarrowStreaming,
                               NarrowByGroups<NarrowGroups32>, NarrowByGroups<NarrowGroups64>>;

/// Row by row with plain stores, whatever the size.
struct ToFloatByRow {
  static void convert(Plane<const u8> src, Plane<u8> dst, Size roi) {
    convertRows(src, dst, planConvertRows<4>(roi, src.step, dst.step), toFloatRow);
  }
};

/// Streams what does not fit into the cache.
template <class Vector>
struct ToFloatStreaming {
  static void convert(Plane<const u8> src, Plane<u8> dst, Size roi) {
    const ConvertPlan plan = planConvertImage<4>(roi, src.step, dst.step, queryCacheSize, queryCacheLineSize);
    ZORVAN_NOTE_ONE_ROW("planConvertImage as one row", plan.rows, roi.height);
    if (!ZORVAN_PLANNED("planConvertImage streaming", plan.streaming))
      return convertRows(src, dst, plan, toFloatRowPlain<Vector>);
    convertRows(src, dst, plan, [&](const u8* srcRow, u8* dstRow, std::int64_t n) {
      toFloatRowStreaming<Vector>(srcRow, dstRow, n, plan.lineBytes);
    });
    fenceStores();
  }
};

template <class V>
using ToFloatPolicy =
    ByVariant<V, ToFloatByRow, ToFloatByRow, ToFloatStreaming<Vector16>, ToFloatStreaming<Vector32>,
              ToFloatStreaming<Vector32>, ToFloatStreaming<Vector64>>;

template <class V>
int convertToBytes(const int* src, int srcStep, u8* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (srcStep < 1 || dstStep < 1) return ippStsStepErr;
  NarrowPolicy<V>::convert({reinterpret_cast<const u8*>(src), srcStep}, {dst, dstStep}, roi);
  return ippStsNoErr;
}

/// Takes any step: with a `dstStep` of 0 the last row remains.
template <class V>
int convertToFloats(const int* src, int srcStep, float* dst, int dstStep, Size roi) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  ToFloatPolicy<V>::convert({reinterpret_cast<const u8*>(src), srcStep},
                            {reinterpret_cast<u8*>(dst), dstStep}, roi);
  return ippStsNoErr;
}

template <class V>
struct Bodies {
  static constexpr auto ippiConvert_32s8u_C1R = convertToBytes<V>;
  static constexpr auto ippiConvert_32s32f_C1R = convertToFloats<V>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Convert
