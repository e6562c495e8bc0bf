#pragma once

// Both Laplace filters for regions of one or two columns, as the stripes at the left and right end are: pixel
// by pixel down each column, with what the next rows share in registers. Float sums are formed in the order
// of the wide forms.

#include <type_traits>

#include "zorvan/primitives/kernels/common/Plane.h"
#include "zorvan/primitives/kernels/common/Vectors.h"

namespace Zorvan::Primitives {
namespace {

template <class T>
struct NarrowPixels {
  using Sum = std::conditional_t<std::is_same_v<T, float>, float, int>;

  static Sum at(Plane<const T> src, std::int64_t row, std::int64_t column) {
    return static_cast<Sum>(loadAs<T>(src.at(row, column)));
  }

  static void put(Plane<T> dst, std::int64_t row, std::int64_t column, Sum sum) {
    if constexpr (!std::is_same_v<T, float>) {
      constexpr Sum lowest = std::is_same_v<T, u8> ? 0 : -32768,
                    highest = std::is_same_v<T, u8> ? 255 : 32767;
      sum = sum < lowest ? lowest : sum > highest ? highest : sum;
    }
    storeAs(dst.at(row, column), static_cast<T>(sum));
  }
};

template <class T>
inline void laplaceNarrow3x3(Plane<const T> src, Plane<T> dst, Size roi) {
  using Pixels = NarrowPixels<T>;
  using Sum = typename Pixels::Sum;
  for (std::int64_t x = 0; x < roi.width; ++x) {
    if constexpr (std::is_same_v<T, float>) {
      const auto column = [&](std::int64_t y, std::int64_t c) {
        return Pixels::at(src, y - 1, c) + Pixels::at(src, y, c) + Pixels::at(src, y + 1, c);
      };
      for (std::int64_t y = 0; y < roi.height; ++y) {
        const Sum sum = column(y, x - 1) + column(y, x) + column(y, x + 1);
        Pixels::put(dst, y, x, 9 * Pixels::at(src, y, x) - sum);
      }
    } else {
      const auto row = [&](std::int64_t y) {
        return Pixels::at(src, y, x - 1) + Pixels::at(src, y, x) + Pixels::at(src, y, x + 1);
      };
      Sum above = row(-1), here = row(0);
      for (std::int64_t y = 0; y < roi.height; ++y) {
        const Sum below = row(y + 1);
        Pixels::put(dst, y, x, 9 * Pixels::at(src, y, x) - (above + here + below));
        above = here;
        here = below;
      }
    }
  }
}

template <class T>
inline void laplaceNarrow5x5(Plane<const T> src, Plane<T> dst, Size roi) {
  using Pixels = NarrowPixels<T>;
  using Sum = typename Pixels::Sum;
  for (std::int64_t x = 0; x < roi.width; ++x) {
    Sum a[5] = {}, b[4] = {}, c[3] = {};
    for (std::int64_t y = -4; y < roi.height; ++y) {
      for (int i = 0; i < 4; ++i) a[i] = a[i + 1];
      for (int i = 0; i < 3; ++i) b[i] = b[i + 1];
      for (int i = 0; i < 2; ++i) c[i] = c[i + 1];
      const Sum outer = Pixels::at(src, y + 2, x - 2) + Pixels::at(src, y + 2, x + 2);
      const Sum inner = Pixels::at(src, y + 2, x - 1) + Pixels::at(src, y + 2, x + 1);
      const Sum here = Pixels::at(src, y + 2, x);
      a[4] = -outer - 3 * inner - 4 * here;
      b[3] = -3 * outer + 6 * here;
      c[2] = -4 * outer + 6 * inner + 20 * here;
      if (y >= 0) Pixels::put(dst, y, x, a[0] + b[0] + c[0] + b[2] + a[4]);
    }
  }
}

}  // namespace
}  // namespace Zorvan::Primitives
