#pragma once

// The contents of test images: random pixels, and also runs, extremes, mostly empty images and the special
// values of a format.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>
#include <type_traits>
#include <vector>

#include "tests/support/Random.h"

namespace Zorvan::Test {

enum class Content { random, halfEmpty, runs, special, empty, full, blocks, given };
inline constexpr Content allContents[] = {Content::random,  Content::halfEmpty, Content::runs,
                                          Content::special, Content::blocks,    Content::empty,
                                          Content::full};

/// The bytes of images with the content `given`, repeated; none unless a fuzzer sets them.
inline std::span<const unsigned char> givenPixels;

/// One of the contents, also the given one if there is any.
template <class Contents>
Content drawnContent(Random& random, const Contents& contents) {
  return !givenPixels.empty() && random.below(2) == 0 ? Content::given : random.oneOf(contents);
}

template <class T>
const std::vector<T>& specialValues() {
  using Limits = std::numeric_limits<T>;
  if constexpr (std::is_floating_point_v<T>) {
    static const std::vector<T> values = {T(0),
                                          T(-0.0),
                                          T(1),
                                          T(-1),
                                          T(0.5),
                                          T(-0.5),
                                          T(1.5),
                                          T(2.5),
                                          Limits::max(),
                                          Limits::lowest(),
                                          Limits::min(),
                                          -Limits::min(),
                                          T(16777216),
                                          T(16777217.0),
                                          T(255),
                                          T(256),
                                          T(255.5),
                                          Limits::denorm_min(),
                                          T(3.7),
                                          -Limits::denorm_min(),
                                          Limits::infinity(),
                                          -Limits::infinity(),
                                          Limits::quiet_NaN()};
    return values;
  } else {
    static const std::vector<T> values = {T(0),
                                          T(1),
                                          T(-1),
                                          T(2),
                                          T(127),
                                          T(128),
                                          T(254),
                                          T(255),
                                          T(256),
                                          T(32767),
                                          T(32768),
                                          T(65535),
                                          Limits::min(),
                                          Limits::max(),
                                          static_cast<T>(Limits::min() + 1),
                                          static_cast<T>(Limits::max() - 1)};
    return values;
  }
}

template <class T>
T randomValue(Random& random) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>((random.below(2000001) - 1000000) * 0.0078125);
  } else {
    return static_cast<T>(random.next());
  }
}

/// Pixel `index` of the given ones. The bits of a NaN are those of all tests.
template <class T>
T givenPixel(std::uint64_t index) {
  unsigned char bytes[sizeof(T)];
  for (std::size_t i = 0; i < sizeof(T); ++i) {
    bytes[i] = givenPixels[(index * sizeof(T) + i) % givenPixels.size()];
  }
  T value;
  std::memcpy(&value, bytes, sizeof value);
  return value == value ? value : std::numeric_limits<T>::quiet_NaN();
}

/// Fills `count` pixels at any address. Most of the time of the tests is spent here, so it is compiled once,
/// with optimisation, for the types of pixels.
template <class T>
void fillPixels(void* at, std::size_t count, Content content, std::uint64_t seed);

}  // namespace Zorvan::Test
