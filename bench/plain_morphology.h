#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

/// The most obvious loops, left to the compiler and this machine's instruction set: the extreme of `side` by
/// `side` pixels around each, the edge repeated outward. Rows, then columns: the loop over the whole square
/// would be no match.
namespace Zorvan::Bench::Plain {

template <class T>
void dilate(const T* src, T* dst, int side, Size size);
template <class T>
void erode(const T* src, T* dst, int side, Size size);

}  // namespace Zorvan::Bench::Plain
