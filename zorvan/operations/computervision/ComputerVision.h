#pragma once

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan {

/// The area that a flood fill has filled.
struct ZORVAN_IPP_API ConnectionInfo {
  /// Number of pixels filled.
  double area;
  /// The new pixel value in `value[0]`; the other two are 0.
  double value[3];
  /// Bounding rectangle of the filled pixels within the region: `x` is its first column and `y` its first
  /// row, both counted from the region's first pixel, not from the image's.
  Rect rect;
};

}  // namespace Zorvan

namespace Zorvan::Ipp::Image {

/// Operations on connected areas.
class ZORVAN_IPP_API ComputerVision {
 public:
  /// Sets to `value` the pixels of the region `rect` of `image` that are connected with the pixel at `seed`
  /// and equal to it. Returns their number and bounding rectangle. Pixels are connected over their four
  /// sides, not over corners. Exists for `u8`, `u16`, `int` and `float`. Float pixels are compared as
  /// numbers: the two zeros are equal, and a seed on a NaN fills that one pixel.
  ///
  /// `seed` and the result's `rect` are columns (`x`) and rows (`y`) of the region: their origin is the
  /// region's first pixel. The region itself starts at element `rect.x * width + rect.y`, see Rect.
  ///
  /// If the pixel at the seed equals `value` already, nothing is written and all members of the result are 0.
  ///
  /// Throws IppException 29 (ippStsWrongIntersectROI) if `rect` does not fit the image, -8
  /// (ippStsNullPtrErr) for an image without a buffer or when memory runs out, -11 (ippStsOutOfRangeErr) for
  /// a seed outside the region, -16 (ippStsStepErr) for a region wider than the image, which passes the test
  /// if `rect.x` is negative; std::exception, "invalid length", for a region with a width or height below 1.
  /// If there is no memory for the text of a failure, std::bad_alloc is thrown instead. Nothing is written
  /// then.
  ///
  /// Each call allocates work memory of about 8 bytes per pixel of the region, which is enough for every
  /// image. Throws std::exception, "invalid length", for regions of more than 357913935 pixels.
  template <class T>
  static ConnectionInfo FloodFill(IppIMemory<T>& image, Point seed, T value, Rect rect);

  /// @{
  /// Objects can be constructed, copied and moved, and have no data.
  ComputerVision() = default;
  ComputerVision(const ComputerVision&) = default;
  ComputerVision(ComputerVision&&) = default;
  /// @}

  /// @{
  /// Assignments have no effect.
  ComputerVision& operator=(const ComputerVision& other);
  ComputerVision& operator=(ComputerVision&& other);
  /// @}
};

}  // namespace Zorvan::Ipp::Image
