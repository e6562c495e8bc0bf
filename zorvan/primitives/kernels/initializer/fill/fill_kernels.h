#pragma once

// Plain fill: the entries, and which variant fills how.

#include <cstdint>

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/cache_query.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/initializer/fill/fill_plan.h"
#include "zorvan/primitives/kernels/initializer/fill/fill_row.h"
#include "zorvan/primitives/kernels/initializer/fill/fill_wide.h"

namespace Zorvan::Primitives {
namespace {

struct WideFill;

/// 16-byte stores and limits in bytes.
struct RowFill {
  template <class Bits>
  static void fill(Bits value, void* dst, int dstStep, Size roi) {
    const FillPlan plan = planRowFill<sizeof(Bits)>(roi, dstStep, queryCacheSize);
    ZORVAN_NOTE_ONE_ROW("planRowFill as one row", plan.rows, roi.height);
    ZORVAN_NOTE_PLAN("planRowFill streaming", plan.stores == FillStores::streaming);
    const PhasedPattern<Bits> pattern(value);
    for (std::int64_t r = 0; r < plan.rows; ++r) {
      fillRow(pattern, rowAt(static_cast<unsigned char*>(dst), dstStep, r), plan.rowBytes,
              plan.stores == FillStores::streaming);
    }
  }
};

#ifdef __AVX2__
/// 32-byte stores and limits in pixels.
struct WideFill {
  template <class Bits>
  static void fill(Bits value, void* dst, int dstStep, Size roi) {
    const bool oddRows = !isAligned(dst, 2) || dstStep % 2 != 0;
    const FillPlan plan = planWideFill<sizeof(Bits)>(roi, dstStep, oddRows, queryCacheSize);
    ZORVAN_NOTE_ONE_ROW("planWideFill as one row", plan.rows, roi.height);
    const auto eachRow = [&](auto fillOne) {
      for (std::int64_t r = 0; r < plan.rows; ++r) {
        fillOne(rowAt(static_cast<unsigned char*>(dst), dstStep, r), plan.rowBytes);
      }
    };
    switch (ZORVAN_PLANNED("planWideFill", plan.stores)) {
      case FillStores::plain:
        return eachRow([value](auto* row, auto length) { fillWide<FillStores::plain>(value, row, length); });
      case FillStores::claimed:
        return eachRow(
            [value](auto* row, auto length) { fillWide<FillStores::claimed>(value, row, length); });
      case FillStores::streaming:
        eachRow([value](auto* row, auto length) { fillWide<FillStores::streaming>(value, row, length); });
        return fenceStores();
      case FillStores::unphased:
        if constexpr (sizeof(Bits) == 2) {
          eachRow([value](auto* row, auto length) { fillUnphased(value, row, length); });
        }
        return;
    }
  }
};
#endif

template <class V>
using FillPolicy = ByVariant<V, RowFill, RowFill, RowFill, RowFill, WideFill, WideFill>;

/// Only the bit pattern of a value matters, so all types of one size share a fill.
template <class V, class Bits, class T>
int fill(T value, T* dst, int dstStep, Size roi) {
  if (dst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  FillPolicy<V>::fill(__builtin_bit_cast(Bits, value), dst, dstStep, roi);
  return ippStsNoErr;
}

}  // namespace

template <class V>
int Routines<V>::ippiSet_8u_C1R(u8 value, u8* dst, int dstStep, Size roi) {
  return fill<V, std::uint8_t>(value, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiSet_16u_C1R(u16 value, u16* dst, int dstStep, Size roi) {
  return fill<V, std::uint16_t>(value, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiSet_16s_C1R(s16 value, s16* dst, int dstStep, Size roi) {
  return fill<V, std::uint16_t>(value, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiSet_32s_C1R(int value, int* dst, int dstStep, Size roi) {
  return fill<V, std::uint32_t>(value, dst, dstStep, roi);
}
template <class V>
int Routines<V>::ippiSet_32f_C1R(float value, float* dst, int dstStep, Size roi) {
  return fill<V, std::uint32_t>(value, dst, dstStep, roi);
}

}  // namespace Zorvan::Primitives
