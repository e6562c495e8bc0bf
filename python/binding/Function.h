#pragma once

// Functions of the module.
//
// They get their arguments in an array and are not registered by pybind11's `def`: its dispatch takes half a
// microsecond for calls with keywords, twice the time of a whole call here.

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "errors.h"
#include "numpy_api.h"

namespace Zorvan::Python {

/// Name and parameters of a function, read from the first line of its documentation:
/// `name(first, second=default, ...)`. Python's inspect shows this line too.
class Signature {
 public:
  Signature() = default;
  explicit Signature(const char* documentation);

  const char* name() const { return name_.c_str(); }
  std::size_t count() const { return parameters_.size(); }

  /// Writes the arguments of a call into `values`, one for each parameter. Throws Python's TypeError if they
  /// do not match the parameters.
  void read(PyObject* const* arguments, Py_ssize_t positional, PyObject* keywords, Value* values) const;

 private:
  std::size_t indexOf(PyObject* keyword) const;

  std::string name_;
  std::vector<PyObject*> parameters_;  // interned strings, alive as long as the process
  std::size_t required_ = 0;
};

/// The function with the body `body`, which gets one Value for each parameter and returns a new reference.
template <auto body>
class Function;

template <class... Values, PyObject* (*body)(Values...)>
class Function<body> {
 public:
  /// Adds it to `module`. `documentation` must outlive the process.
  static void define(py::module_& module, const char* documentation) {
    signature_ = Signature(documentation);
    if (signature_.count() != sizeof...(Values)) py::pybind11_fail("the parameters do not fit the body");
    method_ = {signature_.name(), reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&call)),
               METH_FASTCALL | METH_KEYWORDS, documentation};
    const py::str package("zorvan_ipp");  // where users and pickle find it
    module.add_object(signature_.name(),
                      py::reinterpret_steal<py::object>(PyCFunction_NewEx(&method_, nullptr, package.ptr())));
  }

 private:
  static PyObject* call(PyObject*, PyObject* const* arguments, Py_ssize_t positional, PyObject* keywords) {
    try {
      std::array<Value, sizeof...(Values)> values{};
      signature_.read(arguments, positional, keywords, values.data());
      return std::apply(body, values);
    } catch (...) {
      setPythonError();
      return nullptr;
    }
  }

  static inline Signature signature_;
  static inline PyMethodDef method_{};
};

}  // namespace Zorvan::Python
