#pragma once

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Ipp::Image {

/// Allocates images and fills them with constants or with pixels of other images.
///
/// Pixel types are `u8`, `u16`, `s16`, `int` and `float`. A mask is an 8-bit image; a pixel is selected
/// exactly when its mask byte is not zero.
///
/// If an operation takes a `Rect`, the same rectangle is applied to every image of the call, each with its
/// own width. The images need not be of one size, but each must contain the rectangle: `rect.x + rect.width`
/// must not exceed its width, and `rect.y + rect.height` not its height. The region starts at element
/// `rect.x * width + rect.y`: see Rect for what that means and what the caller must ensure. A rectangle that
/// does not fit throws IppException 29 (ippStsWrongIntersectROI) before anything is written.
///
/// Other failures of all operations with images, thrown as IppException before anything is written:
/// -8 (ippStsNullPtrErr) for an image without a buffer, -6 (ippStsSizeErr) for a region with a width or
/// height below 1. If there is no memory for the text of a failure, std::bad_alloc is thrown instead.
///
/// The destination of a call must not share pixels with its source or its mask.
class ZORVAN_IPP_API Initializer {
 public:
  /// Allocates an image of `width` by `height` pixels. The pixels are not initialised.
  ///
  /// Throws std::exception, "invalid image size", if either is below 1. If memory runs out, and for images of
  /// 2 GiB and more, nothing is thrown: the image has no buffer, and the first operation on it throws
  /// IppException -8.
  template <class T>
  static IppIMemory<T> Allocate(int width, int height);

  /// Copies the region `rect` of `src` into the region `rect` of `dst`. Failures: see the class.
  template <class T>
  static void Copy(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect);

  /// Copies the whole of `src` into `dst`, row by row from its first pixel. A `dst` that is smaller than
  /// `src` in either direction throws IppException 29; a larger one keeps its other pixels.
  template <class T>
  static void Copy(IppIMemory<T>& src, IppIMemory<T>& dst);

  /// Copies the region `rect` of `src` into a new image and returns that.
  ///
  /// The new image has the size of `rect` if `sizeFromRect` is true, and that of `src` if it is false. The
  /// region keeps its origin: it is written at element `rect.x * width + rect.y` of the new image too, with
  /// the new image's width, and pixels outside the new image are dropped. Only with a `rect` at the origin is
  /// the result a plain crop. Pixels of the new image outside the region are not initialised.
  ///
  /// The rectangle is not tested: the caller must ensure that `rect` lies inside `src`.
  ///
  /// Throws std::exception, "invalid image size", for a new image with a width or height below 1, and
  /// IppException with the status of the copy. If memory runs out, it throws IppException -8, or
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

  /// Converts the region `rect` of `src` into the pixel type of `dst`. Exists for `int` to `u8`, which
  /// saturates each value to 0 to 255, and `int` to `float`, which rounds in the processor's current rounding
  /// mode (by default to nearest, ties to even). Failures: see the class; to `u8` also IppException -16
  /// (ippStsStepErr) for an image of width 0.
  template <class T1, class T2>
  static void Convert(IppIMemory<T1>& src, IppIMemory<T2>& dst, Rect rect);

  /// @{
  /// Objects can be constructed, copied and moved, and have no data.
  Initializer() = default;
  Initializer(const Initializer&) = default;
  Initializer(Initializer&&) = default;
  /// @}

  /// @{
  /// Assignments have no effect.
  Initializer& operator=(const Initializer& other);
  Initializer& operator=(Initializer&& other);
  /// @}
};

}  // namespace Zorvan::Ipp::Image
