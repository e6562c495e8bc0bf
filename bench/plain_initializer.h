#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

/// The most obvious loops, left to the compiler and this machine's instruction set.
namespace Zorvan::Bench::Plain {

template <class T>
void fill(T* image, T value, Size size);

template <class T>
void fillMask(T* image, const u8* mask, T value, Size size);

template <class T>
void copy(const T* src, T* dst, Size size);

template <class T>
void copyMask(const T* src, T* dst, const u8* mask, Size size);

template <class T1, class T2>
void convert(const T1* src, T2* dst, Size size);

}  // namespace Zorvan::Bench::Plain
