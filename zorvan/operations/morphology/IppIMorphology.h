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
/// (width - 1) / 2 columns before and (height - 1) / 2 rows above it, rounded down; of even sizes it reaches
/// one pixel further forward than back:
///
///     dilation(x, y) = max src(x + i, y + j)    i from -((width - 1) / 2) to width / 2, j likewise
///     erosion(x, y)  = min src(x + i, y + j)
///
/// Opening is a dilation of the erosion, closing an erosion of the dilation; in each, the second step takes
/// the neighbourhood turned by 180 degrees. Outside the region pixels count as the nearest pixel of the
/// region: nothing around the region is read, also where the image has pixels there. A rectangle of 1 by 1
/// copies. Of `float`, any other erosion is at most the largest finite value and any other dilation at least
/// the lowest, also where all of the neighbourhood is infinite. A NaN leaves the result near it open, and
/// zeros of both signs in a neighbourhood leave the sign of a zero result open.
///
/// The destination-filling forms write the region `rect` of `dst`. The same rectangle is applied to both
/// images, each by its own width. They raise IppException 29 (ippStsWrongIntersectROI) before anything is
/// allocated if `rect.x + rect.width` exceeds the width or `rect.y + rect.height` the height of `src`, then
/// of `dst`. The region starts at element `rect.x * width + rect.y`: see Rect for what that means and what is
/// left to the caller. One that is wider than an image, which passes the test where `rect.x` is negative,
/// raises -16 (ippStsStepErr). For Open and Close `src` and `dst` may overlap in memory in any way, for Erode
/// and Dilate not at all.
///
/// The image-returning forms make a new image, of `rect`'s size if `useRectSize` is true and of `src`'s size
/// if it is false, and write the region at element `rect.x * width + rect.y` of it too, by its own width.
/// What falls behind its last pixel is dropped, and pixels outside the region are not initialised. With
/// `useRectSize`, only a region at the origin gives a plain image of the region. These forms test no
/// rectangle: `rect` must lie inside `src`.
///
/// Failures of all operations, before anything is written:
///  - std::exception, "invalid image size", if `maskSize.width` is below 1;
///  - std::exception, "Morph border get size error.", if `maskSize.height` or an extent of `rect` is below 1;
///  - std::exception, "invalid length", if the mask or the work memory would be larger than 2 GiB;
///  - std::exception, "Morph border init error.", if memory runs out for the mask or the work memory, and for
///    the new image IppException -8 or std::exception, "Assign error in IppIMemory";
///  - IppException -8 (ippStsNullPtrErr) for an image without a buffer.
template <class T>
class ZORVAN_IPP_API IppIMorphology {
 public:
  /// Replaces each pixel of the region by the smallest of its neighbourhood, and returns the new image.
  static IppIMemory<T> Erode(IppIMemory<T>& src, Rect rect, bool useRectSize, Size maskSize);

  /// Writes the smallest pixel of each neighbourhood into `dst`.
  static void Erode(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, Size maskSize);

  /// Replaces each pixel of the region by the largest of its neighbourhood, and returns the new image.
  static IppIMemory<T> Dilate(IppIMemory<T>& src, Rect rect, bool useRectSize, Size maskSize);

  /// Writes the largest pixel of each neighbourhood into `dst`.
  static void Dilate(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, Size maskSize);

  /// Removes what is bright and smaller than the rectangle, and returns the new image.
  static IppIMemory<T> Open(IppIMemory<T>& src, Rect rect, bool useRectSize, Size maskSize);

  /// Writes the region without what is bright and smaller than the rectangle into `dst`.
  static void Open(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, Size maskSize);

  /// Removes what is dark and smaller than the rectangle, and returns the new image.
  static IppIMemory<T> Close(IppIMemory<T>& src, Rect rect, bool useRectSize, Size maskSize);

  /// Writes the region without what is dark and smaller than the rectangle into `dst`.
  static void Close(IppIMemory<T>& src, IppIMemory<T>& dst, Rect rect, Size maskSize);

  /// Objects can be made, copied and moved, and hold nothing.
  IppIMorphology() = default;
  IppIMorphology(const IppIMorphology&) = default;
  IppIMorphology(IppIMorphology&&) = default;

  /// Assignments exist and do nothing: the class has no data.
  IppIMorphology& operator=(const IppIMorphology& other);
  IppIMorphology& operator=(IppIMorphology&& other);
};

}  // namespace Zorvan::Ipp::Image
