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
  T best = get(src, srcStep, 0, 0);
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      const T value = get(src, srcStep, r, c);
      if (value != value || best != best) {
        best = std::numeric_limits<T>::quiet_NaN();  // other tests cover NaN
      } else if (better(value, best)) {
        best = value;
      }
    }
  }
  put(result, 0, 0, 0, best);
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

namespace {

struct Sums {
  double count = 0;
  long double sum = 0, squares = 0, magnitudes = 0;

  double mean() const { return count == 0 ? 0 : static_cast<double>(sum) / count; }
  double meanMagnitude() const { return count == 0 ? 0 : static_cast<double>(magnitudes) / count; }
  bool overflowFloats() const { return magnitudes > std::numeric_limits<float>::max(); }
};

/// In extended precision. Without a mask all pixels count.
template <class T>
Sums sumsOf(const T* src, int srcStep, const u8* mask, int maskStep, Size roi, long double center = 0) {
  Sums sums;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      if (mask != nullptr && get(mask, maskStep, r, c) == 0) continue;
      const long double value = get(src, srcStep, r, c) - center;
      sums.count += 1;
      sums.sum += value;
      sums.squares += value * value;
      if (std::isfinite(value)) sums.magnitudes += std::fabs(value);
    }
  }
  return sums;
}

}  // namespace

int ippiMean_32f_C1R(const float* src, int srcStep, Size roi, double* result, int) {
  if (src == nullptr || result == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  put(result, 0, 0, 0, sumsOf(src, srcStep, nullptr, 0, roi).mean());
  return 0;
}

/// n additions round n times, each by half a unit of the sum of magnitudes at most.
double toleranceOf(const float* src, int srcStep, Size roi, const double*, int hint) {
  const Sums sums = sumsOf(src, srcStep, nullptr, 0, roi);
  if (hint != 2 && sums.overflowFloats()) return HUGE_VAL;
  return sums.meanMagnitude() * (sums.count + 2) * (hint == 2 ? 0x1p-53 : 0x1p-24);
}

namespace {

/// The tests of the arguments. For 16-bit pixels all tests of the image's step precede that of the mask's.
template <class T>
int testMasked(const T* src, int srcStep, const u8* mask, int maskStep, Size roi) {
  if (src == nullptr || mask == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  const std::int64_t row = roi.width * std::int64_t{sizeof(T)};
  if constexpr (sizeof(T) == 2) {
    if (srcStep < row) return -16;
    if (srcStep % 2 != 0) return -108;
    if (maskStep < roi.width) return -16;
  } else {
    if (srcStep < row || maskStep < roi.width) return -16;
    if (sizeof(T) == 4 && srcStep % 4 != 0) return -108;
  }
  return 0;
}

template <class T>
int maskedMean(const T* src, int srcStep, const u8* mask, int maskStep, Size roi, double* mean) {
  if (mean == nullptr) return -8;
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != 0) return status;
  const Sums sums = sumsOf(src, srcStep, mask, maskStep, roi);
  put(mean, 0, 0, 0, sums.mean());
  return 0;
}

template <class T>
int meanDeviation(const T* src, int srcStep, const u8* mask, int maskStep, Size roi, double* mean,
                  double* stdDev) {
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != 0) return status;
  const Sums sums = sumsOf(src, srcStep, mask, maskStep, roi);
  const Sums around = sumsOf(src, srcStep, mask, maskStep, roi, sums.mean());
  const double variance = sums.count == 0 ? 0 : static_cast<double>(around.squares) / sums.count;
  if (mean != nullptr) put(mean, 0, 0, 0, sums.mean());
  if (stdDev != nullptr) put(stdDev, 0, 0, 0, std::sqrt(variance));
  return 0;
}

/// Positions are those of the first extreme in raster order. With a selected NaN no result is specified.
template <class T>
int extremesWithPlaces(const T* src, int srcStep, const u8* mask, int maskStep, Size roi, float* minValue,
                       float* maxValue, Point* minIndex, Point* maxIndex) {
  if (const int status = testMasked(src, srcStep, mask, maskStep, roi); status != 0) return status;
  float low = 0, high = 0;
  Point lowAt{0, 0}, highAt{0, 0};
  bool any = false;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      if (get(mask, maskStep, r, c) == 0) continue;
      const float value = get(src, srcStep, r, c);
      if (!any || value < low) low = value, lowAt = {c, r};
      if (!any || value > high) high = value, highAt = {c, r};
      any = true;
    }
  }
  if (minValue != nullptr) put(minValue, 0, 0, 0, low);
  if (maxValue != nullptr) put(maxValue, 0, 0, 0, high);
  if (minIndex != nullptr) put(minIndex, 0, 0, 0, lowAt);
  if (maxIndex != nullptr) put(maxIndex, 0, 0, 0, highAt);
  const bool noResults =
      minValue == nullptr && maxValue == nullptr && minIndex == nullptr && maxIndex == nullptr;
  return any && !noResults ? 0 : 1;
}

}  // namespace

/// A lane of floats sums 480 pixels at most, or a row of less than eight.
double toleranceOf(const float* src, int srcStep, const u8* mask, int maskStep, Size roi, const double*) {
  const Sums sums = sumsOf(src, srcStep, mask, maskStep, roi);
  return sums.overflowFloats() ? HUGE_VAL : sums.meanMagnitude() * 484 * 0x1p-24;
}

double toleranceOf(const u8*, int, const u8*, int, Size, const double*, const double*) { return 1e-5; }

double toleranceOf(const float* src, int srcStep, const u8* mask, int maskStep, Size roi, const double*,
                   const double*) {
  const Sums sums = sumsOf(src, srcStep, mask, maskStep, roi);
  if (!(sums.squares < 1e37L)) return HUGE_VAL;
  const double square = sums.count == 0 ? 0 : static_cast<double>(sums.squares) / sums.count;
  return std::sqrt(square) * std::sqrt(3 * (roi.width + 20) * 0x1p-24) + 1e-22;
}

int ippiMean_8u_C1MR(const u8* src, int srcStep, const u8* mask, int maskStep, Size roi, double* mean) {
  return maskedMean(src, srcStep, mask, maskStep, roi, mean);
}
int ippiMean_16u_C1MR(const u16* src, int srcStep, const u8* mask, int maskStep, Size roi, double* mean) {
  return maskedMean(src, srcStep, mask, maskStep, roi, mean);
}
int ippiMean_32f_C1MR(const float* src, int srcStep, const u8* mask, int maskStep, Size roi, double* mean) {
  return maskedMean(src, srcStep, mask, maskStep, roi, mean);
}
int ippiMean_StdDev_8u_C1MR(const u8* src, int srcStep, const u8* mask, int maskStep, Size roi, double* mean,
                            double* stdDev) {
  return meanDeviation(src, srcStep, mask, maskStep, roi, mean, stdDev);
}
int ippiMinMaxIndx_8u_C1MR(const u8* src, int srcStep, const u8* mask, int maskStep, Size roi,
                           float* minValue, float* maxValue, Point* minIndex, Point* maxIndex) {
  return extremesWithPlaces(src, srcStep, mask, maskStep, roi, minValue, maxValue, minIndex, maxIndex);
}
int ippiMean_StdDev_32f_C1MR(const float* src, int srcStep, const u8* mask, int maskStep, Size roi,
                             double* mean, double* stdDev) {
  return meanDeviation(src, srcStep, mask, maskStep, roi, mean, stdDev);
}
int ippiMinMaxIndx_32f_C1MR(const float* src, int srcStep, const u8* mask, int maskStep, Size roi,
                            float* minValue, float* maxValue, Point* minIndex, Point* maxIndex) {
  return extremesWithPlaces(src, srcStep, mask, maskStep, roi, minValue, maxValue, minIndex, maxIndex);
}

}  // namespace Zorvan::Reference
