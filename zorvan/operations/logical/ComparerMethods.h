#pragma once

#include <xmmintrin.h>

#include <cstdint>

#include "zorvan/foundation/ByPixelType.h"
#include "zorvan/methods/Methods.h"
#include "zorvan/operations/logical/Comparer.h"
#include "zorvan/primitives/frame/Entries.h"

namespace Zorvan::Ipp::Image::Comparers {

/// The constant that pixels are compared with: the low 8 bits of the truncated value. The processor's
/// conversion is defined for every float, with 0x80000000 for values that do not fit; that of the language is
/// not.
inline u8 narrowedConstant(float value) {
  return static_cast<u8>(static_cast<std::uint32_t>(_mm_cvttss_si32(_mm_set_ss(value))));
}

template <class T>
class CompareC_Src : public Methods::Method_2M<T, u8> {
 public:
  CompareC_Src(float constant, eComparison how) : value(constant), comparison(how) {}

  int Execute(T* src, int srcStep, u8* dst, int dstStep, Size roi) override {
    using namespace Primitives;
    return ByPixelType{ippiCompareC_8u_C1R, ippiCompareC_16s_C1R, ippiCompareC_16u_C1R, ippiCompareC_32f_C1R}(
        src, srcStep, static_cast<T>(narrowedConstant(value)), dst, dstStep, roi,
        static_cast<int>(comparison));
  }

 private:
  float value;
  eComparison comparison;
};

}  // namespace Zorvan::Ipp::Image::Comparers
