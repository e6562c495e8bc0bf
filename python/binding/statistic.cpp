#include "zorvan/operations/statistic/Statistic.h"

#include "Function.h"
#include "Operand.h"
#include "errors.h"
#include "families.h"
#include "scalars.h"

namespace Zorvan::Python {

namespace {

using Ipp::Image::IppIMemory;
using Ipp::Image::Statistic;

PyObject* meanStdDevType;
PyObject* minMaxIndexType;

struct Min {
  template <class T>
  static T of(IppIMemory<T>& image, Rect rect) {
    return Statistic<T>::Min(image, rect);
  }
};
struct Max {
  template <class T>
  static T of(IppIMemory<T>& image, Rect rect) {
    return Statistic<T>::Max(image, rect);
  }
};

template <class Extreme>
PyObject* extreme(Value src, Value region, Value mayCopy) {
  Operand source = Operand::source(src, "src", StatisticPixels::set, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  py::object found;
  StatisticPixels::with(source.type(), [&]<class T>() {
    auto image = source.view<T>();
    T pixel{};
    run([&] { pixel = Extreme::of(image, area.rectOfView()); });
    found = toPython<T>(pixel);
  });
  return found.release().ptr();
}

PyObject* mean(Value src, Value region, Value mask, Value mayCopy) {
  Operand source = Operand::source(src, "src", StatisticPixels::set, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  py::object found;
  if (!isGiven(mask)) {
    StatisticPixels::with(source.type(), [&]<class T>() {
      auto image = source.view<T>();
      T pixel{};
      run([&] { pixel = Statistic<T>::Mean(image, area.rectOfView()); });
      found = toPython<T>(pixel);
    });
  } else {
    Operand selection = Operand::mask(mask, isTrue(mayCopy));
    selection.place(area);
    StatisticPixels::with(source.type(), [&]<class T>() {
      auto image = source.view<T>();
      auto selected = selection.view<u8>();
      T pixel{};
      run([&] { pixel = Statistic<T>::Mean(image, selected, area.rectOfView()); });
      found = toPython<T>(pixel);
    });
  }
  return found.release().ptr();
}

PyObject* meanStdDev(Value src, Value mask, Value region, Value mayCopy) {
  Operand source = Operand::source(src, "src", StatisticPixels::set, isTrue(mayCopy));
  Operand selection = Operand::mask(mask, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  selection.place(area);
  MeanStdDev found{};
  StatisticPixels::with(source.type(), [&]<class T>() {
    auto image = source.view<T>();
    auto selected = selection.view<u8>();
    run([&] { found = Statistic<T>::MeanAndStandardDeviationWithMask(image, selected, area.rectOfView()); });
  });
  return namedTuple(meanStdDevType, found.Mean, found.StdDev);
}

PyObject* minMaxIndex(Value src, Value mask, Value region, Value mayCopy) {
  Operand source = Operand::source(src, "src", StatisticPixels::set, isTrue(mayCopy));
  Operand selection = Operand::mask(mask, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  selection.place(area);
  PyObject* result = nullptr;
  StatisticPixels::with(source.type(), [&]<class T>() {
    auto image = source.view<T>();
    auto selected = selection.view<u8>();
    MinMaxIndex found{};
    run([&] { found = Statistic<T>::MinMaxIndexWithMask(image, selected, area.rectOfView()); });
    const auto place = [&](Point point) { return py::make_tuple(area.row + point.y, area.column + point.x); };
    result = namedTuple(minMaxIndexType, toPython<T>(found.Min), place(found.MinIndex),
                        toPython<T>(found.Max), place(found.MaxIndex));
  });
  return result;
}

#define PARAMETERS_WITHOUT_MASK                                    \
  "\nsrc: (rows, columns) of uint8, uint16 or float32.\n"          \
  "region: (row, column, height, width); all of src by default.\n" \
  "copy: copy arrays that cannot be used in place, instead of refusing them."

}  // namespace

void defineStatistic(py::module_& module) {
  meanStdDevType = importType("MeanStdDev");
  minMaxIndexType = importType("MinMaxIndex");

  Function<extreme<Min>>::define(module, R"(minimum(src, region=None, copy=False)
--

The smallest pixel. A NaN may be the result or be ignored.
)" PARAMETERS_WITHOUT_MASK);
  Function<extreme<Max>>::define(module, R"(maximum(src, region=None, copy=False)
--

The largest pixel. A NaN may be the result or be ignored.
)" PARAMETERS_WITHOUT_MASK);
  Function<mean>::define(module, R"(mean(src, region=None, mask=None, copy=False)
--

The mean of the pixels, or of those that mask selects; 0 if there are none.

The result is a pixel of src's type: the mean of integers is truncated, that of 1 and 2 is 1.
mean_std_dev does not truncate it.

src: (rows, columns) of uint8, uint16 or float32.
region: (row, column, height, width), the same in every array; all of src by default.
mask: array of uint8 or bool; a pixel is selected where it is not zero.
copy: copy arrays that cannot be used in place, instead of refusing them.)");
  Function<meanStdDev>::define(module, R"(mean_std_dev(src, mask, region=None, copy=False)
--

Mean and standard deviation of the pixels that mask selects, as MeanStdDev; 0 and 0 if there are none.

It is the population standard deviation: the square root of the mean squared difference from the mean.

src: (rows, columns) of uint8 or float32. The library reads uint16 as bytes: from each row a number of bytes
     that is the width of the region, the low byte of each pixel first. Use src.astype(numpy.float32) for words.
mask: array of uint8 or bool; a pixel is selected where it is not zero.
region: (row, column, height, width), the same in both arrays; all of src by default.
copy: copy arrays that cannot be used in place, instead of refusing them.)");
  Function<minMaxIndex>::define(module, R"(min_max_index(src, mask, region=None, copy=False)
--

Smallest and largest of the pixels that mask selects, each with its first position, as MinMaxIndex.

Positions are (row, column) of src, also with a region.

src: (rows, columns) of uint8, or of float32 without NaN; uint16 raises IppError of code -59.
mask: array of uint8 or bool; a pixel is selected where it is not zero. None selected raises IppError of code 1.
region: (row, column, height, width), the same in both arrays; all of src by default.
copy: copy arrays that cannot be used in place, instead of refusing them.)");
}

}  // namespace Zorvan::Python
