#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"
#include "zorvan/operations/statistic/Statistic.h"

/// The most obvious loops, left to the compiler and this machine's instruction set.
namespace Zorvan::Bench::Plain {

template <class T>
T minimum(const T* image, Size size);
template <class T>
T maximum(const T* image, Size size);

template <class T>
double mean(const T* image, Size size);
template <class T>
double meanMask(const T* image, const u8* mask, Size size);
template <class T>
MeanStdDev meanDeviationMask(const T* image, const u8* mask, Size size);
template <class T>
MinMaxIndex extremesMask(const T* image, const u8* mask, Size size);

}  // namespace Zorvan::Bench::Plain
