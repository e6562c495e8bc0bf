#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Reference {

// The largest difference between the result of a variant and that of the reference: each variant has its own
// order of additions. Depends on the magnitudes of the pixels; infinite if single precision overflows. The
// parameters are those of the entry.

/// Of the mean of floats.
double toleranceOf(const float* src, int srcStep, Size roi, const double* mean, int hint);

/// Of the masked mean of floats.
double toleranceOf(const float* src, int srcStep, const u8* mask, int maskStep, Size roi, const double* mean);

/// Of mean and deviation: integers lose digits in one difference of doubles, floats add squares in single
/// precision.
double toleranceOf(const u8* src, int srcStep, const u8* mask, int maskStep, Size roi, const double* mean,
                   const double* stdDev);
double toleranceOf(const float* src, int srcStep, const u8* mask, int maskStep, Size roi, const double* mean,
                   const double* stdDev);

}  // namespace Zorvan::Reference
