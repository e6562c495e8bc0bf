#pragma once

#include <cstdint>

#include "zorvan/foundation/Export.h"

namespace Zorvan {

/// Extent of an image or region, in pixels.
struct ZORVAN_IPP_API Size {
  std::int32_t width;
  std::int32_t height;
};

/// A place in a region: `x` is the column, `y` the row, both counted from 0.
struct ZORVAN_IPP_API Point {
  std::int32_t x;
  std::int32_t y;
};

/// A region of interest. `width` and `height` are its extent in pixels.
///
/// Mind the origin: every operation bounds `x` by the image's width and `y` by its height, but the region
/// starts at element `x * image width + y` of the pixel block. `x` therefore counts rows down, and `y`
/// counts pixels along the row:
///
///                       y
///                  |-------->
///            +-------------------------+
///          | |                         |
///        x | |                         |
///          v |         +------+        |
///            |         |region| height |
///            |         +------+        |
///            |          width          |
///            +-------------------------+
///
/// A region can pass the test and still leave the block: `x + height` may exceed the image's height, and
/// `y + width` its width, without a failure being reported. Keeping `x + height` within the height and
/// `y + width` within the width is up to the caller.
struct ZORVAN_IPP_API Rect {
  std::int32_t x;
  std::int32_t y;
  std::int32_t width;
  std::int32_t height;
};

}  // namespace Zorvan
