#include "bench/plain_statistic.h"

#include <cmath>
#include <cstdint>
#include <type_traits>

namespace Zorvan::Bench::Plain {
namespace {

/// Integers add up exactly; floats in double.
template <class T>
using Sum = std::conditional_t<std::is_integral_v<T>, std::int64_t, double>;

std::int64_t pixels(Size size) { return std::int64_t{size.width} * size.height; }

}  // namespace

template <class T>
T minimum(const T* image, Size size) {
  T extreme = image[0];
  for (std::int64_t i = 0; i < pixels(size); ++i) extreme = image[i] < extreme ? image[i] : extreme;
  return extreme;
}

template <class T>
T maximum(const T* image, Size size) {
  T extreme = image[0];
  for (std::int64_t i = 0; i < pixels(size); ++i) extreme = image[i] > extreme ? image[i] : extreme;
  return extreme;
}

template <class T>
double mean(const T* image, Size size) {
  Sum<T> sum = 0;
  for (std::int64_t i = 0; i < pixels(size); ++i) sum += image[i];
  return static_cast<double>(sum) / static_cast<double>(pixels(size));
}

template <class T>
double meanMask(const T* image, const u8* mask, Size size) {
  Sum<T> sum = 0;
  std::int64_t count = 0;
  for (std::int64_t i = 0; i < pixels(size); ++i) {
    if (mask[i] != 0) sum += image[i], ++count;
  }
  return count == 0 ? 0 : static_cast<double>(sum) / static_cast<double>(count);
}

template <class T>
MeanStdDev meanDeviationMask(const T* image, const u8* mask, Size size) {
  Sum<T> sum = 0, squares = 0;
  std::int64_t count = 0;
  for (std::int64_t i = 0; i < pixels(size); ++i) {
    if (mask[i] == 0) continue;
    const Sum<T> value = image[i];
    sum += value;
    squares += value * value;
    ++count;
  }
  if (count == 0) return {0, 0};
  const auto n = static_cast<double>(count);
  const double mean = static_cast<double>(sum) / n;
  return {mean, std::sqrt(std::fabs(static_cast<double>(squares) / n - mean * mean))};
}

template <class T>
MinMaxIndex extremesMask(const T* image, const u8* mask, Size size) {
  std::int64_t lowAt = -1, highAt = -1;
  for (std::int64_t i = 0; i < pixels(size); ++i) {
    if (mask[i] == 0) continue;
    if (lowAt < 0 || image[i] < image[lowAt]) lowAt = i;
    if (highAt < 0 || image[i] > image[highAt]) highAt = i;
  }
  if (lowAt < 0) return {};
  const auto place = [size](std::int64_t i) {
    return Point{static_cast<int>(i % size.width), static_cast<int>(i / size.width)};
  };
  return {static_cast<float>(image[lowAt]), place(lowAt), static_cast<float>(image[highAt]), place(highAt)};
}

#define INSTANTIATE(T)                     \
  template T minimum<T>(const T*, Size);   \
  template T maximum<T>(const T*, Size);   \
  template double mean<T>(const T*, Size); \
  template double meanMask<T>(const T*, const u8*, Size);
INSTANTIATE(u8)
INSTANTIATE(u16)
INSTANTIATE(float)
#undef INSTANTIATE

#define INSTANTIATE(T)                                                 \
  template MeanStdDev meanDeviationMask<T>(const T*, const u8*, Size); \
  template MinMaxIndex extremesMask<T>(const T*, const u8*, Size);
INSTANTIATE(u8)
INSTANTIATE(float)
#undef INSTANTIATE

}  // namespace Zorvan::Bench::Plain
