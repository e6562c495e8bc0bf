#include "zorvan/operations/arithmetic/IppIArithmetic.h"

#include "Function.h"
#include "elementwise.h"
#include "families.h"
#include "scalars.h"
#include "zorvan/operations/initializer/Initializer.h"

namespace Zorvan::Python {

namespace {

using Ipp::Image::Initializer;
using Ipp::Image::IppIArithmetic;
using Ipp::Image::IppIMemory;

#define ARITHMETIC(Name)                                           \
  struct Name {                                                    \
    using Types = ArithmeticPixels;                                \
    template <class T, class... Rest>                              \
    static void apply(IppIMemory<T>& image, Rest&&... rest) {      \
      IppIArithmetic<T>::Name(image, std::forward<Rest>(rest)...); \
    }                                                              \
  };
ARITHMETIC(Add)
ARITHMETIC(Subtract)
ARITHMETIC(Multiply)
ARITHMETIC(Divide)
ARITHMETIC(Absolute)
ARITHMETIC(Square)
ARITHMETIC(SquareRoot)
#undef ARITHMETIC

/// In the library, pixels that the mask does not select have no defined result. So the sum is computed in a
/// separate image, and only the selected pixels are copied back.
template <class T>
void addWhereSelected(IppIMemory<T>& image, IppIMemory<u8>& mask, T value, Rect rect) {
  IppIMemory<T> sum(rect.width, rect.height);
  Initializer::Copy(image, sum, rect);
  IppIArithmetic<T>::AddCWithMask(sum, mask, value, rect);
  Initializer::CopyWithMask(sum, image, mask, rect);
}

PyObject* addConstant(Value image, Value value, Value region, Value mask, Value mayCopy) {
  Operand result = Operand::destination(image, "image", ArithmeticPixels::set, isTrue(mayCopy));
  const Region area = readRegion(region, result.rows(), result.columns());
  result.place(area);
  if (!isGiven(mask)) {
    ArithmeticPixels::with(result.type(), [&]<class T>() {
      auto to = result.view<T>();
      const T addend = readPixel<T>(value);
      run([&] { IppIArithmetic<T>::AddC(to, addend, area.rectOfView()); });
    });
  } else {
    Operand selection = Operand::mask(mask, isTrue(mayCopy));
    selection.place(area);
    result.requireApart(selection);
    ArithmeticPixels::with(result.type(), [&]<class T>() {
      auto to = result.view<T>();
      auto selected = selection.view<u8>();
      const T addend = readPixel<T>(value);
      run([&] { addWhereSelected(to, selected, addend, area.rectOfView()); });
    });
  }
  return result.finish();
}

PyObject* accumulate(Value src, Value accumulator, Value mask, Value region, Value mayCopy) {
  Operand source = Operand::source(src, "src", ArithmeticPixels::set, isTrue(mayCopy));
  Operand selection = Operand::mask(mask, isTrue(mayCopy));
  Operand result = Operand::destination(accumulator, "accumulator", Pixels<float>::set, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  selection.place(area);
  result.place(area);
  result.requireApart(source);
  result.requireApart(selection);
  ArithmeticPixels::with(source.type(), [&]<class T>() {
    auto from = source.view<T>();
    auto selected = selection.view<u8>();
    auto to = result.view<float>();
    run([&] { IppIArithmetic<T>::AddWithMask(from, to, selected, area.rectOfView()); });
  });
  return result.finish();
}

#define PARAMETERS_OF_TWO                                                                                 \
  "\na, b: (rows, columns) of uint8 or float32, both of one type.\n"                                      \
  "out: array of the same type, written in the region; it may be a or b. Without it a new array of the\n" \
  "     region's shape.\n"                                                                                \
  "region: (row, column, height, width), the same in every array; all of a by default.\n"                 \
  "copy: copy arrays that cannot be used in place, instead of refusing them.\n\n"                         \
  "Returns the array that was written."
#define PARAMETERS_OF_ONE                                                                              \
  "\nsrc: (rows, columns) of uint8 or float32.\n"                                                      \
  "out: array of the same type, written in the region; it may be src. Without it a new array of the\n" \
  "     region's shape.\n"                                                                             \
  "region: (row, column, height, width), the same in every array; all of src by default.\n"            \
  "copy: copy arrays that cannot be used in place, instead of refusing them.\n\n"                      \
  "Returns the array that was written."

}  // namespace

void defineArithmetic(py::module_& module) {
  Function<binary<Add>>::define(module, R"(add(a, b, out=None, region=None, copy=False)
--

a + b. Sums of uint8 saturate to 255, they do not wrap.
)" PARAMETERS_OF_TWO);
  Function<binary<Subtract>>::define(module, R"(subtract(a, b, out=None, region=None, copy=False)
--

a - b. Differences of uint8 saturate to 0, they do not wrap.
)" PARAMETERS_OF_TWO);
  Function<binary<Multiply>>::define(module, R"(multiply(a, b, out=None, region=None, copy=False)
--

a * b. Products of uint8 saturate to 255, they do not wrap.
)" PARAMETERS_OF_TWO);
  Function<binary<Divide>>::define(module, R"(divide(a, b, out=None, region=None, copy=False)
--

a / b. Quotients of uint8 are rounded to nearest, ties to even.

A zero in b issues an IppWarning of code 2: bytes divided by zero become 255, or 0 for a 0; floats an infinity
with the sign of a, or NaN for a zero. Quotients of float32 may differ from the nearest float by some units in
the last place.
)" PARAMETERS_OF_TWO);
  Function<addConstant>::define(module, R"(add_constant(image, value, region=None, mask=None, copy=False)
--

Adds value to the pixels of image, or to those that mask selects. In place. Sums of uint8 saturate to 255.

image: (rows, columns) of uint8 or float32.
value: a number that the type can represent.
region: (row, column, height, width), the same in every array; all of image by default.
mask: array of uint8 or bool; a pixel is selected where it is not zero. With it the call takes memory of the
      region's size.
copy: copy arrays that cannot be used in place, instead of refusing them.

Returns the array that was written.)");
  Function<accumulate>::define(module, R"(accumulate(src, accumulator, mask, region=None, copy=False)
--

Adds the pixels of src that mask selects to accumulator. In place.

src: (rows, columns) of uint8 or float32.
accumulator: array of float32. Pixels that mask does not select keep their values, but -0.0 may become 0.0, and
             they may become NaN if the pixel of a float32 src is infinite or NaN.
mask: array of uint8 or bool; a pixel is selected where it is not zero.
region: (row, column, height, width), the same in every array; all of src by default.
copy: copy arrays that cannot be used in place, instead of refusing them.

Returns the array that was written.)");
  Function<unary<Absolute>>::define(module, R"(absolute(src, out=None, region=None, copy=False)
--

Absolute values of float32 pixels. uint8 raises IppError of code -59.
)" PARAMETERS_OF_ONE);
  Function<unary<Square>>::define(module, R"(square(src, out=None, region=None, copy=False)
--

src * src. Squares of uint8 saturate to 255, they do not wrap.
)" PARAMETERS_OF_ONE);
  Function<unary<SquareRoot>>::define(module, R"(square_root(src, out=None, region=None, copy=False)
--

Square roots. Those of uint8 are rounded to nearest; those of float32 may differ from the nearest float by some
units in the last place. A negative pixel becomes NaN and issues an IppWarning of code 3.
)" PARAMETERS_OF_ONE);
}

}  // namespace Zorvan::Python
