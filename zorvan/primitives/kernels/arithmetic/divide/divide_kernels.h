#pragma once

// Quotients of images: the entries, and how each variant divides. The first source is the divisor. The status
// reports a divisor of 0 after all pixels have been written.

#include "zorvan/primitives/frame/Routines.h"
#include "zorvan/primitives/kernels/arithmetic/divide/divide_floats.h"
#include "zorvan/primitives/kernels/arithmetic/divide/divide_masked_row.h"
#include "zorvan/primitives/kernels/arithmetic/divide/divide_row.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/by_variant.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"

namespace Zorvan::Primitives {
namespace {

using Ipp::ippStsDivByZero;

/// 8 pixels at a time, peel and tail of single pixels.
struct EstimatedQuotients {
  struct Constants {};

  template <class T, Quotients>
  static bool row(const unsigned char* divisors, const unsigned char* numerators, unsigned char* dst,
                  std::int64_t n, const QuotientFactors& factors, Constants) {
    return divideRow<T>(divisors, numerators, dst, n, factors);
  }
  template <class Images>
  static int floatRows(const Images& images, Size roi) {
    return images.eachRow(roi, divideFloatRow);
  }
};

/// Vectors of 16 floats under masks. Rows of floats without a peel and a tail have a loop without the
/// branches to them: in narrow images a row is an iteration or two.
struct MaskedQuotients {
#ifdef __AVX512BW__
  using Constants = FourthBytes;

  template <class T, Quotients form>
  static bool row(const unsigned char* divisors, const unsigned char* numerators, unsigned char* dst,
                  std::int64_t n, const QuotientFactors& factors, const Constants& constants) {
    return divideMaskedRow<T, form>(divisors, numerators, dst, n, factors, constants);
  }
  template <class Images>
  static int floatRows(const Images& images, Size roi) {
    if (needNoPeelOrTail(reinterpret_cast<std::uintptr_t>(images.dst), images.dstStep, roi.width)) {
      return images.eachRow(roi, divideFloatRowMasked<true>);
    }
    return images.eachRow(roi, divideFloatRowMasked<false>);
  }
#endif
};

template <class V>
using QuotientPolicy = ByVariant<V, EstimatedQuotients, EstimatedQuotients, EstimatedQuotients,
                                 EstimatedQuotients, EstimatedQuotients, MaskedQuotients>;

template <class T>
struct QuotientImages {
  const T* divisors;
  int divisorStep;
  const T* numerators;
  int numeratorStep;
  T* dst;
  int dstStep;

  bool anyNull() const { return divisors == nullptr || numerators == nullptr || dst == nullptr; }
  bool anyStepBelow1() const { return divisorStep < 1 || numeratorStep < 1 || dstStep < 1; }

  /// Also divides the rows after one with a divisor of 0.
  template <class DivideRow>
  int eachRow(Size roi, DivideRow divideOne) const {
    bool anyZero = false;
    for (std::int64_t r = 0; r < roi.height; ++r) {
      anyZero |= divideOne(rowAt(reinterpret_cast<const unsigned char*>(divisors), divisorStep, r),
                           rowAt(reinterpret_cast<const unsigned char*>(numerators), numeratorStep, r),
                           rowAt(reinterpret_cast<unsigned char*>(dst), dstStep, r), std::int64_t{roi.width});
    }
    return anyZero ? ippStsDivByZero : ippStsNoErr;
  }

  /// For scale factors at which a quotient needs no division.
  template <class Pixel>
  int eachPixel(Size roi, Pixel quotient) const {
    return eachRow(roi, [quotient](auto* d, auto* x, auto* out, std::int64_t n) {
      bool anyZero = false;
      for (std::int64_t i = 0; i < n; ++i) {
        const T divisor = loadAs<T>(d + i * std::int64_t{sizeof(T)});
        const T numerator = loadAs<T>(x + i * std::int64_t{sizeof(T)});
        anyZero |= divisor == 0;
        storeAs(out + i * std::int64_t{sizeof(T)}, quotient(divisor, numerator));
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
    return images.eachRow(roi, [&](auto* d, auto* x, auto* out, std::int64_t n) {
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

}  // namespace

template <class V>
int Routines<V>::ippiDiv_8u_C1RSfs(const u8* src1, int src1Step, const u8* src2, int src2Step, u8* dst,
                                   int dstStep, Size roi, int scaleFactor) {
  const QuotientImages<u8> images{src1, src1Step, src2, src2Step, dst, dstStep};
  if (images.anyNull()) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (images.anyStepBelow1()) return ippStsStepErr;
  return divideRows<V>(images, roi, scaleFactor);
}
/// Takes any step.
template <class V>
int Routines<V>::ippiDiv_16u_C1RSfs(const u16* src1, int src1Step, const u16* src2, int src2Step, u16* dst,
                                    int dstStep, Size roi, int scaleFactor) {
  const QuotientImages<u16> images{src1, src1Step, src2, src2Step, dst, dstStep};
  if (images.anyNull()) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  return divideRows<V>(images, roi, scaleFactor);
}
template <class V>
int Routines<V>::ippiDiv_16s_C1RSfs(const s16* src1, int src1Step, const s16* src2, int src2Step, s16* dst,
                                    int dstStep, Size roi, int scaleFactor) {
  const QuotientImages<s16> images{src1, src1Step, src2, src2Step, dst, dstStep};
  if (images.anyNull()) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (images.anyStepBelow1()) return ippStsStepErr;
  return divideRows<V>(images, roi, scaleFactor);
}
template <class V>
int Routines<V>::ippiDiv_32f_C1R(const float* src1, int src1Step, const float* src2, int src2Step, float* dst,
                                 int dstStep, Size roi) {
  const QuotientImages<float> images{src1, src1Step, src2, src2Step, dst, dstStep};
  if (images.anyNull()) return ippStsNullPtrErr;
  if (isEmpty(roi)) return ippStsSizeErr;
  if (images.anyStepBelow1()) return ippStsStepErr;
  return QuotientPolicy<V>::floatRows(images, roi);
}

template <class V>
int Routines<V>::ippiDiv_8u_C1IRSfs(const u8* src, int srcStep, u8* srcDst, int srcDstStep, Size roi,
                                    int scaleFactor) {
  return ippiDiv_8u_C1RSfs(src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi, scaleFactor);
}
template <class V>
int Routines<V>::ippiDiv_32f_C1IR(const float* src, int srcStep, float* srcDst, int srcDstStep, Size roi) {
  return ippiDiv_32f_C1R(src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

}  // namespace Zorvan::Primitives
