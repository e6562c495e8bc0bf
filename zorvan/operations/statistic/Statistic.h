#pragma once

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan {

/// Mean and standard deviation of the pixels that a mask selects.
struct ZORVAN_IPP_API MeanStdDev {
  double Mean;
  double StdDev;
};

/// The extremes of the pixels that a mask selects, and where they lie: column (`x`) and row (`y`) from the
/// region's first pixel.
struct ZORVAN_IPP_API MinMaxIndex {
  float Min;
  Point MinIndex;
  float Max;
  Point MaxIndex;
};

namespace Ipp::Image {

/// Reduces a region to a value or a record of values. Exists for `T` of `u8`, `u16` and `float`; images are
/// never written.
///
/// A mask is an 8-bit image; a pixel is selected exactly when its mask byte is not zero.
///
/// The rectangle is applied to image and mask, each by its own width, and tested with the image, then the
/// mask: see Rect. One that does not fit raises IppException 29 (ippStsWrongIntersectROI). Other failures of
/// all functions, raised as IppException: -8 (ippStsNullPtrErr) for an image without a buffer, -6
/// (ippStsSizeErr) for a region with a width or height below 1; with a mask also -16 (ippStsStepErr) for a
/// region wider than image or mask, which passes the test where `rect.x` is negative.
template <class T>
class ZORVAN_IPP_API Statistic {
 public:
  /// The smallest pixel of the region. A `float` region is not searched for NaN: one may be the result or be
  /// passed over, depending on where it lies and on the processor. Before AVX2 a region of nothing but
  /// positive infinity gives the largest finite value. The sign of a zero result is open where the region
  /// holds zeros of both signs.
  static T Min(IppIMemory<T>& image, Rect rect);

  /// The largest pixel of the region. NaN as for Min. Before AVX2 a region of nothing but negative infinity
  /// gives the lowest finite value.
  static T Max(IppIMemory<T>& image, Rect rect);

  /// The mean of the region: the sum of its pixels divided by their number.
  ///
  /// The sum of integer pixels is exact. Their mean is cut off to a whole number, never rounded: of 1 and 2
  /// it is 1. The sum of `float` pixels is formed in double precision, and the mean is rounded to float; a
  /// NaN pixel makes it NaN.
  static T Mean(IppIMemory<T>& image, Rect rect);

  /// The mean of the selected pixels, converted as above; 0 if none is selected.
  ///
  /// The sum of `u8` pixels is exact; so is that of `u16` pixels as long as the selected pixels of each row
  /// add up to less than 2^31, which rows of 32767 pixels always do. `float` pixels are added in single
  /// precision, some hundred at a time, and these sums in double. Unselected pixels have no effect, even NaN.
  static T Mean(IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect);

  /// Mean and population standard deviation of the selected pixels, both 0 if none is selected: the root of
  /// the mean squared distance from the mean, divided by the number of pixels, not by one less.
  ///
  /// For `u8` both come from exact sums. `float` pixels and their squares are added in single precision
  /// within each row; where the deviation is small against the mean, a second pass adds the distances from
  /// the mean instead, so that it keeps its digits. Squares beyond the range of a float make the deviation
  /// infinite.
  ///
  /// For `u16` the region is read as bytes: of each row as many bytes as the region is wide, from its first
  /// pixel on, the low byte of each pixel before its high byte, paired with the bytes of the mask one to one.
  static MeanStdDev MeanAndStandardDeviationWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect);

  /// The extremes of the selected pixels of the whole image. The mask must be at least as large; of a larger
  /// one the top left part counts. Otherwise as below.
  static MinMaxIndex MinMaxIndexWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask);

  /// The extremes of the selected pixels and the first place of each, rows from the top and in a row from the
  /// left. A selected NaN leaves the result open.
  ///
  /// Raises IppException 1 (ippStsNoOperation) if no pixel is selected; with AVX2 and later a selected NaN
  /// can raise it too. For `u16` it raises -59 (ippStsDataTypeErr) for every region that fits.
  static MinMaxIndex MinMaxIndexWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect);

  /// Objects can be made, copied and moved, and hold nothing.
  Statistic() = default;
  Statistic(const Statistic&) = default;
  Statistic(Statistic&&) = default;

  /// Assignments exist and do nothing: the class has no data.
  Statistic& operator=(const Statistic& other);
  Statistic& operator=(Statistic&& other);
};

}  // namespace Ipp::Image
}  // namespace Zorvan
