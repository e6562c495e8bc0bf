#pragma once

// How a search for masked extremes cuts a region. Pure, so that the limit can be tested on any
// machine.

namespace Zorvan::Primitives {
namespace {

/// Pixels of a block: some hundred steps between two looks at what the lanes hold, and few enough to be
/// walked again for a position at hardly any cost.
constexpr int extremeBlockPixels = 8192;

/// Rows of a block; one at least.
constexpr int rowsOfBlock(int width) { return width < extremeBlockPixels ? extremeBlockPixels / width : 1; }

}  // namespace
}  // namespace Zorvan::Primitives
