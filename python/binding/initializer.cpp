#include "zorvan/operations/initializer/Initializer.h"
#include "Function.h"
#include "Operand.h"
#include "families.h"
#include "scalars.h"

namespace Zorvan::Python {

namespace {

using Ipp::Image::Initializer;
using Ipp::Image::IppIMemory;

/// The numpy type of a dtype argument.
int readType(Value dtype) {
  PyArray_Descr* descriptor = nullptr;
  if (PyArray_DescrConverter(dtype, &descriptor) == NPY_FAIL) throw py::error_already_set();
  const auto owner = py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(descriptor));
  return PyArray_ISNBO(descriptor->byteorder) && descriptor->type_num < 32 ? descriptor->type_num
                                                                           : NPY_NOTYPE;
}

/// The array shares the image's block, which is freed with the last array that uses it.
template <class T>
py::object arrayOfNewImage(Py_ssize_t rows, Py_ssize_t columns) {
  const auto image = Initializer::Allocate<T>(static_cast<int>(columns), static_cast<int>(rows));
  auto* const block = new std::shared_ptr<T[]>(image.buffer());
  const py::capsule owner(block, [](void* pointer) { delete static_cast<std::shared_ptr<T[]>*>(pointer); });
  if (!*block) throw std::bad_alloc();
  npy_intp shape[] = {rows, columns};
  auto array =
      py::reinterpret_steal<py::object>(PyArray_SimpleNewFromData(2, shape, numpyType<T>, block->get()));
  if (!array ||
      PyArray_SetBaseObject(reinterpret_cast<PyArrayObject*>(array.ptr()), owner.inc_ref().ptr()) != 0) {
    throw py::error_already_set();
  }
  return array;
}

PyObject* empty(Value shape, Value dtype) {
  const Pair extent = readPair(shape, "shape", "(rows, columns)");
  const Py_ssize_t rows = extent.first, columns = extent.second;
  constexpr Py_ssize_t most = std::numeric_limits<int>::max();
  if (rows < 1 || columns < 1 || rows > most || columns > most) {
    throw py::value_error("shape must be (rows, columns) of 1 and more");
  }
  const int type = isGiven(dtype) ? readType(dtype) : numpyType<u8>;
  py::object array;
  AllPixels::with(type, [&]<class T>() { array = arrayOfNewImage<T>(rows, columns); });
  if (!array) throw py::type_error("dtype must be uint8, uint16, int16, int32 or float32");
  return array.release().ptr();
}

PyObject* copy(Value src, Value out, Value region, Value mask, Value mayCopy) {
  Operand source = Operand::source(src, "src", AllPixels::set, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  Operand result = Operand::result(out, source.type(), area, isTrue(mayCopy), isGiven(mask));
  result.requireApart(source);
  if (!isGiven(mask)) {
    AllPixels::with(source.type(), [&]<class T>() {
      auto from = source.view<T>(), to = result.view<T>();
      run([&] { Initializer::Copy(from, to, area.rectOfView()); });
    });
  } else {
    Operand selection = Operand::mask(mask, isTrue(mayCopy));
    selection.place(area);
    result.requireApart(selection);
    AllPixels::with(source.type(), [&]<class T>() {
      auto from = source.view<T>(), to = result.view<T>();
      auto selected = selection.view<u8>();
      run([&] { Initializer::CopyWithMask(from, to, selected, area.rectOfView()); });
    });
  }
  return result.finish();
}

PyObject* fill(Value image, Value value, Value region, Value mask, Value mayCopy) {
  Operand result = Operand::destination(image, "image", AllPixels::set, isTrue(mayCopy));
  const Region area = readRegion(region, result.rows(), result.columns());
  result.place(area);
  if (!isGiven(mask)) {
    AllPixels::with(result.type(), [&]<class T>() {
      auto to = result.view<T>();
      const T pixel = readPixel<T>(value);
      run([&] { Initializer::Fill(to, pixel, area.rectOfView()); });
    });
  } else {
    Operand selection = Operand::mask(mask, isTrue(mayCopy));
    selection.place(area);
    result.requireApart(selection);
    AllPixels::with(result.type(), [&]<class T>() {
      auto to = result.view<T>();
      auto selected = selection.view<u8>();
      const T pixel = readPixel<T>(value);
      run([&] { Initializer::FillWithMask(to, selected, pixel, area.rectOfView()); });
    });
  }
  return result.finish();
}

PyObject* convert(Value src, Value dtype, Value out, Value region, Value mayCopy) {
  Operand source = Operand::source(src, "src", Pixels<int>::set, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  const int type = readType(dtype);
  if (type == NPY_NOTYPE || (ConvertPixels::set & setOf(type)) == 0) {
    throw py::type_error("dtype must be uint8 or float32");
  }
  Operand result = Operand::result(out, type, area, isTrue(mayCopy));
  result.requireApart(source);
  ConvertPixels::with(type, [&]<class T>() {
    auto from = source.view<int>();
    auto to = result.view<T>();
    run([&] { Initializer::Convert(from, to, area.rectOfView()); });
  });
  return result.finish();
}

}  // namespace

void defineInitializer(py::module_& module) {
  Function<empty>::define(module, R"(empty(shape, dtype=None)
--

A new array. Its pixels are not initialised.

shape: (rows, columns), both at least 1.
dtype: uint8 (the default), uint16, int16, int32 or float32.

The memory comes from the library and begins at a multiple of 64 bytes; the array owns it. Any other numpy array
can be used too.)");
  Function<copy>::define(module, R"(copy(src, out=None, region=None, mask=None, copy=False)
--

Copies src, or those of its pixels that mask selects.

src: (rows, columns) of uint8, uint16, int16, int32 or float32.
out: array of the same type, written in the region; the pixels that mask does not select keep their values.
     Without it a new array of the region's shape, zero where mask does not select.
region: (row, column, height, width), the same in every array; all of src by default.
mask: array of uint8 or bool; a pixel is selected where it is not zero.
copy: copy arrays that cannot be used in place, instead of refusing them.

Returns the array that was written.)");
  Function<fill>::define(module, R"(fill(image, value, region=None, mask=None, copy=False)
--

Sets the pixels of image, or those that mask selects, to value. In place.

image: (rows, columns) of uint8, uint16, int16, int32 or float32.
value: a number that the type can represent; it is not rounded or wrapped.
region: (row, column, height, width), the same in every array; all of image by default.
mask: array of uint8 or bool; a pixel is selected where it is not zero.
copy: copy arrays that cannot be used in place, instead of refusing them.

Returns the array that was written.)");
  Function<convert>::define(module, R"(convert(src, dtype, out=None, region=None, copy=False)
--

Converts int32 pixels: to uint8, saturated to 0 to 255, or to float32, rounded to nearest.

src: (rows, columns) of int32.
dtype: uint8 or float32.
out: array of that type; without it a new array of the region's shape.
region: (row, column, height, width), the same in every array; all of src by default.
copy: copy arrays that cannot be used in place, instead of refusing them.

Returns the array that was written.)");
}

}  // namespace Zorvan::Python
