#include "Operand.h"

#include <limits>
#include <string>

#include "errors.h"

namespace Zorvan::Python {

namespace {

constexpr int nativeLayout = NPY_ARRAY_C_CONTIGUOUS | NPY_ARRAY_NOTSWAPPED;

std::string nameOfType(int number) {
  const auto type =
      py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(PyArray_DescrFromType(number)));
  return std::string(py::str(type));
}

std::string namesOf(TypeSet types) {
  std::string names;
  for (int number = 0; number < 32; ++number) {
    if ((types & setOf(number)) != 0) names += (names.empty() ? "" : " or ") + nameOfType(number);
  }
  return names;
}

int lowestOf(TypeSet types) {
  for (int number = NPY_BOOL + 1;; ++number) {
    if ((types & setOf(number)) != 0) return number;
  }
}

std::string textOf(PyObject* object) { return std::string(py::str(py::handle(object))); }

bool isUsable(PyArrayObject* array, TypeSet types) {
  return PyArray_TYPE(array) < 32 && (types & setOf(PyArray_TYPE(array))) != 0 &&
         PyArray_IS_C_CONTIGUOUS(array) && PyArray_ISNOTSWAPPED(array);
}

/// The type of `types` that numpy converts `type` to: safely if there is one, and otherwise one of the same
/// kind.
int typeToCopyTo(PyArray_Descr* type, TypeSet types) {
  for (const NPY_CASTING casting : {NPY_SAFE_CASTING, NPY_SAME_KIND_CASTING}) {
    for (int number = 0; number < 32; ++number) {
      if ((types & setOf(number)) == 0) continue;
      PyArray_Descr* const candidate = PyArray_DescrFromType(number);
      const bool can = PyArray_CanCastTypeTo(type, candidate, casting) != 0;
      Py_DECREF(candidate);
      if (can) return number;
    }
  }
  return NPY_NOTYPE;
}

/// Throws an error that explains why `array` is not usable, and how to convert it.
[[noreturn]] void throwUnusable(PyArrayObject* array, const char* name, TypeSet types) {
  const std::string subject = name;
  if (PyArray_TYPE(array) >= 32 || (types & setOf(PyArray_TYPE(array))) == 0) {
    const int best = typeToCopyTo(PyArray_DESCR(array), types);
    const std::string target = nameOfType(best == NPY_NOTYPE ? lowestOf(types) : best);
    throw py::type_error(subject + " must be an array of " + namesOf(types) + ", not of " +
                         textOf(reinterpret_cast<PyObject*>(PyArray_DESCR(array))) + ": convert it with " +
                         subject + ".astype(numpy." + target + ")" +
                         (best == NPY_NOTYPE ? "" : ", or pass copy=True"));
  }
  if (!PyArray_ISNOTSWAPPED(array)) {
    throw py::value_error(subject + " has its bytes in the other order (" +
                          textOf(reinterpret_cast<PyObject*>(PyArray_DESCR(array))) + "): convert it with " +
                          subject + ".astype(" + subject + ".dtype.newbyteorder('=')), or pass copy=True");
  }
  throw py::value_error(subject + " must have rows without gaps, in order (strides " +
                        textOf(py::handle(reinterpret_cast<PyObject*>(array)).attr("strides").ptr()) +
                        " do not fit shape " +
                        textOf(py::handle(reinterpret_cast<PyObject*>(array)).attr("shape").ptr()) +
                        "): pass the whole array and region=(row, column, height, width), or "
                        "numpy.ascontiguousarray(" +
                        subject + "), or copy=True");
}

py::object usableCopy(PyArrayObject* array, const char* name, TypeSet types) {
  const bool keepsType = PyArray_TYPE(array) < 32 && (types & setOf(PyArray_TYPE(array))) != 0;
  const int number = keepsType ? PyArray_TYPE(array) : typeToCopyTo(PyArray_DESCR(array), types);
  if (number == NPY_NOTYPE) throwUnusable(array, name, types);
  auto copy = py::reinterpret_steal<py::object>(
      PyArray_FromArray(array, PyArray_DescrFromType(number),
                        nativeLayout | NPY_ARRAY_ENSURECOPY | NPY_ARRAY_FORCECAST | NPY_ARRAY_WRITEABLE));
  if (!copy) throw py::error_already_set();
  return copy;
}

bool isMaskedArray(Value value) {
  return PyArray_Check(value) && !PyArray_CheckExact(value) &&
         py::isinstance(value, py::module_::import("numpy.ma").attr("MaskedArray"));
}

/// Not images of other libraries, which numpy can convert: some of them can be converted to numbers too.
bool isNumber(Value value) { return PyArray_IsPythonNumber(value) || PyArray_IsScalar(value, Generic); }

py::object arrayOf(Value value, const char* name, bool mayCopy) {
  const std::string subject = name;
  if (isMaskedArray(value)) {
    throw py::type_error(subject + " is a masked array, whose mask would be lost: pass " + subject +
                         ".data, with mask=~" + subject + ".mask to a function that takes a mask");
  }
  if (PyArray_Check(value)) return py::reinterpret_borrow<py::object>(value);
  if (isNumber(value)) {
    throw py::type_error(subject + " must be a numpy array, not the number " + textOf(value) +
                         ": add_constant and its like take numbers; numpy.full makes an array of one");
  }
  if (!mayCopy) {
    throw py::type_error(subject + " must be a numpy array, not " + Py_TYPE(value)->tp_name +
                         ": pass numpy.asarray(" + subject + "), or copy=True");
  }
  auto array = py::reinterpret_steal<py::object>(PyArray_FROM_O(value));
  if (!array) throw py::error_already_set();
  return array;
}

}  // namespace

void Operand::requireTwoDimensions() const {
  if (PyArray_NDIM(array()) == 2) return;
  throw py::value_error(std::string(name_) + " must have two dimensions, rows and columns, not shape " +
                        textOf(py::handle(array_).attr("shape").ptr()));
}

Operand Operand::source(Value value, const char* name, TypeSet types, bool mayCopy) {
  Operand operand(arrayOf(value, name, mayCopy), name);
  operand.requireTwoDimensions();
  if (!isUsable(operand.array(), types)) {
    if (!mayCopy) throwUnusable(operand.array(), name, types);
    operand.array_ = usableCopy(operand.array(), name, types);
  }
  return operand;
}

Operand Operand::mask(Value value, bool mayCopy) { return source(value, "mask", maskTypes, mayCopy); }

Operand Operand::destination(Value value, const char* name, TypeSet types, bool mayCopy) {
  Operand operand(arrayOf(value, name, mayCopy), name);
  operand.requireTwoDimensions();
  const bool isWriteable = PyArray_ISWRITEABLE(operand.array());
  if (isUsable(operand.array(), types) && isWriteable) return operand;
  if (!mayCopy) {
    if (!isUsable(operand.array(), types)) throwUnusable(operand.array(), name, types);
    throw py::value_error(std::string(name) +
                          " is read-only: pass an array that can be written, or copy=True");
  }
  operand.original_ = operand.array_;
  operand.array_ = usableCopy(operand.array(), name, types);
  return operand;
}

Operand Operand::result(Value out, int type, const Region& region, bool mayCopy, bool cleared) {
  if (isGiven(out)) {
    Operand operand = destination(out, "out", setOf(type), mayCopy);
    operand.place(region);
    return operand;
  }
  npy_intp shape[] = {region.height, region.width};
  auto array = py::reinterpret_steal<py::object>(cleared ? PyArray_ZEROS(2, shape, type, 0)
                                                         : PyArray_EMPTY(2, shape, type, 0));
  if (!array) throw py::error_already_set();
  Operand operand(std::move(array), "out");
  operand.place({0, 0, region.height, region.width});
  return operand;
}

void Operand::place(const Region& region) {
  requireInside(region, name_, rows(), columns());
  const Py_ssize_t pixelBytes = PyArray_ITEMSIZE(array());
  constexpr Py_ssize_t most = std::numeric_limits<int>::max();
  if (columns() > most / pixelBytes || region.height > most) {
    throw py::value_error(std::string(name_) +
                          " is too large: a row may have 2 GiB, a region 2**31 - 1 rows");
  }
  const Py_ssize_t rowBytes = columns() * pixelBytes;
  height_ = region.height;
  first_ = PyArray_BYTES(array()) + region.row * rowBytes + region.column * pixelBytes;
  last_ = first_ + (region.height - 1) * rowBytes + region.width * pixelBytes;
}

void Operand::requireApart(const Operand& source) const {
  if (last_ <= source.first_ || source.last_ <= first_) return;
  throw py::value_error(std::string(name_) + " shares memory with " + source.name_ +
                        ", which must stay as it is while " + name_ +
                        " is written: pass another array or a copy");
}

void Operand::requireApartOrSame(const Operand& source) const {
  if (!isSameRegion(source)) requireApart(source);
}

PyObject* Operand::finish() {
  if (original_) {
    auto* const target = reinterpret_cast<PyArrayObject*>(original_.ptr());
    const bool takes = PyArray_ISWRITEABLE(target) &&
                       PyArray_CanCastArrayTo(array(), PyArray_DESCR(target), NPY_SAME_KIND_CASTING);
    if (takes) {
      if (PyArray_CopyInto(target, array()) != 0) throw py::error_already_set();
      return original_.release().ptr();
    }
  }
  return array_.release().ptr();
}

bool isTrue(Value value) {
  if (value == nullptr || value == Py_False) return false;
  const int truth = PyObject_IsTrue(value);
  if (truth < 0) throw py::error_already_set();
  return truth != 0;
}

}  // namespace Zorvan::Python
