#pragma once

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan {

/// What a flood fill has filled.
struct ZORVAN_IPP_API ConnectionInfo {
  /// Number of pixels filled.
  double area;
  /// The new pixel value in `value[0]`; the other two are 0.
  double value[3];
  /// Bounding rectangle of the filled pixels within the region: `x` is its first column and `y` its first
  /// row, both counted from the region's first pixel, and not from the image's.
  Rect rect;
};

}  // namespace Zorvan

namespace Zorvan::Ipp::Image {

/// Operations on connected areas.
class ZORVAN_IPP_API ComputerVision {
 public:
  /// Gives `value` to the pixels of the region `rect` of `image` that are connected with the pixel at `seed`
  /// and equal to it, and tells their number and bounding rectangle. Pixels are connected over their four
  /// sides, not over corners. Exists for `u8`, `u16`, `int` and `float`; float pixels are compared as
  /// numbers, so the two zeros are equal, and a seed on a NaN fills that one pixel.
  ///
  /// `seed` and the result's `rect` are columns (`x`) and rows (`y`) of the region: their origin is the
  /// region's first pixel. The region itself starts at element `rect.x * width + rect.y`, see Rect.
  ///
  /// Where the pixel at the seed equals `value` already, nothing is done and all of the result is 0.
  ///
  /// Raises IppException 29 (ippStsWrongIntersectROI) if `rect` does not fit the image, -8
  /// (ippStsNullPtrErr) for an image without a buffer or when memory runs out, -11 (ippStsOutOfRangeErr) for
  /// a seed outside the region; std::exception, "invalid length", for a region with a width or height
  /// below 1. Nothing is written then.
  ///
  /// Each call allocates work memory of about 8 bytes per pixel of the region, which serves every image.
  /// Regions of more than 357913935 pixels are refused: std::exception, "invalid length".
  template <class T>
  static ConnectionInfo FloodFill(IppIMemory<T>& image, Point seed, T value, Rect rect);

  /// Objects can be made, copied and moved, and hold nothing.
  ComputerVision() = default;
  ComputerVision(const ComputerVision&) = default;
  ComputerVision(ComputerVision&&) = default;

  /// Assignments exist and do nothing: the class has no data.
  ComputerVision& operator=(const ComputerVision& other);
  ComputerVision& operator=(ComputerVision&& other);
};

}  // namespace Zorvan::Ipp::Image
