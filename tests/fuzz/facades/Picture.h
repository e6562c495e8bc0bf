#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

#include "tests/fuzz/facades/FacadeCalls.h"
#include "tests/support/Random.h"
#include "zorvan/ipp.h"

namespace Zorvan::Test {

constexpr std::int64_t mostPixels = 4096;

template <class T>
T anyPixel(Random& random) {
  if constexpr (std::is_floating_point_v<T>) return static_cast<T>(random.below(4000)) * T(0.25);
  const int pixel = random.below(300) - (std::is_signed_v<T> ? 20 : 0);
  return static_cast<T>(random.below(4) == 0 ? 0 : std::min<int>(pixel, std::numeric_limits<T>::max()));
}

/// One image of a call. The pixels lie in memory of exactly their size, or in that of another image.
template <class T>
struct Picture {
  Size size{0, 0};
  bool isNull = false;
  std::shared_ptr<std::vector<T>> actual, expected;
  Ipp::Image::IppIMemory<T> image;

  bool holds(Rect rect) const {
    const bool inside = rect.x >= 0 && rect.y >= 0 && std::int64_t{rect.x} + rect.height <= size.height &&
                        std::int64_t{rect.y} + rect.width <= size.width;
    if (!inside) return false;
    const std::int64_t end = (std::int64_t{rect.x} + rect.height - 1) * size.width + rect.y + rect.width;
    return end <= static_cast<std::int64_t>(actual->size());
  }
  /// The first test of every operation; the sums wrap on 32 bits.
  bool fits(Rect rect) const {
    const auto sum = [](int a, int b) {
      return static_cast<std::int32_t>(static_cast<std::uint32_t>(std::int64_t{a} + b));
    };
    return sum(rect.x, rect.width) <= size.width && sum(rect.y, rect.height) <= size.height;
  }
  Operand<T> operand(Rect rect) const {
    const auto step = static_cast<std::uint32_t>(std::int64_t{size.width} * std::int64_t{sizeof(T)});
    if (isNull) return {nullptr, static_cast<std::int32_t>(step)};
    const auto row = static_cast<std::int32_t>(static_cast<std::uint32_t>(std::int64_t{rect.x} * size.width));
    const auto bytes = static_cast<std::uintptr_t>(std::int64_t{row} + rect.y) * sizeof(T);
    return {reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(expected->data()) + bytes),
            static_cast<std::int32_t>(step)};
  }
};

}  // namespace Zorvan::Test
