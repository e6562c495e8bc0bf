#include "bench/plain_initializer.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

// The pointers are restrict, so that the compiler can vectorise the loops without tests for overlap.

namespace Zorvan::Bench::Plain {

template <class T>
void fill(T* __restrict image, T value, Size size) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) image[i] = value;
}

template <class T>
void fillMask(T* __restrict image, const u8* __restrict mask, T value, Size size) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) {
    if (mask[i] != 0) image[i] = value;
  }
}

template <class T>
void copy(const T* __restrict src, T* __restrict dst, Size size) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) dst[i] = src[i];
}

template <class T>
void copyMask(const T* __restrict src, T* __restrict dst, const u8* __restrict mask, Size size) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) {
    if (mask[i] != 0) dst[i] = src[i];
  }
}

template <class T1, class T2>
void convert(const T1* __restrict src, T2* __restrict dst, Size size) {
  const std::int64_t count = std::int64_t{size.width} * size.height;
  for (std::int64_t i = 0; i < count; ++i) {
    if constexpr (std::is_same_v<T2, u8>) {
      dst[i] = static_cast<u8>(std::clamp(src[i], 0, 255));
    } else {
      dst[i] = static_cast<T2>(src[i]);
    }
  }
}

#define INSTANTIATE(T)                               \
  template void fill<T>(T*, T, Size);                \
  template void fillMask<T>(T*, const u8*, T, Size); \
  template void copy<T>(const T*, T*, Size);         \
  template void copyMask<T>(const T*, T*, const u8*, Size);
ZORVAN_IPP_PIXEL_TYPES(INSTANTIATE)
#undef INSTANTIATE

template void convert<int, u8>(const int*, u8*, Size);
template void convert<int, float>(const int*, float*, Size);

}  // namespace Zorvan::Bench::Plain
