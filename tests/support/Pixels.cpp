#include "tests/support/Pixels.h"

#include <cstring>
#include <type_traits>
#include <utility>

#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Test {
namespace {

template <class Pixel, class T = decltype(std::declval<Pixel>()())>
void fill(void* at, std::size_t count, Pixel pixel) {
  for (std::size_t i = 0; i < count; ++i) {
    const T value = pixel();
    std::memcpy(static_cast<unsigned char*>(at) + i * sizeof value, &value, sizeof value);
  }
}

}  // namespace

template <class T>
void fillPixels(void* at, std::size_t count, Content content, std::uint64_t seed) {
  Random random(seed);
  const auto& special = specialValues<T>();
  switch (content) {
    case Content::random:
      if constexpr (std::is_integral_v<T>) {
        return fillRandom(static_cast<unsigned char*>(at), count * sizeof(T), seed);
      } else {
        return fill(at, count, [&] { return randomValue<T>(random); });
      }
    case Content::halfEmpty:
      return fill(at, count, [&] { return random.below(2) != 0 ? randomValue<T>(random) : T{}; });
    case Content::special:
      return fill(at, count, [&] { return random.oneOf(special); });
    case Content::runs:
    case Content::blocks: {
      T run{};
      int left = 0;
      return fill(at, count, [&] {
        if (left-- == 0) {
          left = random.below(content == Content::runs ? 24 : 200);
          run = random.below(3) == 0 ? T{} : random.oneOf(special);
        }
        return run;
      });
    }
    case Content::empty:
      return fill(at, count, [] { return T{}; });
    case Content::given: {
      std::uint64_t index = seed % 64;
      return fill(at, count, [&] { return givenPixel<T>(index++); });
    }
    case Content::full:
      return fill(at, count, [] { return std::numeric_limits<T>::max(); });
  }
}

#define DEFINE(T) template void fillPixels<T>(void*, std::size_t, Content, std::uint64_t);
ZORVAN_IPP_PIXEL_TYPES(DEFINE)
#undef DEFINE

}  // namespace Zorvan::Test
