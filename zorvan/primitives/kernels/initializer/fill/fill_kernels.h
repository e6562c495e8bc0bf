#pragma once

// Plain fill: the entries, and which variant fills how.

#include <cstdint>

#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/initializer/fill/fill_plan.h"
#include "zorvan/primitives/kernels/initializer/fill/fill_row16.h"
#include "zorvan/primitives/kernels/initializer/fill/fill_row32.h"
#include "zorvan/primitives/kernels/simd/short_runs.h"

namespace Zorvan::Primitives::Fill {
namespace {

struct Fill32;

/// 16-byte stores and limits in bytes.
struct Fill16 {
  template <class Bits>
  static void fill(Bits value, Plane<u8> dst, Size roi) {
    const FillPlan plan = planFill16<sizeof(Bits)>(roi, dst.step, queryCacheSize);
    ZORVAN_NOTE_ONE_ROW("planFill16 as one row", plan.rows, roi.height);
    ZORVAN_NOTE_PLAN("planFill16 streaming", plan.stores == FillStores::streaming);
    const PhasedPattern<Bits> pattern(value);
    for (std::int64_t r = 0; r < plan.rows; ++r) {
      fillRow16(pattern, dst.at(r), plan.rowBytes, plan.stores == FillStores::streaming);
    }
  }
};

#ifdef __AVX2__
/// 32-byte stores and limits in pixels.
struct Fill32 {
  template <class Bits>
  static void fill(Bits value, Plane<u8> dst, Size roi) {
    const bool oddRows = !isAligned(dst.pixels, 2) || dst.step % 2 != 0;
    const FillPlan plan = planFill32<sizeof(Bits)>(roi, dst.step, oddRows, queryCacheSize);
    ZORVAN_NOTE_ONE_ROW("planFill32 as one row", plan.rows, roi.height);
    const auto eachRow = [&](auto fillRow) {
      for (std::int64_t r = 0; r < plan.rows; ++r) fillRow(value, dst.at(r), plan.rowBytes);
    };
    switch (ZORVAN_PLANNED("planFill32", plan.stores)) {
      case FillStores::plain:
        return eachRow(fillRow32<FillStores::plain, Bits>);
      case FillStores::prefetched:
        return eachRow(fillRow32<FillStores::prefetched, Bits>);
      case FillStores::streaming:
        eachRow(fillRow32<FillStores::streaming, Bits>);
        return fenceStores();
      case FillStores::anyAddress:
        if constexpr (sizeof(Bits) == 2) eachRow(fillAnyAddress);
        return;
    }
  }
};
#endif

template <class V>
using Policy = ByVariant<V, Fill16, Fill16, Fill16, Fill16, Fill32, Fill32>;

/// Types of one size share a fill.
template <class V, class T>
int fill(T value, T* dst, int dstStep, Size roi) {
  if (dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  using Bits = typename PixelBits<sizeof(T)>::type;
  Policy<V>::fill(__builtin_bit_cast(Bits, value), {reinterpret_cast<u8*>(dst), dstStep}, roi);
  return ippStsNoErr;
}

template <class V>
struct Bodies {
  static constexpr auto ippiSet_8u_C1R = fill<V, u8>;
  static constexpr auto ippiSet_16u_C1R = fill<V, u16>;
  static constexpr auto ippiSet_16s_C1R = fill<V, s16>;
  static constexpr auto ippiSet_32s_C1R = fill<V, int>;
  static constexpr auto ippiSet_32f_C1R = fill<V, float>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Fill
