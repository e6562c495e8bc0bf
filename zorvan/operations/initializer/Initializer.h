#pragma once

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Ipp::Image {

/// Creates images and moves constant or existing pixels into them.
///
/// Pixel types are `u8`, `u16`, `s16`, `int` and `float`. A mask is an 8-bit image; a pixel is selected
/// exactly when its mask byte is not zero.
///
/// Where an operation takes a `Rect`, the same rectangle is applied to every image of the call, each by its
/// own width; the images need not be of one size, but each must contain the rectangle:
/// `rect.x + rect.width` may not exceed its width, nor `rect.y + rect.height` its height. The region starts
/// at element `rect.x * width + rect.y`: see Rect for what that means and what is left to the caller.
/// A rectangle that does not fit raises IppException 29 (ippStsWrongIntersectROI) before anything is written.
///
/// Other failures of all operations with images, raised as IppException before anything is written:
/// -8 (ippStsNullPtrErr) for an image without a buffer, -6 (ippStsSizeErr) for a region with a width or
/// height below 1. No source and destination of one call may share pixels, nor a mask and a destination.
class ZORVAN_IPP_API Initializer {
 public:
  /// Makes an image of `width` by `height` pixels. The pixels are not initialised.
  ///
  /// Throws std::exception, "invalid image size", if either is below 1. When memory runs out nothing is
  /// thrown: the image has an empty buffer, and the first operation on it raises IppException -8. The same
  /// holds for images of 2 GiB and more.
  template <class T>
  static IppIMemory<T> Allocate(int width, int height);

  /// Copies the region `rect` of `src` into the region `rect` of `dst`. Failures: see the class.
  template <class T>
  static void Copy(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect);

  /// Copies the whole of `src` into `dst`, row by row from its first pixel. A `dst` that is smaller than
  /// `src` in either direction raises IppException 29; a larger one keeps its other pixels.
  template <class T>
  static void Copy(IppIMemory<T>& src, IppIMemory<T>& dst);

  /// Copies the region `rect` of `src` into a new image and returns that.
  ///
  /// The new image has the size of `rect` if `sizeFromRect` is true, and that of `src` if it is false. The
  /// region keeps its origin: it is written at element `rect.x * width + rect.y` of the new image too,
  /// counted by the new image's width, and what falls outside the new image is dropped. Only a `rect` at the
  /// origin gives a plain crop. Pixels of the new image outside the region are not initialised.
  ///
  /// No rectangle test is made: `rect` must lie inside `src`, which is up to the caller.
  ///
  /// Throws std::exception, "invalid image size", for a new image with a width or height below 1, and
  /// IppException with the status of the copy. When memory runs out it throws IppException -8, or
  /// std::exception, "Assign error in IppIMemory". For `u16` and `s16` it always throws std::exception,
  /// "Assign error in IppIMemory": images of these types cannot be returned by value.
  template <class T>
  static IppIMemory<T> Copy(IppIMemory<T>& src, Rect rect, bool sizeFromRect);

  /// Copies those pixels of the region `rect` of `src` into `dst` that `mask` selects; the other pixels of
  /// `dst` keep their values. Failures: see the class; the images are tested in the order of the parameters.
  template <class T>
  static void CopyWithMask(IppIMemory<T>& src, IppIMemory<T>& dst, IppIMemory<u8>& mask, Rect rect);

  /// Sets every pixel of the region `rect` of `image` to `value`. Failures: see the class.
  template <class T>
  static void Fill(IppIMemory<T>& image, T value, Rect rect);

  /// Sets those pixels of the region `rect` of `image` to `value` that `mask` selects; the others keep their
  /// values. Failures: see the class; `image` is tested before `mask`.
  template <class T>
  static void FillWithMask(IppIMemory<T>& image, IppIMemory<u8>& mask, T value, Rect rect);

  /// Converts the region `rect` of `src` into the pixel type of `dst`. Exists for `int` to `u8`, which limits
  /// each value to 0 to 255, and `int` to `float`, which rounds in the processor's current rounding mode (by
  /// default to nearest, ties to even). Failures: see the class; to `u8` also IppException -16
  /// (ippStsStepErr) for an image of no width.
  template <class T1, class T2>
  static void Convert(IppIMemory<T1>& src, IppIMemory<T2>& dst, Rect rect);

  /// Objects can be made, copied and moved, and hold nothing.
  Initializer() = default;
  Initializer(const Initializer&) = default;
  Initializer(Initializer&&) = default;

  /// Assignments exist and do nothing: the class has no data.
  Initializer& operator=(const Initializer& other);
  Initializer& operator=(Initializer&& other);
};

}  // namespace Zorvan::Ipp::Image
