#pragma once

// Arrays of a call.

#include <cstddef>

#include "Pixels.h"
#include "Region.h"
#include "numpy_api.h"
#include "zorvan/foundation/IppIMemory.h"

namespace Zorvan::Python {

/// A numpy array as an image of the library, in place: two dimensions, rows without a gap, native bytes. Any
/// other array is refused with an error that says what to do, or replaced by such a copy if the caller allows
/// it.
class Operand {
 public:
  /// An array that is read. `types` are the types that it may have.
  static Operand source(Value value, const char* name, TypeSet types, bool mayCopy);

  /// An array of bytes or booleans.
  static Operand mask(Value value, bool mayCopy);

  /// An array that is written.
  static Operand destination(Value value, const char* name, TypeSet types, bool mayCopy);

  /// The array `out` if there is one, and otherwise a new array of `region`'s extent, which the region fills.
  /// With `cleared`, a new array is of zeros.
  static Operand result(Value out, int type, const Region& region, bool mayCopy, bool cleared = false);

  int type() const { return PyArray_TYPE(array()); }
  Py_ssize_t rows() const { return PyArray_DIM(array(), 0); }
  Py_ssize_t columns() const { return PyArray_DIM(array(), 1); }

  /// Puts `region` on the array. Throws IppError unless it lies inside.
  void place(const Region& region);

  /// Throws unless the regions of this destination and of `source` share no memory.
  void requireApart(const Operand& source) const;

  /// The same, but that both may be the very same region of one array.
  void requireApartOrSame(const Operand& source) const;

  bool isSameRegion(const Operand& other) const {
    return first_ == other.first_ && columns() == other.columns();
  }

  /// An image that begins at the region's first pixel and has the array's width, as the distance of rows
  /// follows from it. Only pixels of the region may be used.
  template <class T>
  Ipp::Image::IppIMemory<T> view() const {
    return Ipp::Image::IppIMemory<T>::CreateContainer(reinterpret_cast<T*>(first_),
                                                      static_cast<int>(columns()), static_cast<int>(height_));
  }

  /// The array with the result, as a new reference: the caller's own wherever it can be written.
  PyObject* finish();

 private:
  Operand(py::object array, const char* name) : array_(std::move(array)), name_(name) {}

  PyArrayObject* array() const { return reinterpret_cast<PyArrayObject*>(array_.ptr()); }
  void requireTwoDimensions() const;

  py::object array_;
  py::object original_;  // what a destination was copied from
  const char* name_;
  char* first_ = nullptr;
  char* last_ = nullptr;  // the end of the region's last row
  Py_ssize_t height_ = 0;
};

/// The truth of a flag that is False if not given.
bool isTrue(Value value);

}  // namespace Zorvan::Python
