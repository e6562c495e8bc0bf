#pragma once

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Ipp::Image {

/// Arithmetic on the pixels of images. Pixel types are `u8` and `float`.
///
/// Results of `u8` are limited to 0 to 255; where a result is no integer, it is rounded to nearest with ties
/// to even. `float` follows IEEE arithmetic in the processor's current rounding mode: what overflows becomes
/// an infinity, and infinities and NaN go through, unless stated otherwise at an operation.
///
/// Subtract and Divide take away, and divide by, their *first* image.
///
/// Every operation works on the region `rect`, which is applied to every image of the call, each by its own
/// width: see Rect for where it starts. The last image named, masks aside, is the one that is written; it may
/// be the same image as a source, but may not otherwise overlap one. A rectangle that does not fit an image
/// raises IppException 29 (ippStsWrongIntersectROI) before anything is written; the images are tested in the
/// order of the parameters, unless stated otherwise.
///
/// Other failures, raised as IppException before anything is written: -8 (ippStsNullPtrErr) for an image
/// without a buffer, -6 (ippStsSizeErr) for a region with a width or height below 1; of Divide, Square,
/// SquareRoot and Absolute also -16 (ippStsStepErr) for an image of no width; of AddWithMask also -16 for a
/// region wider than an image, which passes the test where `rect.x` is negative.
///
/// The statuses 2 of Divide and 3 of SquareRoot are warnings: all pixels of the region have been written, and
/// they are raised as an IppException all the same.
template <class T>
class ZORVAN_IPP_API IppIArithmetic {
 public:
  /// `c = a + b`.
  static void Add(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect);

  /// `b = a + b`.
  static void Add(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect);

  /// `image = image + value`.
  static void AddC(IppIMemory<T>& image, T value, Rect rect);

  /// `srcDst = srcDst + src` where `mask` is not zero. The sum is a float for both pixel types, rounded to
  /// nearest once for each pixel.
  ///
  /// The pixels that are not selected keep their values, with two exceptions that depend on the processor:
  /// -0.0 may become 0.0, and an infinite or NaN pixel of a float `src` may leave NaN.
  ///
  /// The rectangle is tested with `src`, then `mask`, then `srcDst`.
  static void AddWithMask(IppIMemory<T>& src, IppIMemory<float>& srcDst, IppIMemory<u8>& mask, Rect rect);

  /// `image = image + value` where `mask` is not zero.
  ///
  /// The other pixels of the region have no defined result: they get whatever a fresh image of `image`'s size
  /// happens to hold added to them. Use AddWithMask, or fill an image and add it, where they matter.
  ///
  /// Throws std::exception, "invalid image size", if `image` has a width or height below 1. When memory for
  /// the fresh image runs out, IppException -8 is raised. `mask` may lie on `image` in any way.
  static void AddCWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask, T value, Rect rect);

  /// `c = b - a`. Bytes where `a` is greater give 0.
  static void Subtract(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect);

  /// `b = b - a`. Bytes where `a` is greater give 0.
  static void Subtract(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect);

  /// `c = a * b`.
  static void Multiply(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect);

  /// `b = a * b`.
  static void Multiply(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect);

  /// `c = b / a`. A zero in `a` raises IppException 2 (ippStsDivByZero) after all pixels have been written:
  /// bytes divided by zero become 255, or 0 for a 0; floats, divided by a zero of either sign, become an
  /// infinity with the sign of `b`, or NaN for a zero or NaN. A NaN in `a` makes NaN and raises nothing.
  /// Float quotients may differ from the nearest float by some units in the last place.
  static void Divide(IppIMemory<T>& a, IppIMemory<T>& b, IppIMemory<T>& c, Rect rect);

  /// `b = b / a`, as above.
  static void Divide(IppIMemory<T>& a, IppIMemory<T>& b, Rect rect);

  /// `dst = |src|`: the sign bit is cleared, also that of a NaN. For `u8` it raises IppException -59
  /// (ippStsDataTypeErr) for every rectangle that fits.
  static void Absolute(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect);

  /// `image = |image|`, as above.
  static void Absolute(IppIMemory<T>& image, Rect rect);

  /// `dst = src * src`.
  static void Square(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect);

  /// `image = image * image`.
  static void Square(IppIMemory<T>& image, Rect rect);

  /// `dst = sqrt(src)`. Float roots may differ from the nearest float by some units in the last place. A
  /// negative pixel becomes NaN and raises IppException 3 (ippStsSqrtNegArg) after all pixels have been
  /// written; -0.0 is not negative, and is its own root. Where any floating-point exception is unmasked, the
  /// roots of floats mask all and restore the control state at the end.
  static void SquareRoot(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect);

  /// `image = sqrt(image)`, as above.
  static void SquareRoot(IppIMemory<T>& image, Rect rect);

  /// Objects can be made, copied and moved, and hold nothing.
  IppIArithmetic() = default;
  IppIArithmetic(const IppIArithmetic&) = default;
  IppIArithmetic(IppIArithmetic&&) = default;

  /// Assignments exist and do nothing: the class has no data.
  IppIArithmetic& operator=(const IppIArithmetic& other);
  IppIArithmetic& operator=(IppIArithmetic&& other);
};

}  // namespace Zorvan::Ipp::Image
