#pragma once

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Reference {

/// The square of floats in the oldest three variants: rows lie at whole pixels, and the bytes of a step that
/// are left over do not count. The entry itself is defined to take a step as it stands.
int squareAtWholePixels(const float* src, int srcStep, float* dst, int dstStep, Size roi);
int squareAtWholePixelsInPlace(float* srcDst, int srcDstStep, Size roi);

}  // namespace Zorvan::Reference
