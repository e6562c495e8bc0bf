#pragma once

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Reference {

/// The square of floats in the oldest three variants: rows lie at whole pixels, since the step is rounded
/// down to whole pixels. The definition of the entry uses the step as it is.
int squareAtWholePixels(const float* src, int srcStep, float* dst, int dstStep, Size roi);
int squareAtWholePixelsInPlace(float* srcDst, int srcDstStep, Size roi);

}  // namespace Zorvan::Reference
