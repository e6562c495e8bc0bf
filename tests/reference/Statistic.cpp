#include "tests/reference/Statistic.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "tests/reference/Images.h"
#include "tests/reference/Reference.h"

namespace Zorvan::Reference {
namespace {

template <class T, class Better>
int extreme(const T* src, int srcStep, Size roi, T* result, Better better) {
  if (src == nullptr || result == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  T held = get(src, srcStep, 0, 0);
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      const T value = get(src, srcStep, r, c);
      if (value != value || held != held) {
        held = std::numeric_limits<T>::quiet_NaN();  // what a NaN does is told elsewhere
      } else if (better(value, held)) {
        held = value;
      }
    }
  }
  put(result, 0, 0, 0, held);
  return 0;
}

template <class T>
int minimum(const T* src, int srcStep, Size roi, T* result) {
  return extreme(src, srcStep, roi, result, [](T a, T b) { return a < b; });
}
template <class T>
int maximum(const T* src, int srcStep, Size roi, T* result) {
  return extreme(src, srcStep, roi, result, [](T a, T b) { return a > b; });
}

template <class T>
int mean(const T* src, int srcStep, Size roi, double* result) {
  if (src == nullptr || result == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  std::int64_t sum = 0;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) sum += get(src, srcStep, r, c);
  }
  put(result, 0, 0, 0, static_cast<double>(sum) / static_cast<double>(std::int64_t{roi.width} * roi.height));
  return 0;
}

}  // namespace

int ippiMin_8u_C1R(const u8* src, int srcStep, Size roi, u8* result) {
  return minimum(src, srcStep, roi, result);
}
int ippiMin_16u_C1R(const u16* src, int srcStep, Size roi, u16* result) {
  return minimum(src, srcStep, roi, result);
}
int ippiMin_16s_C1R(const s16* src, int srcStep, Size roi, s16* result) {
  return minimum(src, srcStep, roi, result);
}
int ippiMin_32f_C1R(const float* src, int srcStep, Size roi, float* result) {
  return minimum(src, srcStep, roi, result);
}
int ippiMax_8u_C1R(const u8* src, int srcStep, Size roi, u8* result) {
  return maximum(src, srcStep, roi, result);
}
int ippiMax_16u_C1R(const u16* src, int srcStep, Size roi, u16* result) {
  return maximum(src, srcStep, roi, result);
}
int ippiMax_16s_C1R(const s16* src, int srcStep, Size roi, s16* result) {
  return maximum(src, srcStep, roi, result);
}
int ippiMax_32f_C1R(const float* src, int srcStep, Size roi, float* result) {
  return maximum(src, srcStep, roi, result);
}

int ippiMean_8u_C1R(const u8* src, int srcStep, Size roi, double* result) {
  return mean(src, srcStep, roi, result);
}
int ippiMean_16u_C1R(const u16* src, int srcStep, Size roi, double* result) {
  return mean(src, srcStep, roi, result);
}
int ippiMean_16s_C1R(const s16* src, int srcStep, Size roi, double* result) {
  return mean(src, srcStep, roi, result);
}

/// In extended precision. n additions round n times, each by half a unit of the sum of magnitudes at most.
int ippiMean_32f_C1R(const float* src, int srcStep, Size roi, double* result, int hint) {
  if (src == nullptr || result == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  long double sum = 0, magnitudes = 0;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      const float value = get(src, srcStep, r, c);
      sum += value;
      if (std::isfinite(value)) magnitudes += std::fabs(value);
    }
  }
  const double count = static_cast<double>(std::int64_t{roi.width} * roi.height);
  const double roundings = static_cast<double>(magnitudes) * (count + 2) / count;
  slack = roundings * (hint == 2 ? 0x1p-53 : 0x1p-24);
  if (hint != 2 && magnitudes > std::numeric_limits<float>::max()) slack = HUGE_VAL;
  put(result, 0, 0, 0, static_cast<double>(sum) / count);
  return 0;
}

}  // namespace Zorvan::Reference
