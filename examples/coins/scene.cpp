#include "scene.h"

#include <algorithm>
#include <cmath>

namespace Coins {
namespace {

constexpr int sceneWidth = 384;
constexpr int sceneHeight = 303;

// The light comes from the upper left: the background gets darker to the lower right.
double background(int row, int column) { return 95 - 0.12 * column - 0.10 * row; }

double coin(double distance, double radius, double across) {
  const double rim = distance > radius - 3 ? 30 : 0;
  const double relief = 14 * std::sin(distance * 0.9) * std::sin(across * 0.35);
  return 165 + rim + relief - 0.6 * across;
}

double brightness(int row, int column, const std::vector<Disc>& coins) {
  for (const Disc& disc : coins) {
    const double down = row - disc.row, right = column - disc.column;
    const double distance = std::hypot(down, right);
    if (distance <= disc.radius) return coin(distance, disc.radius, (down + right) * 0.7);
  }
  return background(row, column);
}

}  // namespace

std::vector<Disc> sceneCoins() {
  std::vector<Disc> coins;
  for (int line = 0; line < 4; ++line) {
    for (int place = 0; place < 6; ++place) {
      coins.push_back({42.0 + 73 * line + (place * 3) % 5, 38.0 + 61 * place + (line * 4) % 7,
                       16.0 + (line * 5 + place * 7) % 11});
    }
  }
  return coins;
}

Examples::Picture drawScene() {
  Examples::Picture scene{sceneWidth, sceneHeight, {}};
  const std::vector<Disc> coins = sceneCoins();
  for (int row = 0; row < sceneHeight; ++row) {
    for (int column = 0; column < sceneWidth; ++column) {
      const double value = brightness(row, column, coins);
      scene.pixels.push_back(static_cast<Zorvan::u8>(std::clamp(value, 0.0, 255.0)));
    }
  }
  return scene;
}

}  // namespace Coins
