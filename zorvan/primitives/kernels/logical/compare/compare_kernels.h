#pragma once

// Comparison with a constant: the entries, and which variant compares what how.

#include <cstdint>

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/logical/compare/compare_lanes.h"
#include "zorvan/primitives/kernels/logical/compare/compare_plan.h"
#include "zorvan/primitives/kernels/logical/compare/compare_row.h"
#include "zorvan/primitives/kernels/logical/compare/compare_wide.h"

namespace Zorvan::Primitives::Compare {
namespace {

/// Rows of pixels, and the bytes that tell how they compare.
struct CompareImages {
  const u8* src;
  int srcStep;
  u8* dst;
  int dstStep;

  template <class CompareOne>
  void eachRow(CompareRows plan, CompareOne compareOne) const {
    for (std::int64_t r = 0; r < plan.rows; ++r) {
      compareOne(rowAt(src, srcStep, r), rowAt(dst, dstStep, r), plan.pixels);
    }
  }
};

template <CompareAccess access, class Lanes>
inline void compareRows(Lanes compare, CompareImages images, Size roi) {
  images.eachRow({roi.height, roi.width}, [compare](const u8* src, u8* dst, std::int64_t pixels) {
    compareRow<access>(compare, src, dst, pixels);
  });
}

/// 16-byte vectors, aligned where all rows are, past the cache where the images are large.
template <template <Operator> class Lanes>
struct RowCompare {
  template <Operator op, class T>
  static void run(T value, CompareImages images, Size roi) {
    const Lanes<op> compare{value};
    switch (
        ZORVAN_PLANNED("planRowCompare",
                       planRowCompare({reinterpret_cast<std::uintptr_t>(images.src), images.srcStep},
                                      {reinterpret_cast<std::uintptr_t>(images.dst), images.dstStep}, roi))) {
      case CompareAccess::unaligned:
        return compareRows<CompareAccess::unaligned>(compare, images, roi);
      case CompareAccess::aligned:
        return compareRows<CompareAccess::aligned>(compare, images, roi);
      case CompareAccess::streaming:
        compareRows<CompareAccess::streaming>(compare, images, roi);
        return fenceStores();
    }
  }
};

/// 16-byte vectors at any address.
template <template <Operator> class Lanes>
struct PlainCompare {
  template <Operator op, class T>
  static void run(T value, CompareImages images, Size roi) {
    compareRows<CompareAccess::unaligned>(Lanes<op>{value}, images, roi);
  }
};

struct WideFloatCompare;
struct WideMaskedFloatCompare;
struct WideByteCompare;
struct WideWordCompare;

#ifdef __AVX2__
/// 32-byte stores, rows run together where nothing lies between them.
template <class Compare>
inline void compareFusedRows(const Compare& compare, CompareImages images, Size roi) {
  const CompareRows plan = planWideCompare<Compare::pixelBytes>(roi, images.srcStep, images.dstStep);
  ZORVAN_NOTE_ONE_ROW("planWideCompare as one row", plan.rows, roi.height);
  images.eachRow(
      plan, [&](const u8* src, u8* dst, std::int64_t pixels) { compareWide(compare, src, dst, pixels); });
}

struct WideFloatCompare {
  template <Operator op>
  static void run(float value, CompareImages images, Size roi) {
    compareFusedRows(GroupedCompare<WideFloats<op>>(value), images, roi);
  }
};
struct WideByteCompare {
  template <Operator op>
  static void run(u8 value, CompareImages images, Size roi) {
    compareFusedRows(GroupedCompare<WideBytes<op>>(value), images, roi);
  }
};
/// Never runs rows together.
struct WideWordCompare {
  template <Operator op>
  static void run(u16 value, CompareImages images, Size roi) {
    const GroupedCompare<WideWords<op>> compare(value);
    images.eachRow({roi.height, roi.width}, [&](const u8* src, u8* dst, std::int64_t pixels) {
      compareWide(compare, src, dst, pixels);
    });
  }
};
#endif

#ifdef __AVX512F__
struct WideMaskedFloatCompare {
  template <Operator op>
  static void run(float value, CompareImages images, Size roi) {
    compareFusedRows(MaskedFloatCompare<op>(value), images, roi);
  }
};
#endif

template <class V, class T>
struct ComparePolicyOf;
template <class V>
struct ComparePolicyOf<V, u8> {
  using Row = RowCompare<Bytes>;
  using type = ByVariant<V, Row, Row, Row, Row, WideByteCompare, WideByteCompare>;
};
template <class V>
struct ComparePolicyOf<V, s16> {
  using type = RowCompare<SignedWords>;
};
template <class V>
struct ComparePolicyOf<V, u16> {
  using Row = PlainCompare<Words>;
  using type = ByVariant<V, Row, Row, Row, Row, WideWordCompare, WideWordCompare>;
};
template <class V>
struct ComparePolicyOf<V, float> {
  using Row = RowCompare<OrderedFloats>;
  using type = ByVariant<V, Row, Row, Row, Row, WideFloatCompare, WideMaskedFloatCompare>;
};

/// No byte lies below the lowest or above the highest.
inline bool neverHolds(Operator op, u8 value) {
  return (op == Operator::less && value == 0) || (op == Operator::greater && value == 255);
}

/// The steps are tested before the size here, and an unknown operator is silently left at that.
template <class V, class T>
int compareWithConstant(const T* src, int srcStep, T value, u8* dst, int dstStep, Size roi, int comparison) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (srcStep < 1 || dstStep < 1) return ippStsStepErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (static_cast<unsigned>(comparison) >= operatorCount) return ippStsNoErr;

  using Policy = typename ComparePolicyOf<V, T>::type;
  const CompareImages images{reinterpret_cast<const u8*>(src), srcStep, dst, dstStep};
  const auto op = static_cast<Operator>(comparison);
  if constexpr (sizeof(T) == 1) {
    if (neverHolds(op, value)) return Routines<V>::ippiSet_8u_C1R(0, dst, dstStep, roi);
  }
  switch (op) {
    case Operator::less:
      Policy::template run<Operator::less>(value, images, roi);
      break;
    case Operator::lessEqual:
      Policy::template run<Operator::lessEqual>(value, images, roi);
      break;
    case Operator::equal:
      Policy::template run<Operator::equal>(value, images, roi);
      break;
    case Operator::greaterEqual:
      Policy::template run<Operator::greaterEqual>(value, images, roi);
      break;
    case Operator::greater:
      Policy::template run<Operator::greater>(value, images, roi);
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
