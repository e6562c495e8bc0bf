#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

/// The most obvious loops, left to the compiler and this machine's instruction set: the extreme of `side` by
/// `side` pixels around each pixel, with a replicated border. A row pass and a column pass: a loop over the
/// whole square would be much slower.
namespace Zorvan::Bench::Plain {

template <class T>
void dilate(const T* src, T* dst, int side, Size size);
template <class T>
void erode(const T* src, T* dst, int side, Size size);

}  // namespace Zorvan::Bench::Plain
