#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Reference {

// How far the result of a variant may lie from the reference's, in either direction: the order of additions
// is the variant's own. Follows from the magnitudes of the pixels; infinite where single precision overflows.
// Each takes the arguments of the entry.

/// Of the mean of floats.
double toleranceOf(const float* src, int srcStep, Size roi, const double* mean, int hint);

/// Of the masked mean of floats.
double toleranceOf(const float* src, int srcStep, const u8* mask, int maskStep, Size roi, const double* mean);

/// Of a mean and its deviation: integers lose digits in one difference of doubles, floats add squares in
/// single precision.
double toleranceOf(const u8* src, int srcStep, const u8* mask, int maskStep, Size roi, const double* mean,
                   const double* stdDev);
double toleranceOf(const float* src, int srcStep, const u8* mask, int maskStep, Size roi, const double* mean,
                   const double* stdDev);

}  // namespace Zorvan::Reference
