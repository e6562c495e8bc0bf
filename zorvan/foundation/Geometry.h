#pragma once

#include <cstdint>

#include "zorvan/foundation/Export.h"

namespace Zorvan {

/// Extent of an image or region, in pixels.
struct ZORVAN_IPP_API Size {
  std::int32_t width;   ///< pixels of a row
  std::int32_t height;  ///< rows
};

/// A position in a region: `x` is the column, `y` the row, both counted from 0.
struct ZORVAN_IPP_API Point {
  std::int32_t x;  ///< column
  std::int32_t y;  ///< row
};

/// A region of interest. `width` and `height` are its extent in pixels.
///
/// The origin has a special meaning. Every operation tests `x` against the image's width and `y` against its
/// height, but the region starts at element `x * image width + y` of the pixel block. `x` therefore counts
/// rows from the top, and `y` counts pixels from the left:
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
/// A region that passes the test can still lie partly outside the pixel block: `x + height` may exceed the
/// image's height, and `y + width` its width, and no failure is reported. The caller must keep `x + height`
/// within the height and `y + width` within the width, and `x` times the image's width below 2^31.
struct ZORVAN_IPP_API Rect {
  std::int32_t x;       ///< the first row
  std::int32_t y;       ///< the first column
  std::int32_t width;   ///< pixels of a row of the region
  std::int32_t height;  ///< rows of the region
};

}  // namespace Zorvan
