#include "bench/plain_filtering.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Bench::Plain {

namespace {

constexpr int kernel3x3[3][3] = {{-1, -1, -1}, {-1, 8, -1}, {-1, -1, -1}};
constexpr int kernel5x5[5][5] = {
    {-1, -3, -4, -3, -1}, {-3, 0, 6, 0, -3}, {-4, 6, 20, 6, -4}, {-3, 0, 6, 0, -3}, {-1, -3, -4, -3, -1}};

template <class T, class Sum>
T limited(Sum sum) {
  if constexpr (std::is_same_v<T, float>) {
    return sum;
  } else {
    return static_cast<T>(std::clamp<Sum>(sum, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
  }
}

/// The pointers are restrict, so that the compiler can vectorise the loops without tests for overlap.
template <int extent, class T>
void filter(const T* __restrict src, T* __restrict dst, Size size, const int (&kernel)[extent][extent]) {
  using Sum = std::conditional_t<std::is_same_v<T, float>, float, int>;
  constexpr int reach = extent / 2;
  for (int y = 0; y < size.height; ++y) {
    const T* rows[extent];
    for (int r = 0; r < extent; ++r) {
      rows[r] = src + std::int64_t{std::clamp(y + r - reach, 0, size.height - 1)} * size.width;
    }
    T* __restrict to = dst + std::int64_t{y} * size.width;
    const auto atEdge = [&](int x) {
      Sum sum = 0;
      for (int r = 0; r < extent; ++r) {
        for (int c = 0; c < extent; ++c) {
          sum += static_cast<Sum>(kernel[r][c]) * rows[r][std::clamp(x + c - reach, 0, size.width - 1)];
        }
      }
      to[x] = limited<T>(sum);
    };
    for (int x = 0; x < reach; ++x) atEdge(x);
    for (int x = reach; x < size.width - reach; ++x) {
      Sum sum = 0;
      for (int r = 0; r < extent; ++r) {
        for (int c = 0; c < extent; ++c) sum += static_cast<Sum>(kernel[r][c]) * rows[r][x + c - reach];
      }
      to[x] = limited<T>(sum);
    }
    for (int x = size.width - reach; x < size.width; ++x) atEdge(x);
  }
}

}  // namespace

template <class T>
void laplace3x3(const T* src, T* dst, Size size) {
  filter(src, dst, size, kernel3x3);
}
template <class T>
void laplace5x5(const T* src, T* dst, Size size) {
  filter(src, dst, size, kernel5x5);
}

#define INSTANTIATE(T)                             \
  template void laplace3x3<T>(const T*, T*, Size); \
  template void laplace5x5<T>(const T*, T*, Size);
INSTANTIATE(u8)
INSTANTIATE(s16)
INSTANTIATE(float)
#undef INSTANTIATE

}  // namespace Zorvan::Bench::Plain
