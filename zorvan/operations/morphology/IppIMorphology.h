#pragma once

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Ipp::Image {

/// Grey-scale morphology with a solid rectangle: each pixel of the result is the smallest or the largest
/// pixel of a neighbourhood. Pixel types are `u8` and `float`.
///
/// `maskSize` is the rectangle, in pixels. The neighbourhood of the pixel in column x, row y begins
/// (width - 1) / 2 columns before it and (height - 1) / 2 rows above it, rounded down. With an even size it
/// extends one pixel further after the pixel than before it:
///
///     dilation(x, y) = max src(x + i, y + j)    i from -((width - 1) / 2) to width / 2, j likewise
///     erosion(x, y)  = min src(x + i, y + j)
///
/// A rectangle whose width or height is even may be up to 65535 pixels wide: the columns of wider ones are
/// not counted right.
///
/// Opening is a dilation of the erosion, closing an erosion of the dilation. In both, the second operation
/// uses the neighbourhood rotated by 180 degrees. A pixel outside the region counts as the nearest pixel of
/// the region: nothing around the region is read, even if the image has pixels there. A rectangle of 1 by 1
/// copies. For `float`, the result of any other erosion is at most the largest finite value and that of any
/// other dilation at least the lowest, even if all of the neighbourhood is infinite. The result near a NaN is
/// not specified, nor is the sign of a zero result if the neighbourhood has zeros of both signs.
///
/// The overloads with `dst` write the region `rect` of `dst`. The same rectangle is applied to both images,
/// each with its own width. They throw IppException 29 (ippStsWrongIntersectROI) before anything is allocated
/// if `rect.x + rect.width` exceeds the width or `rect.y + rect.height` the height of `src`, then of `dst`.
/// The region starts at element `rect.x * width + rect.y`: see Rect for what that means and what the caller
/// must ensure. A region that is wider than an image, which passes the test if `rect.x` is negative, throws
/// -16 (ippStsStepErr). For Open and Close `src` and `dst` may overlap in memory in any way, for Erode and
/// Dilate not at all.
///
/// The overloads that return an image make a new one, of the size of `rect` if `useRectSize` is true and of
/// that of `src` if it is false. They write the region at element `rect.x * width + rect.y` of the new image
/// too, with its own width. Pixels outside the new image are dropped, and its pixels outside the region are
/// not initialised. With `useRectSize`, the result is a plain image of the region only if `rect` is at the
/// origin. These overloads test no rectangle: `rect` must lie inside `src`.
///
/// Failures of all operations, before anything is written:
///  - std::exception, "invalid image size", if `maskSize.width` is below 1;
///  - std::exception, "Morph border get size error.", if `maskSize.height` or an extent of `rect` is below 1;
///  - std::exception, "invalid length", if the mask or the work memory would be larger than 2 GiB;
///  - std::exception, "Morph border init error.", if memory runs out for the mask or the work memory;
///  - IppException -8, or std::exception, "Assign error in IppIMemory", if it runs out for the new image;
///  - IppException -8 (ippStsNullPtrErr) for an image without a buffer;
///  - std::bad_alloc instead of each of these, and of 29, if there is no memory for its text.
template <class T>
class ZORVAN_IPP_API IppIMorphology {
 public:
  /// Returns a new image with the smallest pixel of each neighbourhood.
  static IppIMemory<T> Erode(IppIMemory<T>& src, Rect rect, bool useRectSize, Size maskSize);

  /// Writes the smallest pixel of each neighbourhood into `dst`.
  static void Erode(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, Size maskSize);

  /// Returns a new image with the largest pixel of each neighbourhood.
  static IppIMemory<T> Dilate(IppIMemory<T>& src, Rect rect, bool useRectSize, Size maskSize);

  /// Writes the largest pixel of each neighbourhood into `dst`.
  static void Dilate(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, Size maskSize);

  /// Returns a new image of the region without bright areas that are smaller than the rectangle.
  static IppIMemory<T> Open(IppIMemory<T>& src, Rect rect, bool useRectSize, Size maskSize);

  /// Writes the region into `dst` without bright areas that are smaller than the rectangle.
  static void Open(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, Size maskSize);

  /// Returns a new image of the region without dark areas that are smaller than the rectangle.
  static IppIMemory<T> Close(IppIMemory<T>& src, Rect rect, bool useRectSize, Size maskSize);

  /// Writes the region into `dst` without dark areas that are smaller than the rectangle.
  static void Close(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, Size maskSize);

  /// @{
  /// Objects can be constructed, copied and moved, and have no data.
  IppIMorphology() = default;
  IppIMorphology(const IppIMorphology&) = default;
  IppIMorphology(IppIMorphology&&) = default;
  /// @}

  /// @{
  /// Assignments have no effect.
  IppIMorphology& operator=(const IppIMorphology& other);
  IppIMorphology& operator=(IppIMorphology&& other);
  /// @}
};

}  // namespace Zorvan::Ipp::Image
