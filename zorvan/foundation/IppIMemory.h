#pragma once

#include <cstdint>
#include <memory>

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Ipp::Image {

/// A single-channel image: its extent, and a share in the block that holds its pixels.
///
/// Rows lie imageStep() bytes apart, without a gap: pixel c of row r is the element `r * width + c` of the
/// block, for every operation and also in a block that the library allocated. A larger step() only means
/// that the block has room to spare at its end.
///
/// The block is counted. Assignment shares it; copy construction makes a new one, for 8-bit unsigned, 32-bit
/// signed and 32-bit float pixels only. The block goes when the last image that shares it goes. Images of one
/// block see each other's writes, and nothing protects the pixels from threads that use them at once.
///
/// Mind the geometry of regions, see Rect: `x` counts rows down and `y` counts pixels along the row, while
/// `x` is bounded by the image's width and `y` by its height.
///
/// Failures are objects of a class derived from std::exception, not IppException, with the texts given at
/// the members. Exhausted memory is no failure here: it leaves the image without a block, and the first
/// operation on the image raises IppException with ippStsNullPtrErr. Only where there is no memory for the
/// text of a failure std::bad_alloc takes its place.
template <class T>
class ZORVAN_IPP_API IppIMemory {
 public:
  /// An image of no extent and without a block; it can be assigned to.
  IppIMemory();

  /// Allocates an image of `size` pixels, whose values are not set. Raises as Allocate() does.
  IppIMemory(Size size);

  /// Allocates an image of `width` by `height` pixels, whose values are not set. Raises as Allocate() does.
  IppIMemory(int width, int height);

  /// Wraps a block that holds `size` pixels in rows without a gap, and shares in it. `step`, in bytes, is
  /// kept for step() and means nothing else. Tests nothing: any size and an empty block are taken as they
  /// are.
  IppIMemory(Size size, std::shared_ptr<T[]> buffer, int step);

  /// Wraps a block that holds `width` by `height` pixels in rows without a gap, as the form above does.
  IppIMemory(int width, int height, std::shared_ptr<T[]> buffer, int step);

  /// Allocates an image of the source's size and copies its pixels. The new block has its own step(). Raises
  /// as Allocate() does, so an image of no extent cannot be copied ("invalid image size"). Raises "Assign
  /// error in IppIMemory" if either image has no block, and always for 16-bit pixels, which can be allocated
  /// but not copied this way.
  IppIMemory(const IppIMemory& source);

  /// Gives up the own block and shares the source's. No pixel is copied: both images see each other's writes
  /// from here on.
  IppIMemory& operator=(const IppIMemory& source);

  /// Gives up the share in the block.
  ~IppIMemory();

  /// Pixels in a row.
  int width() const { return size_.width; }

  /// Number of rows.
  int height() const { return size_.height; }

  /// Width and height, in pixels.
  Size size() const { return size_; }

  /// The pitch in bytes that the allocation reported or the creator of the image gave. No operation reads it.
  int step() const { return step_; }

  /// Bytes from one row to the next: the width times the size of a pixel, wrapping on 32 bits.
  int imageStep() const { return imageStep_; }

  /// A further share in the block; empty if there is none.
  std::shared_ptr<T[]> buffer() const;

  /// The region that is the whole image: its origin at 0, 0, its extent the image's, in pixels. Like the
  /// operations, this asks for an image that is not const; of any other, width() and height() are the extent.
  Rect SizeToRoi() { return {0, 0, size_.width, size_.height}; }

  /// The pixel at which the region starts: element `rect.x * width + rect.y` of the block, so that `x`
  /// counts rows and `y` counts pixels along the row. The product wraps on 32 bits. Nothing is tested, and
  /// the extent of `rect` plays no part: the address may lie outside the block. Null if there is no block.
  /// Asks for an image that is not const; the first pixel of any image is that of buffer().
  T* ToIppStream(Rect rect) {
    if (!buffer_) return nullptr;
    const auto row = static_cast<std::int32_t>(static_cast<std::uint32_t>(rect.x) *
                                               static_cast<std::uint32_t>(size_.width));
    const std::int64_t element = std::int64_t{row} + rect.y;
    // The address may lie outside the block, where pointer arithmetic is not defined; that of integers is.
    return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(buffer_.get()) +
                                static_cast<std::uintptr_t>(element) * sizeof(T));
  }

  /// Allocates a block for `size` pixels, aligned to 64 bytes. `step` receives its pitch: a row's bytes
  /// rounded up to a multiple of 64. Values are not set. Null if the block would be too large or memory is
  /// exhausted; `step` does not tell.
  ///
  /// Raises "invalid image size" if width or height is below 1, then "Cannot allocate memory.\nNot supported
  /// type.\ntype is ..." unless pixels are 8-bit unsigned, 16-bit, 32-bit signed or 32-bit float.
  static std::unique_ptr<T[], void (*)(T*)> Allocate(Size size, int& step);

  /// Allocates a block for `width` by `height` pixels, as the form above does.
  static std::unique_ptr<T[], void (*)(T*)> Allocate(int width, int height, int& step);

  /// Wraps the caller's memory, which holds `width` by `height` pixels in rows without a gap. It stays the
  /// caller's, and must outlive every image that shares it. step() is 0. Null gives an image without a block,
  /// and so does exhausted memory.
  static IppIMemory CreateContainer(T* pointer, int width, int height);

  /// Wraps the caller's memory, which holds `size` pixels, as the form above does.
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
