#pragma once

#include "zorvan/foundation/Geometry.h"

/// The most obvious loops, left to the compiler and this machine's instruction set.
namespace Zorvan::Bench::Plain {

/// Fills the area around the first pixel, pixel by pixel, with a list of pixels to examine.
template <class T>
void floodFill(T* image, T value, Size size);

}  // namespace Zorvan::Bench::Plain
