#pragma once

// The base classes of the operation objects, and the function by which all facades run them.
//
// A Method class stands for one operation: it derives from the base for its number of images, holds the
// arguments of the operation that are not images, and implements Execute, which selects the entry for the
// pixel type. An object lives on the stack of one facade call.

#include <cstdint>
#include <tuple>
#include <type_traits>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppException.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/Wrapping.h"

namespace Zorvan::Ipp::Image::Methods {

template <class T>
class Method_1M {
 public:
  virtual int Execute(T* image, int step, Size roi) = 0;

 protected:
  ~Method_1M() = default;
};

template <class T1, class T2>
class Method_2M {
 public:
  virtual int Execute(T1* first, int firstStep, T2* second, int secondStep, Size roi) = 0;

 protected:
  ~Method_2M() = default;
};

template <class T1, class T2, class T3>
class Method_3M {
 public:
  virtual int Execute(T1* first, int firstStep, T2* second, int secondStep, T3* third, int thirdStep,
                      Size roi) = 0;

 protected:
  ~Method_3M() = default;
};

/// Holds the result of an operation that returns a value: all zero until Execute has run.
template <class R>
class MethodBase_R {
 public:
  R result{};
};

template <class T, class R>
class Method_1M_R : public Method_1M<T>, public MethodBase_R<R> {};

template <class T1, class T2, class R>
class Method_2M_R : public Method_2M<T1, T2>, public MethodBase_R<R> {};

/// The images of a call, in the order of the facade's parameters.
template <class... T>
std::tuple<IppIMemory<T>&...> over(IppIMemory<T>&... images) {
  return {images...};
}

/// Cold and not inlined, so that calls that succeed spend no register on it.
[[noreturn, gnu::cold, gnu::noinline]] inline void raise(int status) {
  throw IppException(static_cast<eIppResultStatus>(status));
}

/// Throws 29 unless `rect` fits `image`. The sums wrap on 32 bits. Nothing else of the rectangle is tested.
template <class T>
void requireFit(Rect rect, const IppIMemory<T>& image) {
  if (Primitives::wrappedSum(rect.x, rect.width) > image.width() ||
      Primitives::wrappedSum(rect.y, rect.height) > image.height()) {
    raise(ippStsWrongIntersectROI);
  }
}

inline void raiseUnlessZero(int status) {
  if (status != 0) raise(status);
}

/// The operands of the region `rect` in each image: the address of its first pixel and the image's row step.
template <class... T>
auto operandsOf(std::tuple<IppIMemory<T>&...> images, Rect rect) {
  return std::apply(
      [rect](auto&... image) {
        return std::tuple_cat(std::make_tuple(image.ToIppStream(rect), image.imageStep())...);
      },
      images);
}

/// Executes `method` on the operands and throws every status but zero. Tests no rectangle.
template <class Method, class Operands>
void execute(Method& method, const Operands& operands, Size roi) {
  raiseUnlessZero(std::apply([&](auto... operand) { return method.Execute(operand..., roi); }, operands));
}

/// Every facade call: tests `rect` against each image in order, constructs the Method object from its fixed
/// arguments, executes it, and returns its result if it has one.
template <class Method, class... T, class... Fixed>
auto Run(std::tuple<IppIMemory<T>&...> images, Rect rect, Fixed... fixed) {
  std::apply([rect](auto&... image) { (requireFit(rect, image), ...); }, images);
  Method method(fixed...);
  execute(method, operandsOf(images, rect), {rect.width, rect.height});
  if constexpr (requires { method.result; }) return method.result;
}

}  // namespace Zorvan::Ipp::Image::Methods
