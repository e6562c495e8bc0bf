#pragma once

// Functions for operations in which each pixel of the result depends on one place of the sources.

#include "Operand.h"
#include "errors.h"

namespace Zorvan::Python {

/// Operations of one source. `Operation` has `Types`, and `apply(source, result, rect)` and `apply(image,
/// rect)`.
template <class Operation>
PyObject* unary(Value src, Value out, Value region, Value mayCopy) {
  using Types = typename Operation::Types;
  Operand source = Operand::source(src, "src", Types::set, isTrue(mayCopy));
  const Region area = readRegion(region, source.rows(), source.columns());
  source.place(area);
  Operand result = Operand::result(out, source.type(), area, isTrue(mayCopy));
  result.requireApartOrSame(source);
  Types::with(source.type(), [&]<class T>() {
    auto from = source.view<T>(), to = result.view<T>();
    run([&] {
      if (result.isSameRegion(source)) {
        Operation::apply(to, area.rectOfView());
      } else {
        Operation::apply(from, to, area.rectOfView());
      }
    });
  });
  return result.finish();
}

/// Operations of two sources. `apply(a, b, result, rect)` and `apply(a, b, rect)`, which writes b, use the
/// library's order: the subtrahend or divisor is the first. Python's order is the usual one.
template <class Operation>
PyObject* binary(Value a, Value b, Value out, Value region, Value mayCopy) {
  using Types = typename Operation::Types;
  Operand left = Operand::source(a, "a", Types::set, isTrue(mayCopy));
  Operand right = Operand::source(b, "b", setOf(left.type()), isTrue(mayCopy));
  const Region area = readRegion(region, left.rows(), left.columns());
  left.place(area);
  right.place(area);
  Operand result = Operand::result(out, left.type(), area, isTrue(mayCopy));
  result.requireApartOrSame(left);
  result.requireApartOrSame(right);
  Types::with(left.type(), [&]<class T>() {
    auto first = right.view<T>(), second = left.view<T>(), to = result.view<T>();
    run([&] {
      if (result.isSameRegion(left)) {
        Operation::apply(first, to, area.rectOfView());
      } else {
        Operation::apply(first, second, to, area.rectOfView());
      }
    });
  });
  return result.finish();
}

}  // namespace Zorvan::Python
