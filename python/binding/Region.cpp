#include "Region.h"

#include "errors.h"

namespace Zorvan::Python {

namespace {

/// The `count` whole numbers of a sequence.
void readNumbers(Value value, Py_ssize_t count, Py_ssize_t* numbers, const char* name, const char* contents) {
  const auto sequence = py::reinterpret_steal<py::object>(PySequence_Fast(value, ""));
  if (!sequence) PyErr_Clear();
  if (!sequence || PySequence_Fast_GET_SIZE(sequence.ptr()) != count) {
    throw py::type_error(std::string(name) + " must be a tuple " + contents);
  }
  for (Py_ssize_t index = 0; index < count; ++index) {
    PyObject* const item = PySequence_Fast_GET_ITEM(sequence.ptr(), index);
    if (!PyIndex_Check(item)) {
      throw py::type_error(std::string(name) + " must be a tuple " + contents + " of whole numbers, not of " +
                           Py_TYPE(item)->tp_name);
    }
    numbers[index] = PyNumber_AsSsize_t(item, PyExc_OverflowError);
    if (numbers[index] == -1 && PyErr_Occurred() != nullptr) throw py::error_already_set();
  }
}

}  // namespace

Region readRegion(Value value, Py_ssize_t rows, Py_ssize_t columns) {
  if (!isGiven(value)) return {0, 0, rows, columns};
  Py_ssize_t numbers[4];
  readNumbers(value, 4, numbers, "region", "(row, column, height, width)");
  return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

Pair readPair(Value value, const char* name, const char* contents) {
  Py_ssize_t numbers[2];
  readNumbers(value, 2, numbers, name, contents);
  return {numbers[0], numbers[1]};
}

void requireInside(const Region& region, const char* name, Py_ssize_t rows, Py_ssize_t columns) {
  const bool empty = region.height < 1 || region.width < 1;
  // Differences, because sums of arguments could overflow. For an empty region the differences could overflow
  // too.
  const bool inside = !empty && region.row >= 0 && region.column >= 0 && region.row <= rows - region.height &&
                      region.column <= columns - region.width;
  if (inside) return;
  const std::string what =
      "the region (row=" + std::to_string(region.row) + ", column=" + std::to_string(region.column) +
      ", height=" + std::to_string(region.height) + ", width=" + std::to_string(region.width) + ")";
  const std::string array =
      name + std::string(" of shape (") + std::to_string(rows) + ", " + std::to_string(columns) + ")";
  if (empty) throwIppError(Ipp::ippStsSizeErr, what + " of " + array + " has no pixels");
  throwIppError(Ipp::ippStsWrongIntersectROI, what + " leaves " + array);
}

}  // namespace Zorvan::Python
