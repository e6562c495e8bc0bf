#include "sky.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace Stars {

Sky drawSky(unsigned seed) {
  constexpr int width = 640, height = 480, cell = 32, reach = 7;
  constexpr double spread = 1.4;  // standard deviation of a star's light, in pixels
  std::minstd_rand random(seed);
  const auto below = [&random](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };

  std::vector<double> light(static_cast<std::size_t>(width * height));
  for (int row = 0; row < height; ++row) {
    for (int column = 0; column < width; ++column) {
      const double glow = 12 + 30.0 * row / height + 8.0 * column / width;
      light[static_cast<std::size_t>(row * width + column)] = glow + below(5) - 2;
    }
  }

  Sky sky;
  for (int top = 0; top < height; top += cell) {
    for (int left = 0; left < width; left += cell) {
      if (below(3) != 0) continue;
      const int column = left + reach + below(cell - 2 * reach), row = top + reach + below(cell - 2 * reach);
      const double peak = 40 + 0.15 * below(1000);
      DrawnStar star{column, row, 0};
      for (int y = row - reach; y <= row + reach; ++y) {
        for (int x = column - reach; x <= column + reach; ++x) {
          const double distance = std::hypot(x - column, y - row);
          const double added = peak * std::exp(-distance * distance / (2 * spread * spread));
          light[static_cast<std::size_t>(y * width + x)] += added;
          star.light += added;
        }
      }
      sky.stars.push_back(star);
    }
  }

  sky.picture = IppIMemory<u8>(Zorvan::Size{width, height});
  const auto pixels = sky.picture.buffer();
  for (std::size_t i = 0; i < light.size(); ++i) {
    pixels[static_cast<std::ptrdiff_t>(i)] = static_cast<u8>(std::lround(std::clamp(light[i], 0.0, 255.0)));
  }
  return sky;
}

}  // namespace Stars
