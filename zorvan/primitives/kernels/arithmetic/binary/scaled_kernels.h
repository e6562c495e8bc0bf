#pragma once

// Scaled sums, differences and products of integer images: the choice of the scaling and the loop over the
// rows. Rows are never joined.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/arithmetic/binary/scaled_row_16.h"
#include "zorvan/primitives/kernels/arithmetic/binary/scaled_row_32.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/prefetch_plan.h"

namespace Zorvan::Primitives::Arithmetic {
namespace {

/// 16-byte stores, after a peel of single pixels.
struct ScaledRows16 {
  template <class Pixels, class A, class B>
  static void run(const Pixels& pixels, RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    images.eachRow([=](auto a, auto b, unsigned char* dst) { scaledRow16(pixels, a, b, dst, length); });
  }
};

/// 32-byte stores at any address. In narrow images a row is an iteration or two: rows without a tail have a
/// loop without the branches to it, and rows of a single iteration no loop.
struct ScaledRows32 {
#ifdef __AVX2__
  template <class Pixels, class A, class B>
  [[gnu::always_inline]] static void run(const Pixels& pixels, RowImages<A, B> images) {
    constexpr int iterationBytes = planScaledRow32(sizeof(typename Pixels::Pixel), Pixels::scaling);
    if constexpr (Pixels::scaling == Scaling::saturated) {
      if (images.rowBytes == iterationBytes) {
        return images.template eachShortRow<2>(
            [=](auto a, auto b, unsigned char* dst) { scaledIteration32(pixels, a, b, dst, 0); });
      }
      if (ZORVAN_PLANNED("prefetchesInPlace",
                         prefetchesInPlace(images.inPlace(), images.rows * images.rowBytes)))
        return prefetchingRows(pixels, images);
    }
    if (images.rowBytes % iterationBytes == 0) return rows<true, false>(pixels, images);
    rows<false, false>(pixels, images);
  }

 private:
  template <bool whole, bool prefetching, class Pixels, class A, class B>
  static void rows(const Pixels& pixels, RowImages<A, B> images) {
    const std::int64_t length = images.rowBytes;
    images.eachRow([=](auto a, auto b, unsigned char* dst) {
      scaledRow32<whole, prefetching>(pixels, a, b, dst, length);
    });
  }
  /// Out of line, where it takes no registers from the loops over small images. Only operations without
  /// scaling prefetch: the others compute for longer than they load.
  template <class Pixels, class A, class B>
  [[gnu::noinline]] static void prefetchingRows(Pixels pixels, RowImages<A, B> images) {
    rows<false, true>(pixels, images);
  }
#endif
};

template <class V>
using ScaledPolicy =
    ByVariant<V, ScaledRows16, ScaledRows16, ScaledRows16, ScaledRows16, ScaledRows32, ScaledRows32>;

/// Operations whose every result is the same value are a fill.
template <class V>
int fillWith(u8 value, u8* dst, int dstStep, Size roi) {
  return Routines<V>::ippiSet_8u_C1R(value, dst, dstStep, roi);
}
template <class V>
int fillWith(u16 value, u16* dst, int dstStep, Size roi) {
  return Routines<V>::ippiSet_16u_C1R(value, dst, dstStep, roi);
}
template <class V>
int fillWith(s16 value, s16* dst, int dstStep, Size roi) {
  return Routines<V>::ippiSet_16s_C1R(value, dst, dstStep, roi);
}

template <class Op>
using PixelOf = typename Op::Pixel;

template <class Op>
constexpr ScalingLimits scalingLimitsOf() {
  using T = PixelOf<Op>;
  return scalingLimits(Op::operation, sizeof(T), std::is_signed_v<T>);
}

template <class V, class Op, class A, class B>
void scaledRows(A a, B b, PixelOf<Op>* dst, int dstStep, Size roi, int f) {
  using T = PixelOf<Op>;
  const auto run = [&](auto scale) {
    const ScaledOperation<Op, decltype(scale)> pixels{scale};
    ScaledPolicy<V>::run(pixels, rowImages(a, b, dst, dstStep, roi));
  };
  switch (ZORVAN_PLANNED("planScaling", planScaling(scalingLimitsOf<Op>(), f))) {
    case Scaling::saturated:
      return run(Saturated<T>{});
    case Scaling::halved:
      return run(Halved<T>{});
    case Scaling::rounded:
      return run(Rounded<T>(f));
    case Scaling::longRounded:
      if constexpr (scalingLimitsOf<Op>().longRoundedAbove < 64) return run(LongRounded(f));
      return;
    case Scaling::enlarged:
      return run(Enlarged<T>(f));
    case Scaling::signOnly:
      return run(SignOnly<T>{});
    case Scaling::zero:
      fillWith<V>(T{0}, dst, dstStep, roi);
  }
}

}  // namespace
}  // namespace Zorvan::Primitives::Arithmetic
