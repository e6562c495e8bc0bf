#include "zorvan/operations/morphology/IppIMorphology.h"

#include <limits>

#include "Function.h"
#include "Operand.h"
#include "errors.h"
#include "families.h"

namespace Zorvan::Python {

namespace {

using Ipp::Image::IppIMemory;
using Ipp::Image::IppIMorphology;

#define MORPHOLOGY(Name)                                                                  \
  struct Name {                                                                           \
    template <class T>                                                                    \
    static void apply(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, Size maskSize) { \
      IppIMorphology<T>::Name(src, dst, rect, maskSize);                                  \
    }                                                                                     \
  };
MORPHOLOGY(Erode)
MORPHOLOGY(Dilate)
MORPHOLOGY(Open)
MORPHOLOGY(Close)
#undef MORPHOLOGY

Size readSize(Value value) {
  if (!isGiven(value)) return {3, 3};
  const auto [rows, columns] = readPair(value, "size", "(rows, columns)");
  constexpr Py_ssize_t most = std::numeric_limits<int>::max();
  if (rows < 1 || columns < 1 || rows > most || columns > most) {
    throw py::value_error("size must be (rows, columns) of 1 and more, not (" + std::to_string(rows) + ", " +
                          std::to_string(columns) + ")");
  }
  return {static_cast<int>(columns), static_cast<int>(rows)};
}

template <class Operation>
PyObject* morphology(Value src, Value size, Value out, Value region, Value mayCopy) {
  Operand source = Operand::source(src, "src", MorphologyPixels::set, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  const Size maskSize = readSize(size);
  Operand result = Operand::result(out, source.type(), area, isTrue(mayCopy));
  result.requireApart(source);
  MorphologyPixels::with(source.type(), [&]<class T>() {
    auto from = source.view<T>(), to = result.view<T>();
    run([&] { Operation::apply(from, to, area.rectOfView(), maskSize); });
  });
  return result.finish();
}

#define PARAMETERS                                                                                         \
  "\nsrc: (rows, columns) of uint8 or float32 without NaN.\n"                                              \
  "size: (rows, columns) of the rectangle, in pixels. Of an even size it reaches one pixel further down, " \
  "or\n"                                                                                                   \
  "      to the right.\n"                                                                                  \
  "out: array of the same type, written in the region; without it a new array of the region's shape. It "  \
  "may\n"                                                                                                  \
  "     not share memory with src.\n"                                                                      \
  "region: (row, column, height, width), the same in both arrays; all of src by default. Outside of it, "  \
  "also\n"                                                                                                 \
  "        inside src, pixels count as the nearest pixel of the region.\n"                                 \
  "copy: copy arrays that cannot be used in place, instead of refusing them.\n\n"                          \
  "Returns the array that was written."

}  // namespace

void defineMorphology(py::module_& module) {
  Function<morphology<Erode>>::define(module, R"(erode(src, size=(3, 3), out=None, region=None, copy=False)
--

The smallest pixel of the rectangle around each pixel.
)" PARAMETERS);
  Function<morphology<Dilate>>::define(module, R"(dilate(src, size=(3, 3), out=None, region=None, copy=False)
--

The largest pixel of the rectangle around each pixel.
)" PARAMETERS);
  Function<morphology<Open>>::define(module, R"(open(src, size=(3, 3), out=None, region=None, copy=False)
--

An erosion, then a dilation by the rectangle rotated by 180 degrees: removes smaller bright areas.
)" PARAMETERS);
  Function<morphology<Close>>::define(module, R"(close(src, size=(3, 3), out=None, region=None, copy=False)
--

A dilation, then an erosion by the rectangle rotated by 180 degrees: removes smaller dark areas.
)" PARAMETERS);
}

}  // namespace Zorvan::Python
