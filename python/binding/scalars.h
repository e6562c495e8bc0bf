#pragma once

#include <limits>
#include <string>
#include <type_traits>

#include "numpy_api.h"

namespace Zorvan::Python {

/// A number as a pixel of type T. Throws unless the type can represent it: nothing is truncated or wrapped.
template <class T>
T readPixel(Value value) {
  if constexpr (std::is_floating_point_v<T>) {
    const double number = PyFloat_AsDouble(value);
    if (number == -1 && PyErr_Occurred() != nullptr) throw py::error_already_set();
    return static_cast<T>(number);
  } else {
    using Limits = std::numeric_limits<T>;
    const auto index = py::reinterpret_steal<py::object>(PyNumber_Index(value));
    if (!index) throw py::error_already_set();
    int overflow = 0;
    const long long number = PyLong_AsLongLongAndOverflow(index.ptr(), &overflow);
    if (overflow != 0 || number < Limits::min() || number > Limits::max()) {
      throw py::value_error("value must be from " + std::to_string(Limits::min()) + " to " +
                            std::to_string(Limits::max()) + ", not " + std::string(py::str(index)));
    }
    return static_cast<T>(number);
  }
}

/// A pixel, or another number that is an integer for integer pixels, as a Python number.
template <class T>
py::object toPython(double value) {
  if constexpr (std::is_floating_point_v<T>) {
    return py::float_(value);
  } else {
    return py::int_(static_cast<long long>(value));
  }
}

/// The class `name` of the package, alive as long as the process.
inline PyObject* importType(const char* name) {
  return py::object(py::module_::import("zorvan_ipp._types").attr(name)).release().ptr();
}

/// A named tuple of the package, of the class `type`.
template <class... Fields>
PyObject* namedTuple(PyObject* type, Fields... fields) {
  const py::tuple contents(py::make_tuple(std::move(fields)...));
  PyObject* const made =
      PyTuple_Type.tp_new(reinterpret_cast<PyTypeObject*>(type), py::make_tuple(contents).ptr(), nullptr);
  if (made == nullptr) throw py::error_already_set();
  return made;
}

}  // namespace Zorvan::Python
