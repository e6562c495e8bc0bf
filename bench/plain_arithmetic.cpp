#include "bench/plain_arithmetic.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>

// The pointers are restrict, so that the compiler can vectorise the loops without tests for overlap.

namespace Zorvan::Bench::Plain {
namespace {

template <class T, class PixelOf>
inline void fromTwo(const T* __restrict a, const T* __restrict b, T* __restrict c, Size size,
                    PixelOf pixelOf) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) c[i] = pixelOf(a[i], b[i]);
}

template <class T, class PixelOf>
inline void intoSecond(const T* __restrict a, T* __restrict b, Size size, PixelOf pixelOf) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) b[i] = pixelOf(a[i], b[i]);
}

template <class T, class PixelOf>
inline void fromOne(const T* __restrict src, T* __restrict dst, Size size, PixelOf pixelOf) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) dst[i] = pixelOf(src[i]);
}

template <class T, class PixelOf>
inline void inPlace(T* __restrict image, Size size, PixelOf pixelOf) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) image[i] = pixelOf(image[i]);
}

template <class T>
constexpr bool isByte = std::is_same_v<T, u8>;

template <class T>
T sumOf(T a, T b) {
  if constexpr (isByte<T>) return static_cast<T>(std::min(a + b, 255));
  return static_cast<T>(a + b);
}
template <class T>
T differenceOf(T a, T b) {
  if constexpr (isByte<T>) return static_cast<T>(std::max(b - a, 0));
  return static_cast<T>(b - a);
}
template <class T>
T productOf(T a, T b) {
  if constexpr (isByte<T>) return static_cast<T>(std::min(a * b, 255));
  return static_cast<T>(a * b);
}
template <class T>
T quotientOf(T a, T b) {
  if constexpr (isByte<T>)
    return static_cast<T>(std::nearbyint(static_cast<float>(b) / static_cast<float>(a)));
  return static_cast<T>(b / a);
}
template <class T>
T squareOf(T x) {
  return productOf(x, x);
}
template <class T>
T rootOf(T x) {
  if constexpr (isByte<T>) return static_cast<T>(std::nearbyint(std::sqrt(static_cast<float>(x))));
  return static_cast<T>(std::sqrt(x));
}
template <class T>
T absoluteOf(T x) {
  if constexpr (isByte<T>) {
    return x;
  } else {
    return std::abs(x);
  }
}

}  // namespace

template <class T>
void Arithmetic<T>::add(const T* a, const T* b, T* c, Size size) {
  fromTwo(a, b, c, size, [](T x, T y) { return sumOf(x, y); });
}

template <class T>
void Arithmetic<T>::addInPlace(const T* a, T* b, Size size) {
  intoSecond(a, b, size, [](T x, T y) { return sumOf(x, y); });
}

template <class T>
void Arithmetic<T>::subtract(const T* a, const T* b, T* c, Size size) {
  fromTwo(a, b, c, size, [](T x, T y) { return differenceOf(x, y); });
}

template <class T>
void Arithmetic<T>::subtractInPlace(const T* a, T* b, Size size) {
  intoSecond(a, b, size, [](T x, T y) { return differenceOf(x, y); });
}

template <class T>
void Arithmetic<T>::multiply(const T* a, const T* b, T* c, Size size) {
  fromTwo(a, b, c, size, [](T x, T y) { return productOf(x, y); });
}

template <class T>
void Arithmetic<T>::multiplyInPlace(const T* a, T* b, Size size) {
  intoSecond(a, b, size, [](T x, T y) { return productOf(x, y); });
}

template <class T>
void Arithmetic<T>::divide(const T* a, const T* b, T* c, Size size) {
  fromTwo(a, b, c, size, [](T x, T y) { return quotientOf(x, y); });
}

template <class T>
void Arithmetic<T>::divideInPlace(const T* a, T* b, Size size) {
  intoSecond(a, b, size, [](T x, T y) { return quotientOf(x, y); });
}

template <class T>
void Arithmetic<T>::absolute(const T* src, T* dst, Size size) {
  fromOne(src, dst, size, [](T x) { return absoluteOf(x); });
}

template <class T>
void Arithmetic<T>::absoluteInPlace(T* image, Size size) {
  inPlace(image, size, [](T x) { return absoluteOf(x); });
}

template <class T>
void Arithmetic<T>::square(const T* src, T* dst, Size size) {
  fromOne(src, dst, size, [](T x) { return squareOf(x); });
}

template <class T>
void Arithmetic<T>::squareInPlace(T* image, Size size) {
  inPlace(image, size, [](T x) { return squareOf(x); });
}

template <class T>
void Arithmetic<T>::squareRoot(const T* src, T* dst, Size size) {
  fromOne(src, dst, size, [](T x) { return rootOf(x); });
}

template <class T>
void Arithmetic<T>::squareRootInPlace(T* image, Size size) {
  inPlace(image, size, [](T x) { return rootOf(x); });
}

template <class T>
void Arithmetic<T>::addConstant(T* image, T value, Size size) {
  inPlace(image, size, [value](T x) { return sumOf(x, value); });
}

template <class T>
void Arithmetic<T>::addConstantMasked(T* __restrict image, const u8* __restrict mask, T value, Size size) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) {
    if (mask[i] != 0) image[i] = sumOf(image[i], value);
  }
}

template <class T>
void Arithmetic<T>::accumulate(const T* __restrict src, float* __restrict srcDst, const u8* __restrict mask,
                               Size size) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) {
    if (mask[i] != 0) srcDst[i] += static_cast<float>(src[i]);
  }
}

template struct Arithmetic<u8>;
template struct Arithmetic<float>;

}  // namespace Zorvan::Bench::Plain
