#pragma once

#include "zorvan/foundation/Geometry.h"

/// The most obvious loops, left to the compiler and this machine's instruction set.
namespace Zorvan::Bench::Plain {

/// The Laplace filters with a replicated border.
template <class T>
void laplace3x3(const T* src, T* dst, Size size);
template <class T>
void laplace5x5(const T* src, T* dst, Size size);

}  // namespace Zorvan::Bench::Plain
