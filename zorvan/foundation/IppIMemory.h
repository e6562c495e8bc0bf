#pragma once

#include <cstdint>
#include <memory>

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Ipp::Image {

/// A single-channel image: its size, and shared ownership of the block that holds its pixels.
///
/// Rows lie imageStep() bytes apart, without a gap: pixel c of row r is the element `r * width + c` of the
/// block, for every operation and also in a block that the library allocated. A larger step() only means
/// that the block has unused bytes at its end.
///
/// The block is reference-counted. Assignment shares it. Copy construction makes a new one, for 8-bit
/// unsigned, 32-bit signed and 32-bit float pixels only. The block is freed with the last image that shares
/// it. A write to one image shows in all images that share its block, and the pixels are not protected
/// against simultaneous use by several threads.
///
/// For the geometry of regions see Rect: `x` counts rows from the top and `y` counts pixels from the left,
/// but `x` is tested against the image's width and `y` against its height.
///
/// Failures are objects of a class derived from std::exception, not IppException, with the texts stated at
/// the members. Exhausted memory does not count as a failure: the image then has no block, and the first
/// operation on it throws IppException with ippStsNullPtrErr. If there is no memory for the text of a
/// failure, std::bad_alloc is thrown instead.
template <class T>
class ZORVAN_IPP_API IppIMemory {
 public:
  /// An image of size 0 by 0 without a block. It can be assigned to.
  IppIMemory();

  /// Allocates an image of `size` pixels, whose values are not set. Throws as Allocate() does.
  IppIMemory(Size size);

  /// Allocates an image of `width` by `height` pixels, whose values are not set. Throws as Allocate() does.
  IppIMemory(int width, int height);

  /// Wraps a block that holds `size` pixels in rows without a gap, and shares its ownership. `step`, in
  /// bytes, is only stored for step(). Nothing is tested: any size and an empty block are accepted.
  IppIMemory(Size size, std::shared_ptr<T[]> buffer, int step);

  /// Wraps a block that holds `width` by `height` pixels in rows without a gap, like the overload above.
  IppIMemory(int width, int height, std::shared_ptr<T[]> buffer, int step);

  /// Allocates an image of the source's size and copies its pixels. The new image has its own step(). Throws
  /// as Allocate() does, so an image of size 0 by 0 cannot be copied ("invalid image size"). Throws "Assign
  /// error in IppIMemory" if either image has no block, and always for 16-bit pixels, which can be allocated
  /// but not copied.
  IppIMemory(const IppIMemory& source);

  /// Releases the own block and shares the source's. No pixel is copied: from now on a write to one image
  /// shows in the other.
  IppIMemory& operator=(const IppIMemory& source);

  /// Releases the block.
  ~IppIMemory();

  /// Pixels in a row.
  int width() const { return size_.width; }

  /// Number of rows.
  int height() const { return size_.height; }

  /// Width and height, in pixels.
  Size size() const { return size_; }

  /// The stride in bytes that Allocate() returned or that was passed to the constructor. No operation reads
  /// it.
  int step() const { return step_; }

  /// Bytes from one row to the next: the width times the size of a pixel, wrapping on 32 bits.
  int imageStep() const { return imageStep_; }

  /// A pointer that shares ownership of the block; null if there is none.
  std::shared_ptr<T[]> buffer() const;

  /// The region that is the whole image, in pixels: its origin is 0, 0. Like the operations, this needs an
  /// image that is not const.
  Rect SizeToRoi() { return {0, 0, size_.width, size_.height}; }

  /// The address of the pixel at which the region starts: element `rect.x * width + rect.y` of the block, so
  /// that `x` counts rows and `y` counts pixels along the row. The product wraps on 32 bits. Nothing is
  /// tested, and the width and height of `rect` have no effect: the address may lie outside the block. Null
  /// if there is no block. Needs an image that is not const.
  T* ToIppStream(Rect rect) {
    if (!buffer_) return nullptr;
    const auto row = static_cast<std::int32_t>(static_cast<std::uint32_t>(rect.x) *
                                               static_cast<std::uint32_t>(size_.width));
    const std::int64_t element = std::int64_t{row} + rect.y;
    // The address may lie outside the block, where arithmetic is defined for integers only.
    return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(buffer_.get()) +
                                static_cast<std::uintptr_t>(element) * sizeof(T));
  }

  /// Allocates a block for `size` pixels, aligned to 64 bytes. `step` receives its stride: the bytes of a
  /// row, rounded up to a multiple of 64. Values are not set. Returns null if the block would be too large or
  /// memory is exhausted; `step` does not show which.
  ///
  /// Throws "invalid image size" if width or height is below 1, then "Cannot allocate memory.\nNot supported
  /// type.\ntype is ..." unless pixels are 8-bit unsigned, 16-bit, 32-bit signed or 32-bit float.
  static std::unique_ptr<T[], void (*)(T*)> Allocate(Size size, int& step);

  /// Allocates a block for `width` by `height` pixels, like the overload above.
  static std::unique_ptr<T[], void (*)(T*)> Allocate(int width, int height, int& step);

  /// Wraps memory of the caller that holds `width` by `height` pixels in rows without a gap. The caller keeps
  /// its ownership, and it must outlive every image that shares it. step() is 0. The image has no block if
  /// `pointer` is null or memory is exhausted.
  static IppIMemory CreateContainer(T* pointer, int width, int height);

  /// Wraps memory of the caller that holds `size` pixels, like the overload above.
  static IppIMemory CreateContainer(T* pointer, Size size);

 private:
  Size size_;
  int step_;
  int imageStep_;
  std::shared_ptr<T[]> buffer_;
};

#define ZORVAN_IPP_DECLARE(T) extern template class IppIMemory<T>;
ZORVAN_IPP_ELEMENT_TYPES(ZORVAN_IPP_DECLARE)
#undef ZORVAN_IPP_DECLARE

}  // namespace Zorvan::Ipp::Image
