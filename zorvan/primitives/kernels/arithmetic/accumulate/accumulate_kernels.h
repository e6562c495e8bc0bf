#pragma once

// Accumulation under a mask: the entries and the policy of the variants. Rows are never joined.

#include <cstdint>

#include "zorvan/primitives/kernels/arithmetic/accumulate/accumulate_plan.h"
#include "zorvan/primitives/kernels/arithmetic/accumulate/accumulate_selected.h"
#include "zorvan/primitives/kernels/arithmetic/accumulate/accumulate_weighted.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"

namespace Zorvan::Primitives::Accumulate {
namespace {

/// The images as bytes, as pixels may start at any address.
struct AccumulateImages {
  Plane<const u8> src, mask;
  Plane<u8> srcDst;

  template <auto add>
  void eachRow(Size roi) const {
    const auto row = [width = std::int64_t{roi.width}](const u8* s, const u8* m, u8* d) {
      add(s, m, d, width);
    };
    forEachRow(roi.height, row, src, mask, srcDst);
  }
};

template <class Row>
struct AccumulateByRow {
  template <class Source>
  static void run(const AccumulateImages& images, Size roi) {
    images.eachRow<Row::template add<Source>>(roi);
  }
};

/// Rows of full vectors without peel and tail have a loop of their own: in narrow images a row takes only one
/// or two iterations.
struct AccumulateMasked {
#ifdef __AVX512F__
  template <class Source>
  static void run(const AccumulateImages& images, Size roi) {
    using Row = WeightedMaskedRow;
    const auto [pixels, step] = images.srcDst;
    if (ZORVAN_PLANNED("areFullVectors", areFullVectors<Row::Limits>(addressOf(pixels), step, roi.width))) {
      images.eachRow<Row::addFullVectors<Source>>(roi);
    } else {
      images.eachRow<Row::add<Source>>(roi);
    }
  }
#endif
};

template <class V>
using AccumulatePolicy =
    ByVariant<V, AccumulateByRow<SelectedRow>, AccumulateByRow<SelectedRow>, AccumulateByRow<SelectedRow>,
              AccumulateByRow<WeightedRow<16, 4>>, AccumulateByRow<WeightedRow<32, 8>>, AccumulateMasked>;

template <class V, class T>
int accumulate(const T* src, int srcStep, const u8* mask, int maskStep, float* srcDst, int srcDstStep,
               Size roi) {
  if (src == nullptr || mask == nullptr || srcDst == nullptr) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  const int status = testAccumulateSteps<sizeof(T)>({srcStep, maskStep, srcDstStep}, roi.width);
  if (status != ippStsNoErr) return status;
  AccumulatePolicy<V>::template run<FloatSource<T>>(
      {{bytesOf(src), srcStep}, {mask, maskStep}, {bytesOf(srcDst), srcDstStep}}, roi);
  return ippStsNoErr;
}

template <class V>
struct Bodies {
  static constexpr auto ippiAdd_8u32f_C1IMR = accumulate<V, u8>;
  static constexpr auto ippiAdd_16u32f_C1IMR = accumulate<V, u16>;
  static constexpr auto ippiAdd_32f_C1IMR = accumulate<V, float>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Accumulate
