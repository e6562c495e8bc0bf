#include <cmath>
#include <limits>

#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

template <class T>
struct Range;
template <>
struct Range<u8> {
  static constexpr int lowest = -15, highest = 8;
};
template <>
struct Range<u16> {
  static constexpr int lowest = -31, highest = 16;
};
template <>
struct Range<s16> {
  static constexpr int lowest = -30, highest = 15;
};

/// The quotient of two exact integers by one float division, rounded by the conversion to an integer. Scale
/// factors out of range need no division.
template <class T>
T quotient(T divisor, T numerator, int f) {
  using Limits = std::numeric_limits<T>;
  const bool negative = (numerator < 0) != (divisor < 0);
  const T limit = numerator == 0 ? T{0} : negative ? Limits::min() : Limits::max();
  if (f < Range<T>::lowest || divisor == 0) return limit;
  if (f > Range<T>::highest) return 0;
  const std::int64_t shiftedNumerator = numerator * (std::int64_t{1} << (f < 0 ? -f : 0));
  const std::int64_t shiftedDivisor = divisor * (std::int64_t{1} << (f > 0 ? f : 0));
  const float q = std::nearbyint(static_cast<float>(shiftedNumerator) / static_cast<float>(shiftedDivisor));
  if (q >= static_cast<float>(Limits::max())) return Limits::max();
  if (q <= static_cast<float>(Limits::min())) return Limits::min();
  return static_cast<T>(q);
}

float quotient(float divisor, float numerator) {
  using Limits = std::numeric_limits<float>;
  if (divisor != 0) return numerator / divisor;
  return numerator > 0 ? Limits::infinity() : numerator < 0 ? -Limits::infinity() : Limits::quiet_NaN();
}

template <class T, class... F>
int divide(bool anyStep, const T* src1, int src1Step, const T* src2, int src2Step, T* dst, int dstStep,
           Size roi, F... f) {
  if (src1 == nullptr || src2 == nullptr || dst == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  if (!anyStep && (src1Step < 1 || src2Step < 1 || dstStep < 1)) return -16;
  int status = 0;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      const T divisor = get(src1, src1Step, r, c);
      if (divisor == 0) status = 2;
      put(dst, dstStep, r, c, quotient(divisor, get(src2, src2Step, r, c), f...));
    }
  }
  return status;
}

}  // namespace

int ippiDiv_8u_C1RSfs(const u8* src1, int src1Step, const u8* src2, int src2Step, u8* dst, int dstStep,
                      Size roi, int f) {
  return divide(false, src1, src1Step, src2, src2Step, dst, dstStep, roi, f);
}
int ippiDiv_16u_C1RSfs(const u16* src1, int src1Step, const u16* src2, int src2Step, u16* dst, int dstStep,
                       Size roi, int f) {
  return divide(true, src1, src1Step, src2, src2Step, dst, dstStep, roi, f);
}
int ippiDiv_16s_C1RSfs(const s16* src1, int src1Step, const s16* src2, int src2Step, s16* dst, int dstStep,
                       Size roi, int f) {
  return divide(false, src1, src1Step, src2, src2Step, dst, dstStep, roi, f);
}
int ippiDiv_32f_C1R(const float* src1, int src1Step, const float* src2, int src2Step, float* dst, int dstStep,
                    Size roi) {
  return divide(false, src1, src1Step, src2, src2Step, dst, dstStep, roi);
}
int ippiDiv_8u_C1IRSfs(const u8* src, int srcStep, u8* srcDst, int srcDstStep, Size roi, int f) {
  return divide<u8>(false, src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi, f);
}
int ippiDiv_32f_C1IR(const float* src, int srcStep, float* srcDst, int srcDstStep, Size roi) {
  return divide<float>(false, src, srcStep, srcDst, srcDstStep, srcDst, srcDstStep, roi);
}

}  // namespace Zorvan::Reference
