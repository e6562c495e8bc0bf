#include "recipe.h"

#include <algorithm>

namespace Recipes {
namespace {

constexpr int pictureWidth = 240;
constexpr int pictureHeight = 160;

struct Disc {
  int column;
  int row;
  int radius;
};

constexpr Disc coinDiscs[] = {{32, 28, 17},  {92, 30, 20},   {150, 27, 15},
                              {206, 31, 19}, {34, 80, 20},   {90, 82, 16},
                              {151, 79, 19}, {209, 81, 15},  {31, 132, 16},
                              {89, 131, 19}, {152, 133, 20}, {207, 132, 17}};

constexpr Disc touchingDiscs[] = {{45, 50, 26},   {92, 60, 24},  {135, 45, 22},
                                  {195, 50, 27},  {60, 115, 25}, {108, 112, 25},
                                  {180, 116, 24}, {218, 96, 20}};

// Pictures are computed with integers, so that they are the same with every
// compiler.
template <class Value>
IppIMemory<u8> draw(Value value) {
  IppIMemory<u8> picture(pictureWidth, pictureHeight);
  const auto pixels = picture.buffer();
  for (int row = 0; row < pictureHeight; ++row) {
    for (int column = 0; column < pictureWidth; ++column) {
      pixels[row * pictureWidth + column] =
          static_cast<u8>(std::clamp(value(column, row), 0, 255));
    }
  }
  return picture;
}

/// The squared distance from the middle of the disc that contains the pixel, -1
/// if there is none.
template <class Discs>
int distanceIn(const Discs& discs, int column, int row) {
  for (const Disc& disc : discs) {
    const int across = column - disc.column, down = row - disc.row;
    const int distance = across * across + down * down;
    if (distance <= disc.radius * disc.radius) return distance;
  }
  return -1;
}

}  // namespace

IppIMemory<u8> coinPicture() {
  return draw([](int column, int row) {
    const int distance = distanceIn(coinDiscs, column, row);
    if (distance < 0) return 100 - column / 6 - row / 4;
    const int rings = distance / 40 % 2 * 18;
    return 190 + rings - (column + row) / 12;
  });
}

IppIMemory<u8> coinMask() {
  return draw([](int column, int row) {
    return distanceIn(coinDiscs, column, row) >= 0 ? 255 : 0;
  });
}

IppIMemory<u8> ringMask() {
  return draw([](int column, int row) {
    return distanceIn(coinDiscs, column, row) >= 60 ? 255 : 0;
  });
}

IppIMemory<u8> touchingMask() {
  return draw([](int column, int row) {
    return distanceIn(touchingDiscs, column, row) >= 0 ? 255 : 0;
  });
}

void addNoise(IppIMemory<u8>& picture, int strength, unsigned seed) {
  const auto pixels = picture.buffer();
  unsigned state = seed * 2654435761u + 1;
  for (int i = 0; i < picture.width() * picture.height(); ++i) {
    state = state * 1664525u + 1013904223u;
    const int noise =
        static_cast<int>(state >> 16) % (2 * strength + 1) - strength;
    pixels[i] = static_cast<u8>(std::clamp(pixels[i] + noise, 0, 255));
  }
}

IppIMemory<float> toFloat(IppIMemory<u8>& picture) {
  IppIMemory<float> floats;
  IppIMemory<u8> everywhere;
  makeConstant(floats, picture, 0.0f);
  makeConstant<u8>(everywhere, picture, 255);
  IppIArithmetic<u8>::AddWithMask(picture, floats, everywhere,
                                  picture.SizeToRoi());
  return floats;
}

}  // namespace Recipes
