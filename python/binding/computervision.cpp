#include "zorvan/operations/computervision/ComputerVision.h"
#include "Function.h"
#include "Operand.h"
#include "errors.h"
#include "families.h"
#include "scalars.h"

namespace Zorvan::Python {

namespace {

using Ipp::Image::ComputerVision;

PyObject* connectionInfoType;

PyObject* floodFill(Value image, Value seed, Value value, Value region, Value mayCopy) {
  Operand filled = Operand::destination(image, "image", FloodFillPixels::set, isTrue(mayCopy));
  const Region area = readRegion(region, filled.rows(), filled.columns());
  filled.place(area);
  const auto [row, column] = readPair(seed, "seed", "(row, column)");
  // Tested before the seed is made relative to the region, where it fits into the library's integers.
  const bool inside = row >= area.row && row - area.row < area.height && column >= area.column &&
                      column - area.column < area.width;
  if (!inside) {
    throwIppError(Ipp::ippStsOutOfRangeErr, "the seed (" + std::to_string(row) + ", " +
                                                std::to_string(column) + ") lies outside the region");
  }
  const Point start{static_cast<int>(column - area.column), static_cast<int>(row - area.row)};
  PyObject* result = nullptr;
  FloodFillPixels::with(filled.type(), [&]<class T>() {
    auto pixels = filled.view<T>();
    const T pixel = readPixel<T>(value);
    ConnectionInfo found{};
    run([&] { found = ComputerVision::FloodFill(pixels, start, pixel, area.rectOfView()); });
    const bool any = found.area > 0;
    const py::tuple box =
        py::make_tuple(any ? area.row + found.rect.y : 0, any ? area.column + found.rect.x : 0,
                       found.rect.height, found.rect.width);
    result = namedTuple(connectionInfoType, toPython<int>(found.area), toPython<T>(found.value[0]), box);
  });
  Py_DECREF(filled.finish());
  return result;
}

}  // namespace

void defineComputerVision(py::module_& module) {
  connectionInfoType = importType("ConnectionInfo");

  Function<floodFill>::define(module, R"(flood_fill(image, seed, value, region=None, copy=False)
--

Sets the pixels that are connected with the pixel at seed, by their four sides, and equal to it. In place.

image: (rows, columns) of uint8, uint16, int32 or float32.
seed: (row, column) of image, also with a region. Outside the region it raises IppError of code -11.
value: a number that the type can represent. If the pixel at seed already has it, nothing is done and all fields of
       the result are 0.
region: (row, column, height, width) that the fill does not leave; all of image by default.
copy: an array that cannot be used in place is filled through a copy, instead of being refused.

Returns ConnectionInfo: the number of filled pixels, the value, and the smallest region that contains them.
The call takes memory of about 8 bytes for each pixel of the region.)");
}

}  // namespace Zorvan::Python
