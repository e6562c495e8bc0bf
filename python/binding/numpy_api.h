#pragma once

// Numpy's C interface: one table of functions for all sources of the module, which module.cpp fills.

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#define NPY_NO_DEPRECATED_API NPY_1_7_API_VERSION
#define PY_ARRAY_UNIQUE_SYMBOL ZorvanIppNumpy
#ifndef ZORVAN_IPP_FILLS_NUMPY_TABLE
#define NO_IMPORT_ARRAY
#endif
#include <numpy/arrayobject.h>

namespace Zorvan::Python {

namespace py = pybind11;

/// An argument of a call, borrowed from the caller. Null if it was not given.
using Value = PyObject*;

inline bool isGiven(Value value) { return value != nullptr && value != Py_None; }

}  // namespace Zorvan::Python
