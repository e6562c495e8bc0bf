#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <tuple>
#include <utility>

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/IppSMemory.h"
#include "zorvan/foundation/Wrapping.h"
#include "zorvan/methods/Methods.h"

namespace Zorvan::Ipp::Image {

/// The number of pixels by which a region exceeds an image of `size`: before its first pixel and after its
/// last one. The region starts at element `rect.x * width + rect.y`, the product on 32 bits.
struct Surroundings {
  std::int64_t before;
  std::int64_t after;
};

inline Surroundings surroundingsOf(Size size, Rect rect) {
  if (rect.width < 1 || rect.height < 1) return {0, 0};
  const std::int32_t row = Primitives::wrappedProduct(rect.x, size.width);
  const std::int64_t first = std::int64_t{row} + rect.y;
  const std::int64_t end = first + (std::int64_t{rect.height} - 1) * size.width + rect.width;
  const std::int64_t pixels = std::int64_t{size.width} * size.height;
  return {std::max<std::int64_t>(0, -first), std::max<std::int64_t>(0, end - pixels)};
}

/// Makes an image of `size` with enough memory around its pixels to write the region `rect`, wherever it
/// lies. The pixels of the image are what they would be without that memory. Throws as IppIMemory does when
/// made from a size. When memory runs out the image has no buffer.
template <class T>
IppIMemory<T> makeSurroundedImage(Size size, Rect rect) {
  const Surroundings room = surroundingsOf(size, rect);
  const bool sizeIsValid = size.width > 0 && size.height > 0;
  if (!sizeIsValid || room.before + room.after == 0) return IppIMemory<T>(size);

  std::shared_ptr<T[]> pixels;
  const std::int64_t count = room.before + std::int64_t{size.width} * size.height + room.after;
  if (count <= std::numeric_limits<std::int32_t>::max() / std::int64_t{sizeof(T)}) {
    const auto block = IppS::IppSMemory<u8>(static_cast<int>(count * std::int64_t{sizeof(T)})).buffer();
    if (block) pixels = std::shared_ptr<T[]>(block, reinterpret_cast<T*>(block.get()) + room.before);
  }
  return IppIMemory<T>(size, pixels, 0);
}

/// Executes `Method` on the region `rect` of the sources and returns the result in a new image, of the size
/// of `rect` if `sizeFromRect` is true, otherwise of that of the first source. The result is written to the
/// region `destination` of the new image; pixels that fall outside the new image are dropped. Tests no
/// rectangle.
template <class Method, class T, class... Others, class... Fixed>
IppIMemory<T> runIntoNew(std::tuple<IppIMemory<T>&, Others...> sources, Rect rect, Rect destination,
                         bool sizeFromRect, Fixed... fixed) {
  Method method(fixed...);
  const Size roi{rect.width, rect.height};
  auto image = makeSurroundedImage<T>(sizeFromRect ? roi : std::get<0>(sources).size(), destination);
  Methods::execute(method,
                   std::tuple_cat(Methods::operandsOf(sources, rect),
                                  Methods::operandsOf(Methods::over(image), destination)),
                   roi);
  // A copy does not contain the surrounding memory. 16-bit images cannot be copied: returning `image` itself
  // would hide that failure.
  return IppIMemory<T>(std::as_const(image));
}

}  // namespace Zorvan::Ipp::Image
