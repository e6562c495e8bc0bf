#include <string_view>

#include "Function.h"
#include "Operand.h"
#include "errors.h"
#include "families.h"
#include "scalars.h"
#include "zorvan/operations/filtering/FilteringFunction.h"

namespace Zorvan::Python {

namespace {

using Ipp::Image::FilteringFunction;

bool readUse3x3(Value size) {
  if (!isGiven(size)) return true;
  const long number = PyIndex_Check(size) ? PyLong_AsLong(size) : 0;
  if (PyErr_Occurred() != nullptr) PyErr_Clear();
  if (number != 3 && number != 5)
    throw py::value_error("size must be 3 or 5, for the kernel of 3 by 3 or 5 by 5");
  return number == 3;
}

eBorderType readBorder(Value border) {
  if (!isGiven(border)) return eBorderReplicate;
  if (PyUnicode_Check(border)) {
    if (PyUnicode_CompareWithASCIIString(border, "replicate") == 0) return eBorderReplicate;
    if (PyUnicode_CompareWithASCIIString(border, "constant") == 0) return eBorderConstant;
  }
  throw py::value_error("border must be 'replicate' or 'constant', not " +
                        std::string(py::repr(py::handle(border))));
}

PyObject* laplace(Value src, Value size, Value border, Value value, Value out, Value region, Value mayCopy) {
  Operand source = Operand::source(src, "src", FilteringPixels::set, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  const bool use3x3 = readUse3x3(size);
  const eBorderType kind = readBorder(border);
  Operand result = Operand::result(out, source.type(), area, isTrue(mayCopy));
  result.requireApart(source);
  FilteringPixels::with(source.type(), [&]<class T>() {
    auto from = source.view<T>(), to = result.view<T>();
    const T borderValue = isGiven(value) ? readPixel<T>(value) : T{0};
    run([&] { FilteringFunction::LaplaceBorder(from, to, area.rectOfView(), use3x3, kind, borderValue); });
  });
  return result.finish();
}

}  // namespace

void defineFiltering(py::module_& module) {
  Function<laplace>::define(
      module,
      R"(laplace(src, size=3, border='replicate', value=0, out=None, region=None, copy=False)
--

The Laplace filter, with the kernel

    -1 -1 -1          -1 -3 -4 -3 -1
    -1  8 -1    or    -3  0  6  0 -3
    -1 -1 -1          -4  6 20  6 -4
                      -3  0  6  0 -3
                      -1 -3 -4 -3 -1

src: (rows, columns) of uint8, int16 or float32. Sums of integers saturate to the limits of their type.
size: 3 or 5.
border: the pixels outside the region, also inside src: 'replicate' for the region's nearest pixel, 'constant'
        for value.
value: a number that the type can represent, for border='constant'.
out: array of the same type, written in the region; without it a new array of the region's shape. It may not
     share memory with src.
region: (row, column, height, width), the same in both arrays; all of src by default.
copy: copy arrays that cannot be used in place, instead of refusing them.

Returns the array that was written.)");
}

}  // namespace Zorvan::Python
