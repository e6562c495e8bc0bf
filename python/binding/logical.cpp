#include "zorvan/operations/logical/IppILogical.h"

#include <array>
#include <string_view>

#include "Function.h"
#include "elementwise.h"
#include "families.h"
#include "scalars.h"
#include "zorvan/operations/logical/Comparer.h"

namespace Zorvan::Python {

namespace {

using Ipp::Image::Comparer;
using Ipp::Image::IppILogical;
using Ipp::Image::IppIMemory;

#define LOGICAL(Name)                                           \
  struct Name {                                                 \
    using Types = LogicalPixels;                                \
    template <class T, class... Rest>                           \
    static void apply(IppIMemory<T>& image, Rest&&... rest) {   \
      IppILogical<T>::Name(image, std::forward<Rest>(rest)...); \
    }                                                           \
  };
LOGICAL(And)
LOGICAL(Or)
LOGICAL(Xor)
LOGICAL(Not)
#undef LOGICAL

eComparison readComparison(Value value) {
  constexpr std::array<std::string_view, 5> symbols = {"<",
                                                       "<=", "==", ">=", ">"};  // in the order of the values
  if (PyUnicode_Check(value)) {
    Py_ssize_t length = 0;
    const char* const text = PyUnicode_AsUTF8AndSize(value, &length);
    if (text == nullptr) throw py::error_already_set();
    for (std::size_t index = 0; index < symbols.size(); ++index) {
      if (symbols[index] == std::string_view(text, static_cast<std::size_t>(length))) {
        return static_cast<eComparison>(index);
      }
    }
  }
  throw py::value_error("comparison must be '<', '<=', '==', '>=' or '>', not " +
                        std::string(py::repr(py::handle(value))));
}

/// The library truncates values to whole numbers of 8 bits. Here such a value is an error instead.
float readConstant(Value value) {
  const double number = PyFloat_AsDouble(value);
  if (number == -1 && PyErr_Occurred() != nullptr) throw py::error_already_set();
  if (!(number >= 0 && number <= 255) || number != static_cast<int>(number)) {
    throw py::value_error("value must be a whole number from 0 to 255, not " +
                          std::string(py::repr(py::handle(value))));
  }
  return static_cast<float>(number);
}

PyObject* compare(Value src, Value comparison, Value value, Value out, Value region, Value mayCopy) {
  Operand source = Operand::source(src, "src", ComparerPixels::set, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  const eComparison how = readComparison(comparison);
  const float constant = readConstant(value);
  Operand result = Operand::result(out, numpyType<u8>, area, isTrue(mayCopy));
  result.requireApart(source);
  ComparerPixels::with(source.type(), [&]<class T>() {
    auto from = source.view<T>();
    auto to = result.view<u8>();
    run([&] { Comparer<T>::Compare(from, to, area.rectOfView(), constant, how); });
  });
  return result.finish();
}

#define BYTES_ONLY " float32 has no bits to combine and raises IppError of code -59.\n"
#define PARAMETERS_OF_TWO                                                                                  \
  "\na, b: (rows, columns) of uint8.\n"                                                                    \
  "out: array of uint8, written in the region; it may be a or b. Without it a new array of the region's\n" \
  "     shape.\n"                                                                                          \
  "region: (row, column, height, width), the same in every array; all of a by default.\n"                  \
  "copy: copy arrays that cannot be used in place, instead of refusing them.\n\n"                          \
  "Returns the array that was written."

}  // namespace

void defineLogical(py::module_& module) {
  Function<binary<And>>::define(module, R"(bitwise_and(a, b, out=None, region=None, copy=False)
--

a & b, bit by bit.)" BYTES_ONLY PARAMETERS_OF_TWO);
  Function<binary<Or>>::define(module, R"(bitwise_or(a, b, out=None, region=None, copy=False)
--

a | b, bit by bit.)" BYTES_ONLY PARAMETERS_OF_TWO);
  Function<binary<Xor>>::define(module, R"(bitwise_xor(a, b, out=None, region=None, copy=False)
--

a ^ b, bit by bit.)" BYTES_ONLY PARAMETERS_OF_TWO);
  Function<unary<Not>>::define(module, R"(invert(src, out=None, region=None, copy=False)
--

~src, which is 255 - src.)" BYTES_ONLY R"(
src: (rows, columns) of uint8.
out: array of uint8, written in the region; it may be src. Without it a new array of the region's shape.
region: (row, column, height, width), the same in every array; all of src by default.
copy: copy arrays that cannot be used in place, instead of refusing them.

Returns the array that was written.)");
  Function<compare>::define(module, R"(compare(src, comparison, value, out=None, region=None, copy=False)
--

255 where the comparison of the pixel with value is true, 0 elsewhere: a mask for other functions.

src: (rows, columns) of float32.
comparison: '<', '<=', '==', '>=' or '>'.
value: a whole number from 0 to 255; the library cannot compare with others.
out: array of uint8; without it a new array of the region's shape.
region: (row, column, height, width), the same in every array; all of src by default.
copy: copy arrays that cannot be used in place, instead of refusing them; bytes become floats by it.

A NaN is not '<', '<=' or '==' to anything; whether it is '>=' or '>' depends on the processor.

Returns the array that was written.)");
}

}  // namespace Zorvan::Python
