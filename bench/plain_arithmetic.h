#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

/// The most obvious loops, left to the compiler and this machine's instruction set.
namespace Zorvan::Bench::Plain {

template <class T>
struct Arithmetic {
  // The first image is the subtrahend, and the divisor.
  static void add(const T* a, const T* b, T* c, Size size);
  static void subtract(const T* a, const T* b, T* c, Size size);
  static void multiply(const T* a, const T* b, T* c, Size size);
  static void divide(const T* a, const T* b, T* c, Size size);
  static void addInPlace(const T* a, T* b, Size size);
  static void subtractInPlace(const T* a, T* b, Size size);
  static void multiplyInPlace(const T* a, T* b, Size size);
  static void divideInPlace(const T* a, T* b, Size size);
  static void addConstant(T* image, T value, Size size);
  static void addConstantMasked(T* image, const u8* mask, T value, Size size);
  static void accumulate(const T* src, float* srcDst, const u8* mask, Size size);
  static void absolute(const T* src, T* dst, Size size);
  static void absoluteInPlace(T* image, Size size);
  static void square(const T* src, T* dst, Size size);
  static void squareInPlace(T* image, Size size);
  static void squareRoot(const T* src, T* dst, Size size);
  static void squareRootInPlace(T* image, Size size);
};

}  // namespace Zorvan::Bench::Plain
