#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/IppSMemory.h"
#include "zorvan/foundation/Wrapping.h"

namespace Zorvan::Ipp::Image {

/// Pixels that a region written at its own origin needs in front of an image's first pixel and behind its
/// last one. The origin is element `rect.x * width + rect.y`, the product on 32 bits.
struct Surroundings {
  std::int64_t before;
  std::int64_t behind;
};

inline Surroundings surroundingsOf(Size size, Rect rect) {
  if (rect.width < 1 || rect.height < 1) return {0, 0};
  const std::int32_t row = Primitives::wrappedProduct(rect.x, size.width);
  const std::int64_t first = std::int64_t{row} + rect.y;
  const std::int64_t end = first + (std::int64_t{rect.height} - 1) * size.width + rect.width;
  const std::int64_t pixels = std::int64_t{size.width} * size.height;
  return {std::max<std::int64_t>(0, -first), std::max<std::int64_t>(0, end - pixels)};
}

/// An image of `size` that can be written through the region `rect`, wherever that lies.
///
/// Operations that return a new image write it at the rectangle's own origin, which for all but the image's
/// origin reaches past its last pixel, or before its first. Then the block has room there: the shifted rows
/// land in memory of the image's own, and its pixels are what they would be without the room. Throws as
/// IppIMemory does when made from a size, and like it is left without a buffer when memory runs out.
template <class T>
IppIMemory<T> makeLocalImage(Size size, Rect rect) {
  const Surroundings room = surroundingsOf(size, rect);
  const bool sizeIsValid = size.width > 0 && size.height > 0;
  if (!sizeIsValid || room.before + room.behind == 0) return IppIMemory<T>(size);

  std::shared_ptr<T[]> pixels;
  const std::int64_t count = room.before + std::int64_t{size.width} * size.height + room.behind;
  if (count <= std::numeric_limits<std::int32_t>::max() / std::int64_t{sizeof(T)}) {
    const auto block = IppS::IppSMemory<u8>(static_cast<int>(count * std::int64_t{sizeof(T)})).buffer();
    if (block) pixels = std::shared_ptr<T[]>(block, reinterpret_cast<T*>(block.get()) + room.before);
  }
  return IppIMemory<T>(size, pixels, 0);
}

}  // namespace Zorvan::Ipp::Image
