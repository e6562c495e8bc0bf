#pragma once

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan {

/// Mean and standard deviation of the pixels that a mask selects.
struct ZORVAN_IPP_API MeanStdDev {
  double Mean;    ///< sum of the selected pixels by their number
  double StdDev;  ///< root of the mean squared distance from the mean
};

/// The extremes of the pixels that a mask selects, and where they lie: column (`x`) and row (`y`) from the
/// region's first pixel.
struct ZORVAN_IPP_API MinMaxIndex {
  float Min;       ///< the smallest selected pixel
  Point MinIndex;  ///< the first place that holds it
  float Max;       ///< the largest selected pixel
  Point MaxIndex;  ///< the first place that holds it
};

namespace Ipp::Image {

/// Reduces a region to a value or a record of values. Exists for `T` of `u8`, `u16` and `float`; images are
/// never written.
///
/// A mask is an 8-bit image; a pixel is selected exactly when its mask byte is not zero.
///
/// The rectangle is applied to image and mask, each with its own width, and tested with the image, then the
/// mask: see Rect. A rectangle that does not fit throws IppException 29 (ippStsWrongIntersectROI). Other
/// failures of all functions, thrown as IppException: -8 (ippStsNullPtrErr) for an image without a buffer, -6
/// (ippStsSizeErr) for a region with a width or height below 1; with a mask also -16 (ippStsStepErr) for a
/// region wider than image or mask, which passes the test if `rect.x` is negative. If there is no memory for
/// the text of a failure, std::bad_alloc is thrown instead.
template <class T>
class ZORVAN_IPP_API Statistic {
 public:
  /// The smallest pixel of the region. A NaN of a `float` region may be the result or be ignored, depending
  /// on its position and on the processor. Before AVX2 the result of a region of only positive infinities is
  /// the largest finite value. The sign of a zero result is not specified if the region has zeros of both
  /// signs.
  static T Min(IppIMemory<T>& image, Rect rect);

  /// The largest pixel of the region. NaN as for Min. Before AVX2 the result of a region of only negative
  /// infinities is the lowest finite value.
  static T Max(IppIMemory<T>& image, Rect rect);

  /// The mean of the region: the sum of its pixels divided by their number, which must be below 2^31.
  ///
  /// The sum of integer pixels is exact. Their mean is truncated to an integer, not rounded: of 1 and 2 it
  /// is 1. The sum of `float` pixels is formed in double precision, and the mean is rounded to float; a
  /// NaN pixel makes it NaN.
  static T Mean(IppIMemory<T>& image, Rect rect);

  /// The mean of the selected pixels, converted as above; 0 if none is selected.
  ///
  /// The sum of `u8` pixels is exact; so is that of `u16` pixels if the selected pixels of each row add up to
  /// less than 2^31, which is always so for rows of up to 32767 pixels. `float` pixels are added in single
  /// precision, some hundred at a time, and these sums in double precision. Unselected pixels have no effect,
  /// even NaN.
  static T Mean(IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect);

  /// Mean and population standard deviation of the selected pixels, both 0 if none is selected. The deviation
  /// is the root of the mean squared distance from the mean; the divisor is the number of pixels, not one
  /// less.
  ///
  /// For `u8` both come from exact sums. `float` pixels and their squares are added in single precision
  /// within each row. If the deviation is small against the mean, a second pass over the region adds the
  /// distances from the mean instead, for accuracy. Squares beyond the range of a float make the deviation
  /// infinite.
  ///
  /// For `u16` the pixels of each row are read as bytes, the low byte of a pixel before its high byte: the
  /// first `rect.width` bytes, each with one byte of the mask.
  static MeanStdDev MeanAndStandardDeviationWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect);

  /// The extremes of the selected pixels of the whole image. The mask must be at least as large; of a larger
  /// mask the top left part is used. Otherwise like the overload below.
  static MinMaxIndex MinMaxIndexWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask);

  /// The extremes of the selected pixels and the first position of each, in the order of rows and, in a row,
  /// of columns. If a NaN is selected, the result is not specified.
  ///
  /// Throws IppException 1 (ippStsNoOperation) if no pixel is selected; with AVX2 and later a selected NaN
  /// can throw it too. For `u16` it throws -59 (ippStsDataTypeErr) for every region that fits.
  static MinMaxIndex MinMaxIndexWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect);

  /// @{
  /// Objects can be constructed, copied and moved, and have no data.
  Statistic() = default;
  Statistic(const Statistic&) = default;
  Statistic(Statistic&&) = default;
  /// @}

  /// @{
  /// Assignments have no effect.
  Statistic& operator=(const Statistic& other);
  Statistic& operator=(Statistic&& other);
  /// @}
};

}  // namespace Ipp::Image
}  // namespace Zorvan
