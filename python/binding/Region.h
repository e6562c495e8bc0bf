#pragma once

#include <string>

#include "numpy_api.h"
#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Python {

/// A region in Python's order: row before column, height before width.
struct Region {
  Py_ssize_t row;
  Py_ssize_t column;
  Py_ssize_t height;
  Py_ssize_t width;

  /// For views that begin at the region's first pixel, where the library's test is exact.
  Rect rectOfView() const { return {0, 0, static_cast<int>(width), static_cast<int>(height)}; }
};

/// The sequence (row, column, height, width). If it is not given, the whole array of `rows` by `columns`.
Region readRegion(Value value, Py_ssize_t rows, Py_ssize_t columns);

/// Throws IppError unless `region` has pixels, all of them pixels of the array `name` of `rows` by `columns`.
void requireInside(const Region& region, const char* name, Py_ssize_t rows, Py_ssize_t columns);

/// A pair of whole numbers, for example (row, column).
struct Pair {
  Py_ssize_t first;
  Py_ssize_t second;
};

/// `name` and `contents` are used in the text of the error.
Pair readPair(Value value, const char* name, const char* contents);

}  // namespace Zorvan::Python
