#pragma once

// The blocks of rows of a search for masked extremes. Pure, so that the limit can be tested on any machine.

#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// Rows of a block; one at least.
constexpr int rowsOfBlock(int width) { return width < extremeBlockPixels ? extremeBlockPixels / width : 1; }

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
