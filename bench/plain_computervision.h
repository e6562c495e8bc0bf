#pragma once

#include "zorvan/foundation/Geometry.h"

/// The most obvious loops, left to the compiler and this machine's instruction set.
namespace Zorvan::Bench::Plain {

/// Fills the area around the first pixel, pixel by pixel from a list of those to look at.
template <class T>
void floodFill(T* image, T value, Size size);

}  // namespace Zorvan::Bench::Plain
