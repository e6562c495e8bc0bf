#pragma once

// Quotients of images: the entries, and how each variant divides. The first source is the divisor. The status
// reports a divisor of 0 after all pixels have been written.

#include "zorvan/primitives/kernels/arithmetic/divide/divide_floats.h"
#include "zorvan/primitives/kernels/arithmetic/divide/divide_masked_row.h"
#include "zorvan/primitives/kernels/arithmetic/divide/divide_row.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"

namespace Zorvan::Primitives::Division {
namespace {

using Ipp::ippStsDivByZero;

/// Vectors of pixels, peel and tail of single pixels. Rows of floats without a peel and a tail have a loop
/// without the branches to them: in narrow images a row is an iteration or two.
struct EstimatedQuotients {
  struct Constants {};

  template <class T, Quotients form>
  static bool row(const T* divisors, const T* numerators, T* dst, std::int64_t n,
                  const QuotientFactors& factors, Constants) {
    return divideRow<form>(divisors, numerators, dst, n, factors);
  }
  template <class Images>
  static int floatRows(const Images& images, Size roi) {
    if (needNoPeelOrTail(addressOf(images.dst.pixels), images.dst.step, roi.width, 16, unrolledQuotients)) {
      return images.eachRow(roi, [](auto... row) { return divideFloatRow<true>(row...); });
    }
    return images.eachRow(roi, [](auto... row) { return divideFloatRow<false>(row...); });
  }
};

/// Vectors of 16 floats under masks. Rows of floats without a peel and a tail have a loop of their own too.
struct MaskedQuotients {
#ifdef __AVX512BW__
  using Constants = FourthBytes;

  template <class T, Quotients form>
  static bool row(const T* divisors, const T* numerators, T* dst, std::int64_t n,
                  const QuotientFactors& factors, const Constants& constants) {
    return divideMaskedRow<form>(divisors, numerators, dst, n, factors, constants);
  }
  template <class Images>
  static int floatRows(const Images& images, Size roi) {
    if (needNoPeelOrTail(addressOf(images.dst.pixels), images.dst.step, roi.width, 64, 64)) {
      return images.eachRow(roi, [](auto... row) { return divideFloatRowMasked<true>(row...); });
    }
    return images.eachRow(roi, [](auto... row) { return divideFloatRowMasked<false>(row...); });
  }
#endif
};

template <class V>
using QuotientPolicy = ByVariant<V, EstimatedQuotients, EstimatedQuotients, EstimatedQuotients,
                                 EstimatedQuotients, EstimatedQuotients, MaskedQuotients>;

template <class T>
struct QuotientImages {
  Plane<const T> divisors, numerators;
  Plane<T> dst;

  /// Images of 16-bit unsigned pixels take any step.
  int status(Size roi) const {
    if (divisors.pixels == nullptr || numerators.pixels == nullptr || dst.pixels == nullptr) {
      return ippStsNullPtrErr;
    }
    if (isEmpty(roi)) return ippStsSizeErr;
    const bool anyBelow1 = divisors.step < 1 || numerators.step < 1 || dst.step < 1;
    return anyBelow1 && !std::is_same_v<T, u16> ? ippStsStepErr : ippStsNoErr;
  }

  /// Also divides the rows after one with a divisor of 0.
  template <class DivideRow>
  int eachRow(Size roi, DivideRow divideOne) const {
    const std::int64_t n = roi.width;
    bool anyZero = false;
    forEachRow(
        roi.height, [&](const T* d, const T* x, T* out) { anyZero |= divideOne(d, x, out, n); }, divisors,
        numerators, dst);
    return anyZero ? ippStsDivByZero : ippStsNoErr;
  }

  /// For scale factors at which a quotient needs no division.
  template <class Pixel>
  int eachPixel(Size roi, Pixel quotient) const {
    return eachRow(roi, [quotient](const T* d, const T* x, T* out, std::int64_t n) {
      bool anyZero = false;
      for (std::int64_t i = 0; i < n; ++i) {
        const T divisor = loadAs<T>(d + i), numerator = loadAs<T>(x + i);
        anyZero |= divisor == 0;
        storeAs(out + i, quotient(divisor, numerator));
      }
      return anyZero;
    });
  }
};

template <class V, class T>
int divideRows(const QuotientImages<T>& images, Size roi, int f) {
  const auto run = [&](auto form) {
    const QuotientFactors factors = quotientFactors<T>(f);
    const typename QuotientPolicy<V>::Constants constants;
    return images.eachRow(roi, [&](const T* d, const T* x, T* out, std::int64_t n) {
      return QuotientPolicy<V>::template row<T, decltype(form)::value>(d, x, out, n, factors, constants);
    });
  };
  switch (ZORVAN_PLANNED("planQuotients", planQuotients<T>(f))) {
    case Quotients::plain:
      return run(std::integral_constant<Quotients, Quotients::plain>{});
    case Quotients::scaledDivisor:
      return run(std::integral_constant<Quotients, Quotients::scaledDivisor>{});
    case Quotients::scaledNumerator:
      return run(std::integral_constant<Quotients, Quotients::scaledNumerator>{});
    case Quotients::zero:
      return images.eachPixel(roi, vanishingQuotient<T>);
    case Quotients::limits:
      return images.eachPixel(roi, saturatedQuotient<T>);
  }
  return ippStsNoErr;
}

template <class V, class T>
int divide(const T* src1, int src1Step, const T* src2, int src2Step, T* dst, int dstStep, Size roi,
           int scaleFactor) {
  const QuotientImages<T> images{{src1, src1Step}, {src2, src2Step}, {dst, dstStep}};
  if (const int status = images.status(roi); status != ippStsNoErr) return status;
  return divideRows<V>(images, roi, scaleFactor);
}
template <class V, class T>
int divideInPlace(const T* src, int srcStep, T* srcDst, int srcDstStep, Size roi, int scaleFactor) {
  return divide<V, T>(src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi, scaleFactor);
}
template <class V>
[[gnu::noinline]] int divideFloats(const float* src1, int src1Step, const float* src2, int src2Step,
                                   float* dst, int dstStep, Size roi) {
  const QuotientImages<float> images{{src1, src1Step}, {src2, src2Step}, {dst, dstStep}};
  if (const int status = images.status(roi); status != ippStsNoErr) return status;
  return QuotientPolicy<V>::floatRows(images, roi);
}
template <class V>
int divideFloatsInPlace(const float* src, int srcStep, float* srcDst, int srcDstStep, Size roi) {
  return divideFloats<V>(src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

template <class V>
struct Bodies {
  static constexpr auto ippiDiv_8u_C1IRSfs = divideInPlace<V, u8>;
  static constexpr auto ippiDiv_32f_C1IR = divideFloatsInPlace<V>;
  static constexpr auto ippiDiv_8u_C1RSfs = divide<V, u8>;
  static constexpr auto ippiDiv_16u_C1RSfs = divide<V, u16>;
  static constexpr auto ippiDiv_16s_C1RSfs = divide<V, s16>;
  static constexpr auto ippiDiv_32f_C1R = divideFloats<V>;
};

}  // namespace
}  // namespace Zorvan::Primitives::Division
