#include "bench/families.h"
#include "bench/plain_arithmetic.h"
#include "zorvan/operations/arithmetic/IppIArithmetic.h"

namespace Zorvan::Bench {

namespace {

using Ipp::Image::IppIArithmetic;
using Ipp::Image::IppIMemory;

/// Operands and results by pixel type. Floats that are multiplied or divided repeatedly must stay in their
/// range. Quotients and roots of floats come from estimates, and so do quotients of bytes, so ties depend on
/// the processor.
template <class T>
struct Operands {
  using Factor = Read<T>;
  using Divisor = Odd<Read<T>>;
  using DivisorInPlace = Divisor;
  using Quotient = Write<T>;
  using QuotientInPlace = Update<T>;
  using Radicand = Read<T>;
  using Root = Write<T>;
  using RootInPlace = Update<T>;
};
template <>
struct Operands<float> {
  using Factor = Unit<Read<float>>;
  using Divisor = Read<float>;
  using DivisorInPlace = Factor;
  using Quotient = Estimated<Write<float>>;
  using QuotientInPlace = Estimated<Update<float>>;
  using Radicand = Positive<Read<float>>;
  using Root = Estimated<Write<float>>;
  using RootInPlace = Estimated<Positive<Update<float>>>;
};

template <class T>
void addBinary(Suite& suite, const char* pixels) {
  using A = IppIArithmetic<T>;
  using P = Plain::Arithmetic<T>;
  using Image = IppIMemory<T>;
  using O = Operands<T>;
  suite.add<Read<T>, Read<T>, Write<T>>(
      "add", pixels, [](Image& a, Image& b, Image& c, Rect rect) { A::Add(a, b, c, rect); }, P::add);
  suite.add<Read<T>, Read<T>, Write<T>>(
      "sub", pixels, [](Image& a, Image& b, Image& c, Rect rect) { A::Subtract(a, b, c, rect); },
      P::subtract);
  suite.add<Read<T>, Read<T>, Write<T>>(
      "mul", pixels, [](Image& a, Image& b, Image& c, Rect rect) { A::Multiply(a, b, c, rect); },
      P::multiply);
  suite.add<typename O::Divisor, Read<T>, typename O::Quotient>(
      "div", pixels, [](Image& a, Image& b, Image& c, Rect rect) { A::Divide(a, b, c, rect); }, P::divide);
  suite.add<Read<T>, Update<T>>(
      "add_inplace", pixels, [](Image& a, Image& b, Rect rect) { A::Add(a, b, rect); }, P::addInPlace);
  suite.add<Read<T>, Update<T>>(
      "sub_inplace", pixels, [](Image& a, Image& b, Rect rect) { A::Subtract(a, b, rect); },
      P::subtractInPlace);
  suite.add<typename O::Factor, Update<T>>(
      "mul_inplace", pixels, [](Image& a, Image& b, Rect rect) { A::Multiply(a, b, rect); },
      P::multiplyInPlace);
  suite.add<typename O::DivisorInPlace, typename O::QuotientInPlace>(
      "div_inplace", pixels, [](Image& a, Image& b, Rect rect) { A::Divide(a, b, rect); }, P::divideInPlace);
}

template <class T>
void addUnary(Suite& suite, const char* pixels) {
  using A = IppIArithmetic<T>;
  using P = Plain::Arithmetic<T>;
  using Image = IppIMemory<T>;
  using O = Operands<T>;
  suite.add<Update<T>>(
      "addc_inplace", pixels, [](Image& image, Rect rect) { A::AddC(image, T{3}, rect); },
      [](T* image, Size size) { P::addConstant(image, T{3}, size); });
  suite.add<Update<T>, FullMask>(
      "addc_mask_full", pixels,
      [](Image& image, IppIMemory<u8>& mask, Rect rect) { A::AddCWithMask(image, mask, T{3}, rect); },
      [](T* image, const u8* mask, Size size) { P::addConstantMasked(image, mask, T{3}, size); });
  suite.add<Read<T>, Write<T>>(
      "sqr", pixels, [](Image& src, Image& dst, Rect rect) { A::Square(src, dst, rect); }, P::square);
  suite.add<Update<T>>(
      "sqr_inplace", pixels, [](Image& image, Rect rect) { A::Square(image, rect); }, P::squareInPlace);
  suite.add<typename O::Radicand, typename O::Root>(
      "sqrt", pixels, [](Image& src, Image& dst, Rect rect) { A::SquareRoot(src, dst, rect); },
      P::squareRoot);
  suite.add<typename O::RootInPlace>(
      "sqrt_inplace", pixels, [](Image& image, Rect rect) { A::SquareRoot(image, rect); },
      P::squareRootInPlace);
}

/// Bytes have no absolute value.
void addAbsolute(Suite& suite) {
  using A = IppIArithmetic<float>;
  using P = Plain::Arithmetic<float>;
  using Image = IppIMemory<float>;
  suite.add<Read<float>, Write<float>>(
      "abs", "f32", [](Image& src, Image& dst, Rect rect) { A::Absolute(src, dst, rect); }, P::absolute);
  suite.add<Update<float>>(
      "abs_inplace", "f32", [](Image& image, Rect rect) { A::Absolute(image, rect); }, P::absoluteInPlace);
}

template <class T>
void addAccumulate(Suite& suite, const char* pixels) {
  suite.add<Read<T>, Update<float>, RandomMask>(
      "accumulate_mask", pixels,
      [](IppIMemory<T>& src, IppIMemory<float>& srcDst, IppIMemory<u8>& mask, Rect rect) {
        IppIArithmetic<T>::AddWithMask(src, srcDst, mask, rect);
      },
      Plain::Arithmetic<T>::accumulate);
}

}  // namespace

void addArithmetic(Suite& suite) {
  addBinary<u8>(suite, "u8");
  addBinary<float>(suite, "f32");
  addUnary<u8>(suite, "u8");
  addUnary<float>(suite, "f32");
  addAbsolute(suite);
  addAccumulate<u8>(suite, "u8_f32");
  addAccumulate<float>(suite, "f32");
}

}  // namespace Zorvan::Bench
