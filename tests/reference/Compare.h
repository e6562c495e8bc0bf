#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Reference {

/// Comparison of floats in the two newest variants: greater is "not less or equal" and greater or equal is
/// "not less", so that both are true for a NaN.
int compareWithNanAbove(const float* src, int srcStep, float value, u8* dst, int dstStep, Size roi,
                        int comparison);

}  // namespace Zorvan::Reference
