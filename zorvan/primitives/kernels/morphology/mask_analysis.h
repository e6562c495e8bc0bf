#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/primitives/frame/MorphSpec.h"

namespace Zorvan::Primitives::Morphology {

/// On which sides unset cells pad a mask of even width or height.
enum class MaskPadding { topLeft, bottomRight };

/// Fills the record and its tables from a mask of `size` cells. The record may lie at any address.
void analyseMask(const u8* mask, Size size, MorphSpec* spec, MaskPadding padding);

}  // namespace Zorvan::Primitives::Morphology
