#pragma once

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Ipp::Image {

/// Arithmetic on the pixels of images. Pixel types are `u8` and `float`.
///
/// Results of `u8` saturate to 0 to 255; a result that is not an integer is rounded to nearest, quotients
/// halfway between two integers to either of them, in the default rounding mode. `float` follows IEEE
/// arithmetic in the processor's current rounding mode: results that overflow become infinities, and
/// infinities and NaN propagate, unless stated otherwise at an operation.
///
/// Subtract subtracts its *first* image, and Divide divides by its *first* image.
///
/// Every operation works on the region `rect`, which is applied to every image of the call, each with its own
/// width: see Rect for where it starts. The last image of the parameters, apart from masks, is written. It
/// may be the same image as a source, but must not overlap a source otherwise. A rectangle that does not fit
/// an image throws IppException 29 (ippStsWrongIntersectROI) before anything is written; the images are
/// tested in the order of the parameters, unless stated otherwise.
///
/// Other failures, thrown as IppException before anything is written: -8 (ippStsNullPtrErr) for an image
/// without a buffer, -6 (ippStsSizeErr) for a region with a width or height below 1; of Divide, Square,
/// SquareRoot and Absolute also -16 (ippStsStepErr) for an image of width 0; of AddWithMask also -16 for a
/// region wider than an image, which passes the test if `rect.x` is negative.
///
/// The statuses 2 of Divide and 3 of SquareRoot are warnings: they are thrown as IppException after all
/// pixels of the region have been written. If there is no memory for the text of a failure or a warning,
/// std::bad_alloc is thrown instead.
template <class T>
class ZORVAN_IPP_API IppIArithmetic {
 public:
  /// `c = a + b`.
  static void Add(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect);

  /// `b = a + b`.
  static void Add(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect);

  /// `image = image + value`.
  static void AddC(IppIMemory<T>& image, T value, Rect rect);

  /// `srcDst = srcDst + src` where `mask` is not zero. The sum is a float for both pixel types, rounded
  /// once for each pixel, in the current rounding mode.
  ///
  /// The pixels that are not selected keep their values, with two exceptions that depend on the processor:
  /// -0.0 may become 0.0, and an infinite or NaN pixel of a float `src` may make the pixel NaN.
  ///
  /// The rectangle is tested with `src`, then `mask`, then `srcDst`.
  static void AddWithMask(IppIMemory<T>& src, IppIMemory<float>& srcDst, IppIMemory<u8>& mask, Rect rect);

  /// `image = image + value` where `mask` is not zero.
  ///
  /// The other pixels of the region have undefined results: pixels of a new image that are not initialised
  /// are added to them. Use AddWithMask, or fill an image and add it, if they matter.
  ///
  /// Throws std::exception, "invalid image size", if `image` has a width or height below 1, and IppException
  /// -8 if there is no memory for the new image. `mask` may overlap `image` in memory in any way.
  static void AddCWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask, T value, Rect rect);

  /// `c = b - a`. For `u8` the result is 0 where `a` is greater.
  static void Subtract(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect);

  /// `b = b - a`. For `u8` the result is 0 where `a` is greater.
  static void Subtract(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect);

  /// `c = a * b`.
  static void Multiply(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect);

  /// `b = a * b`.
  static void Multiply(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect);

  /// `c = b / a`. A zero in `a` throws IppException 2 (ippStsDivByZero) after all pixels have been written.
  /// A `u8` pixel divided by zero becomes 255, or 0 if it is 0. A `float` pixel divided by a zero of either
  /// sign becomes an infinity with the sign of `b`, or NaN if it is zero or NaN. A NaN in `a` makes the
  /// result NaN and throws nothing. Float quotients may differ from the nearest float by some units in the
  /// last place.
  static void Divide(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect);

  /// `b = b / a`, as above.
  static void Divide(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect);

  /// `dst = |src|`: the sign bit is cleared, including that of a NaN. For `u8` it throws IppException -59
  /// (ippStsDataTypeErr) for every rectangle that fits.
  static void Absolute(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect);

  /// `image = |image|`, as above.
  static void Absolute(IppIMemory<T>& image, Rect rect);

  /// `dst = src * src`.
  static void Square(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect);

  /// `image = image * image`.
  static void Square(IppIMemory<T>& image, Rect rect);

  /// `dst = sqrt(src)`. Float roots may differ from the nearest float by some units in the last place. A
  /// negative pixel becomes NaN and throws IppException 3 (ippStsSqrtNegArg) after all pixels have been
  /// written; -0.0 is not negative, and is its own root. If any floating-point exception is unmasked, the
  /// roots of floats mask all and restore the control state at the end.
  static void SquareRoot(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect);

  /// `image = sqrt(image)`, as above.
  static void SquareRoot(IppIMemory<T>& image, Rect rect);

  /// @{
  /// Objects can be constructed, copied and moved, and have no data.
  IppIArithmetic() = default;
  IppIArithmetic(const IppIArithmetic&) = default;
  IppIArithmetic(IppIArithmetic&&) = default;
  /// @}

  /// @{
  /// Assignments have no effect.
  IppIArithmetic& operator=(const IppIArithmetic& other);
  IppIArithmetic& operator=(IppIArithmetic&& other);
  /// @}
};

}  // namespace Zorvan::Ipp::Image
