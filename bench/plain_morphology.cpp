#include "bench/plain_morphology.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace Zorvan::Bench::Plain {

namespace {

struct Largest {
  template <class T>
  T operator()(T a, T b) const {
    return a > b ? a : b;
  }
};
struct Smallest {
  template <class T>
  T operator()(T a, T b) const {
    return a < b ? a : b;
  }
};

template <class T, class Extreme>
void extremeOfSquares(const T* __restrict src, T* __restrict dst, int side, Size size, Extreme extreme) {
  const int reach = side / 2, width = size.width, height = size.height;
  std::vector<T> padded(static_cast<std::size_t>(width + 2 * reach));
  std::vector<T> rows(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int r = 0; r < height; ++r) {
    const T* const row = src + std::int64_t{r} * width;
    T* const result = rows.data() + std::int64_t{r} * width;
    std::fill_n(padded.begin(), reach, row[0]);
    std::copy_n(row, width, padded.begin() + reach);
    std::fill_n(padded.begin() + reach + width, reach, row[width - 1]);
    const T* const from = padded.data();
    std::copy_n(from, width, result);
    for (int i = 1; i < side; ++i) {
      for (int c = 0; c < width; ++c) result[c] = extreme(result[c], from[c + i]);
    }
  }
  for (int r = 0; r < height; ++r) {
    T* const result = dst + std::int64_t{r} * width;
    for (int i = -reach; i <= reach; ++i) {
      const T* const row = rows.data() + std::int64_t{std::clamp(r + i, 0, height - 1)} * width;
      if (i == -reach) {
        std::copy_n(row, width, result);
      } else {
        for (int c = 0; c < width; ++c) result[c] = extreme(result[c], row[c]);
      }
    }
  }
}

}  // namespace

template <class T>
void dilate(const T* src, T* dst, int side, Size size) {
  extremeOfSquares(src, dst, side, size, Largest());
}
template <class T>
void erode(const T* src, T* dst, int side, Size size) {
  extremeOfSquares(src, dst, side, size, Smallest());
}

template void dilate(const u8*, u8*, int, Size);
template void dilate(const float*, float*, int, Size);
template void erode(const u8*, u8*, int, Size);
template void erode(const float*, float*, int, Size);

}  // namespace Zorvan::Bench::Plain
