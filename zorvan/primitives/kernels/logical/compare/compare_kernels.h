#pragma once

// Comparison with a constant: the entries, and which variant compares how.

#include <cstdint>

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/logical/compare/compare_lanes.h"
#include "zorvan/primitives/kernels/logical/compare/compare_plan.h"
#include "zorvan/primitives/kernels/logical/compare/compare_row16.h"
#include "zorvan/primitives/kernels/logical/compare/compare_row32.h"

namespace Zorvan::Primitives::Compare {
namespace {

template <Stores stores, class Lanes>
inline void compareRows(Lanes compare, Plane<const u8> src, Plane<u8> dst, Size roi) {
  for (std::int64_t r = 0; r < roi.height; ++r) {
    compareRow16<stores>(compare, src.at(r), dst.at(r), roi.width);
  }
}

/// 16-byte vectors, aligned if all rows are, streaming if the images are large too.
template <template <Operator> class Lanes>
struct Compare16 {
  template <Operator op, class T>
  static void run(T value, Plane<const u8> src, Plane<u8> dst, Size roi) {
    const Lanes<op> compare{value};
    const auto placeOf = [](const u8* pixels, std::int64_t step) {
      return ComparePlace{reinterpret_cast<std::uintptr_t>(pixels), static_cast<std::int32_t>(step)};
    };
    switch (ZORVAN_PLANNED(
        "planCompare16", planCompare16(placeOf(src.pixels, src.step), placeOf(dst.pixels, dst.step), roi))) {
      case Stores::plain:
        return compareRows<Stores::plain>(compare, src, dst, roi);
      case Stores::aligned:
        return compareRows<Stores::aligned>(compare, src, dst, roi);
      case Stores::streaming:
        compareRows<Stores::streaming>(compare, src, dst, roi);
        return fenceStores();
    }
  }
};

/// 16-byte vectors at any address.
template <template <Operator> class Lanes>
struct PlainCompare {
  template <Operator op, class T>
  static void run(T value, Plane<const u8> src, Plane<u8> dst, Size roi) {
    compareRows<Stores::plain>(Lanes<op>{value}, src, dst, roi);
  }
};

struct FloatCompare32;
struct FloatCompare64;
struct ByteCompare32;
struct WordCompare32;

#ifdef __AVX2__
template <class Compare>
inline void compareRows32(const Compare& compare, Plane<const u8> src, Plane<u8> dst, CompareRows plan) {
  for (std::int64_t r = 0; r < plan.rows; ++r) compareRow32(compare, src.at(r), dst.at(r), plan.pixels);
}

/// 32-byte stores; images without gaps are one row.
template <class Compare>
inline void compareFusedRows(const Compare& compare, Plane<const u8> src, Plane<u8> dst, Size roi) {
  const CompareRows plan = planCompare32<Compare::pixelBytes>(roi, src.step, dst.step);
  ZORVAN_NOTE_ONE_ROW("planCompare32 as one row", plan.rows, roi.height);
  compareRows32(compare, src, dst, plan);
}

struct FloatCompare32 {
  template <Operator op>
  static void run(float value, Plane<const u8> src, Plane<u8> dst, Size roi) {
    compareFusedRows(GroupedCompare<NanAboveFloats<op>>(value), src, dst, roi);
  }
};
struct ByteCompare32 {
  template <Operator op>
  static void run(u8 value, Plane<const u8> src, Plane<u8> dst, Size roi) {
    compareFusedRows(GroupedCompare<SaturatedBytes<op>>(value), src, dst, roi);
  }
};
/// Row by row also where there are no gaps.
struct WordCompare32 {
  template <Operator op>
  static void run(u16 value, Plane<const u8> src, Plane<u8> dst, Size roi) {
    compareRows32(GroupedCompare<MinMaxWords<op>>(value), src, dst, {roi.height, roi.width});
  }
};
#endif

#ifdef __AVX512F__
struct FloatCompare64 {
  template <Operator op>
  static void run(float value, Plane<const u8> src, Plane<u8> dst, Size roi) {
    compareFusedRows(MaskedFloatCompare<op>(value), src, dst, roi);
  }
};
#endif

template <class V, class T>
struct ComparePolicyOf;
template <class V>
struct ComparePolicyOf<V, u8> {
  using Row = Compare16<Bytes>;
  using type = ByVariant<V, Row, Row, Row, Row, ByteCompare32, ByteCompare32>;
};
template <class V>
struct ComparePolicyOf<V, s16> {
  using type = Compare16<SignedWords>;
};
template <class V>
struct ComparePolicyOf<V, u16> {
  using Row = PlainCompare<Words>;
  using type = ByVariant<V, Row, Row, Row, Row, WordCompare32, WordCompare32>;
};
template <class V>
struct ComparePolicyOf<V, float> {
  using Row = Compare16<OrderedFloats>;
  using type = ByVariant<V, Row, Row, Row, Row, FloatCompare32, FloatCompare64>;
};

/// No byte is less than 0 or greater than 255.
inline bool neverHolds(Operator op, u8 value) {
  return (op == Operator::less && value == 0) || (op == Operator::greater && value == 255);
}

/// The steps are tested before the size here. An unknown operator writes nothing and is no error.
template <class V, class T>
int compareWithConstant(const T* src, int srcStep, T value, u8* dst, int dstStep, Size roi, int comparison) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (srcStep < 1 || dstStep < 1) return ippStsStepErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (static_cast<unsigned>(comparison) >= operatorCount) return ippStsNoErr;

  using Policy = typename ComparePolicyOf<V, T>::type;
  const Plane<const u8> srcPlane{reinterpret_cast<const u8*>(src), srcStep};
  const Plane<u8> dstPlane{dst, dstStep};
  const auto op = static_cast<Operator>(comparison);
  if constexpr (sizeof(T) == 1) {
    if (neverHolds(op, value)) return Routines<V>::ippiSet_8u_C1R(0, dst, dstStep, roi);
  }
  switch (op) {
    case Operator::less:
      Policy::template run<Operator::less>(value, srcPlane, dstPlane, roi);
      break;
    case Operator::lessEqual:
      Policy::template run<Operator::lessEqual>(value, srcPlane, dstPlane, roi);
      break;
    case Operator::equal:
      Policy::template run<Operator::equal>(value, srcPlane, dstPlane, roi);
      break;
    case Operator::greaterEqual:
      Policy::template run<Operator::greaterEqual>(value, srcPlane, dstPlane, roi);
      break;
    case Operator::greater:
      Policy::template run<Operator::greater>(value, srcPlane, dstPlane, roi);
      break;
  }
  return ippStsNoErr;
}

template <class V>
struct Bodies {
  static constexpr auto ippiCompareC_8u_C1R = compareWithConstant<V, u8>;
  static constexpr auto ippiCompareC_16s_C1R = compareWithConstant<V, s16>;
  static constexpr auto ippiCompareC_16u_C1R = compareWithConstant<V, u16>;
  static constexpr auto ippiCompareC_32f_C1R = compareWithConstant<V, float>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Compare
