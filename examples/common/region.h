#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

#include "zorvan/ipp.h"

// Regions by column and row, tested against the image before the library gets them.
//
// The library's Rect needs care in two ways. It starts at pixel `x * width + y`: `x` is the row, `y` the
// column. But the library tests it as if `x` were the column: `x + width` must not exceed the image's width,
// nor `y + height` its height. So on an image that is not square the test accepts regions that leave the
// image, and refuses some that lie inside it. Both helpers below refuse regions that leave the image.
// viewOf() also makes the regions usable that the library's test refuses.

namespace Examples {

/// A rectangle of pixels: its leftmost column, its topmost row, its size.
struct Area {
  int column;
  int row;
  int width;
  int height;
};

/// Throws unless every pixel of `area` is a pixel of `image`. It computes differences, because sums could
/// overflow.
template <class T>
void requireInside(const Zorvan::Ipp::Image::IppIMemory<T>& image, Area area) {
  const bool inside = area.column >= 0 && area.row >= 0 && area.width >= 1 && area.height >= 1 &&
                      area.column <= image.width() - area.width && area.row <= image.height() - area.height;
  if (inside) return;
  throw std::out_of_range("The region of " + std::to_string(area.width) + "x" + std::to_string(area.height) +
                          " pixels at column " + std::to_string(area.column) + ", row " +
                          std::to_string(area.row) + " leaves the image of " + std::to_string(image.width()) +
                          "x" + std::to_string(image.height()));
}

/// The Rect of `area` for an operation on `image`, or on several images of its size. The operation still
/// refuses (IppException, status 29) regions that its own test does not accept; use viewOf() for those.
template <class T>
Zorvan::Rect rectOf(const Zorvan::Ipp::Image::IppIMemory<T>& image, Area area) {
  requireInside(image, area);
  return {area.row, area.column, area.width, area.height};
}

/// The Rect for views made by viewOf(): it begins at the view's first pixel.
inline Zorvan::Rect rectOfView(Area area) { return {0, 0, area.width, area.height}; }

/// A view of `image` that begins at the first pixel of `area` and shares the image's pixels. With
/// rectOfView() any region inside the image can be used, and every image of a call can have its own region.
///
/// The view has the image's width, because the stride follows from the width. Use only the pixels of `area`:
/// the view's last row extends beyond the image's last pixel when `area` touches the lower edge.
template <class T>
Zorvan::Ipp::Image::IppIMemory<T> viewOf(const Zorvan::Ipp::Image::IppIMemory<T>& image, Area area) {
  requireInside(image, area);
  const std::shared_ptr<T[]> pixels = image.buffer();
  T* const first = pixels ? pixels.get() + std::ptrdiff_t{area.row} * image.width() + area.column : nullptr;
  // Shares the ownership of the block, so that the view may outlive the image.
  const std::shared_ptr<T[]> block(pixels, first);
  return Zorvan::Ipp::Image::IppIMemory<T>(image.width(), area.height, block, 0);
}

}  // namespace Examples
