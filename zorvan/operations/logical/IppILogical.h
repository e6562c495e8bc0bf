#pragma once

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Ipp::Image {

/// Bitwise logic on 8-bit images, pixel by pixel.
///
/// Exists for `T` of `u8` and `float`, but only `u8` is implemented: every function of `IppILogical<float>`
/// throws IppException -59 (ippStsDataTypeErr) and neither reads nor writes a pixel.
///
/// The functions with `dst` or `srcDst` apply one `rect` to every image of the call, each with its own width.
/// Each image must contain it: `rect.x + rect.width` must not exceed its width, and `rect.y + rect.height`
/// not its height. The region starts at element `rect.x * width + rect.y`: see Rect for what that means and
/// what the caller must ensure. A rectangle that does not fit throws IppException 29
/// (ippStsWrongIntersectROI) before anything is written, for `float` too.
///
/// The functions that return a new image make no such test: the caller must ensure that `rect` lies inside
/// the sources.
///
/// Other failures, thrown as IppException before anything is written: -8 (ippStsNullPtrErr) for an image
/// without a buffer, -16 (ippStsStepErr) for an image of width 0, -6 (ippStsSizeErr) for a region with
/// a width or height below 1. If there is no memory for the text of a failure, std::bad_alloc is thrown
/// instead.
///
/// Source and destination may be one image; regions that overlap otherwise are not supported.
template <class T>
class ZORVAN_IPP_API IppILogical {
 public:
  /// `srcDst` = `src` & `srcDst` in the region `rect`. The images are tested in the order of the parameters.
  static void And(IppIMemory<T>& src, IppIMemory<T>& srcDst, Rect rect);

  /// `dst` = `src1` & `src2` in the region `rect`. The images are tested in the order of the parameters.
  static void And(IppIMemory<T>& src1, IppIMemory<T>& src2, IppIMemory<T>& dst, Rect rect);

  /// Returns a new image with `src1` & `src2` of the region `rect`, from its first pixel on.
  ///
  /// If `sizeFromRect` is true, the new image has the size of `rect`, and the region fills it. If it is
  /// false, the new image has the size of `src1`: the region lies in its top left corner, pixels outside the
  /// new image are dropped, and its other pixels are not initialised.
  ///
  /// Throws std::exception, "invalid image size", for a new image with a width or height below 1. If memory
  /// runs out, it throws IppException -8, or std::exception, "Assign error in IppIMemory".
  static IppIMemory<T> And(IppIMemory<T>& src1, IppIMemory<T>& src2, Rect rect, bool sizeFromRect);

  /// `srcDst` = `src` | `srcDst` in the region `rect`. The images are tested in the order of the parameters.
  static void Or(IppIMemory<T>& src, IppIMemory<T>& srcDst, Rect rect);

  /// `dst` = `src1` | `src2` in the region `rect`. The images are tested in the order of the parameters.
  static void Or(IppIMemory<T>& src1, IppIMemory<T>& src2, IppIMemory<T>& dst, Rect rect);

  /// Returns a new image with `src1` | `src2` of the region `rect`. The image and its failures are those of
  /// And.
  static IppIMemory<T> Or(IppIMemory<T>& src1, IppIMemory<T>& src2, Rect rect, bool sizeFromRect);

  /// `srcDst` = `src` ^ `srcDst` in the region `rect`. The images are tested in the order of the parameters.
  static void Xor(IppIMemory<T>& src, IppIMemory<T>& srcDst, Rect rect);

  /// `dst` = `src1` ^ `src2` in the region `rect`. The images are tested in the order of the parameters.
  static void Xor(IppIMemory<T>& src1, IppIMemory<T>& src2, IppIMemory<T>& dst, Rect rect);

  /// Returns a new image with `src1` ^ `src2` of the region `rect`. The image and its failures are those of
  /// And.
  static IppIMemory<T> Xor(IppIMemory<T>& src1, IppIMemory<T>& src2, Rect rect, bool sizeFromRect);

  /// `srcDst` = ~`srcDst` in the region `rect`: 255 minus the pixel.
  static void Not(IppIMemory<T>& srcDst, Rect rect);

  /// `dst` = ~`src` in the region `rect`: 255 minus the pixel. `src` is tested before `dst`.
  static void Not(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect);

  /// Returns a new image with ~`src` of the region `rect`.
  ///
  /// The new image has the size of `rect` if `sizeFromRect` is true, and that of `src` if it is false. Unlike
  /// And, Or and Xor, the region keeps its origin: it is written at element `rect.x * width + rect.y` of the
  /// new image, with the new image's width, and pixels outside the new image are dropped. With `sizeFromRect`
  /// the result is a plain crop only if `rect` is at the origin. Pixels of the new image outside the region
  /// are not initialised.
  ///
  /// Throws std::exception, "invalid image size", for a new image with a width or height below 1. If memory
  /// runs out, it throws IppException -8, or std::exception, "Assign error in IppIMemory".
  static IppIMemory<T> Not(IppIMemory<T>& src, Rect rect, bool sizeFromRect);

  /// @{
  /// Objects can be constructed, copied and moved, and have no data.
  IppILogical() = default;
  IppILogical(const IppILogical&) = default;
  IppILogical(IppILogical&&) = default;
  /// @}

  /// @{
  /// Assignments have no effect.
  IppILogical& operator=(const IppILogical& other);
  IppILogical& operator=(IppILogical&& other);
  /// @}
};

}  // namespace Zorvan::Ipp::Image
