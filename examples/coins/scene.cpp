#include "scene.h"

#include <algorithm>
#include <cmath>

namespace Coins {
namespace {

constexpr int kWidth = 384;
constexpr int kHeight = 303;

// The light falls from the upper left: the ground gets darker to the lower right.
double ground(int row, int column) { return 95 - 0.12 * column - 0.10 * row; }

double coin(double distance, double radius, double across) {
  const double rim = distance > radius - 3 ? 30 : 0;
  const double relief = 14 * std::sin(distance * 0.9) * std::sin(across * 0.35);
  return 165 + rim + relief - 0.6 * across;
}

void drawCoin(Examples::Picture& scene, const Disc& disc) {
  for (int r = 0; r < kHeight; ++r) {
    for (int c = 0; c < kWidth; ++c) {
      const double distance = std::hypot(r - disc.row, c - disc.column);
      if (distance > disc.radius) continue;
      const double across = (r - disc.row + c - disc.column) * 0.7;
      const double value = coin(distance, disc.radius, across);
      scene.pixels[std::size_t(r) * kWidth + c] = static_cast<Zorvan::u8>(std::clamp(value, 0.0, 255.0));
    }
  }
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
  Examples::Picture scene{kWidth, kHeight, std::vector<Zorvan::u8>(std::size_t(kWidth) * kHeight)};
  for (int r = 0; r < kHeight; ++r) {
    for (int c = 0; c < kWidth; ++c) {
      scene.pixels[std::size_t(r) * kWidth + c] = static_cast<Zorvan::u8>(ground(r, c));
    }
  }
  for (const Disc& disc : sceneCoins()) drawCoin(scene, disc);
  return scene;
}

}  // namespace Coins
