#pragma once

// A flood fill along a row, pixel by pixel, for every type of pixel.
//
// `find` searches the next pixel of the old value, `extendLeft` and `extendRight` fill the run around it with
// the new value. Columns count from the start of the row. Reads and writes nothing outside the region's
// columns, 0 to `last`.

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::FloodFill {
namespace {

/// The old and the new value, and the last column of the region.
template <class T>
struct FillPixels {
  using Pixel = T;

  T old;
  T value;
  std::int64_t last;

  static u8* at(u8* row, std::int64_t x) { return row + x * std::int64_t{sizeof(T)}; }
  bool isOld(u8* row, std::int64_t x) const { return loadAs<T>(at(row, x)) == old; }
  void fill(u8* row, std::int64_t x) const { storeAs<T>(at(row, x), value); }

  /// The first column from `x` to `right` that holds the old value; a column after `right` if there is none.
  std::int64_t find(u8* row, std::int64_t x, std::int64_t right) const {
    while (x <= right && !isOld(row, x)) ++x;
    return x;
  }

  /// Fills to the left of `x`, which holds or held the old value, and returns the run's first column.
  std::int64_t extendLeft(u8* row, std::int64_t x) const {
    while (x > 0 && isOld(row, x - 1)) fill(row, --x);
    return x;
  }

  /// Fills `x`, which holds the old value, and to the right of it, and returns the run's last column.
  std::int64_t extendRight(u8* row, std::int64_t x) const {
    fill(row, x);
    while (x < last && isOld(row, x + 1)) fill(row, ++x);
    return x;
  }
};

/// No vectors.
template <class T>
struct PlainRow : FillPixels<T> {
  static constexpr bool hasWindows = false;

  PlainRow(T oldPixel, T newPixel, std::int64_t lastColumn) : FillPixels<T>{oldPixel, newPixel, lastColumn} {}

  std::int64_t extendRight(u8* row, std::int64_t x, std::int64_t) const {
    return FillPixels<T>::extendRight(row, x);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
