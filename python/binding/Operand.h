#pragma once

// Arrays of a call.

#include <cstddef>

#include "Pixels.h"
#include "Region.h"
#include "numpy_api.h"
#include "zorvan/foundation/IppIMemory.h"

namespace Zorvan::Python {

/// A numpy array as an image of the library, in place: two dimensions, rows without gaps, native byte order.
/// Any other array is refused with an error that explains what to do, or copied into such an array if the
/// caller allows it.
class Operand {
 public:
  /// An array that is read, of one of `types`.
  static Operand source(Value value, const char* name, TypeSet types, bool mayCopy);

  /// An array of bytes or booleans.
  static Operand mask(Value value, bool mayCopy);

  /// An array that is written.
  static Operand destination(Value value, const char* name, TypeSet types, bool mayCopy);

  /// The array `out` if it is given, otherwise a new array of the size of `region`. With `cleared`, a new
  /// array is filled with zeros.
  static Operand result(Value out, int type, const Region& region, bool mayCopy, bool cleared = false);

  int type() const { return PyArray_TYPE(array()); }
  Py_ssize_t rows() const { return PyArray_DIM(array(), 0); }
  Py_ssize_t columns() const { return PyArray_DIM(array(), 1); }

  /// Sets the region of the array. Throws IppError unless it lies inside.
  void place(const Region& region);

  /// Throws unless the regions of this destination and of `source` share no memory.
  void requireApart(const Operand& source) const;

  /// The same, but both may be the same region of one array.
  void requireApartOrSame(const Operand& source) const;

  bool isSameRegion(const Operand& other) const {
    return first_ == other.first_ && columns() == other.columns();
  }

  /// An image that begins at the region's first pixel. It has the array's width, because the stride follows
  /// from the width. Only pixels of the region may be used.
  template <class T>
  Ipp::Image::IppIMemory<T> view() const {
    return Ipp::Image::IppIMemory<T>::CreateContainer(reinterpret_cast<T*>(first_),
                                                      static_cast<int>(columns()), static_cast<int>(height_));
  }

  /// The array with the result, as a new reference. It is the caller's array if that can be written.
  PyObject* finish();

 private:
  Operand(py::object array, const char* name) : array_(std::move(array)), name_(name) {}

  PyArrayObject* array() const { return reinterpret_cast<PyArrayObject*>(array_.ptr()); }
  void requireTwoDimensions() const;

  py::object array_;
  py::object original_;  // the array of which the destination is a copy
  const char* name_;
  char* first_ = nullptr;
  char* last_ = nullptr;  // the end of the region's last row
  Py_ssize_t height_ = 0;
};

/// The value of a flag that is False by default.
bool isTrue(Value value);

}  // namespace Zorvan::Python
