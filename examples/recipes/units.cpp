// Physical units
//
// The library counts pixels and grey levels. Only the user knows their physical
// size. Here a pixel is 0.12 mm wide, and a grey level is 0.5 lux above a dark
// level of 20. Areas are multiplied by the square of the pixel's width. Levels
// are converted as a float image, by an addition and a multiplication.

#include <cmath>
#include <cstdio>

#include "recipe.h"

using namespace Recipes;

int main() {
  constexpr double mmPerPixel = 0.12;
  constexpr float luxPerLevel = 0.5f, darkLevel = 20;
  IppIMemory<u8> picture = coinPicture(), mask = coinMask();
  const Rect whole = picture.SizeToRoi();

  IppIMemory<float> lux = toFloat(picture), gain;
  makeConstant(gain, picture, luxPerLevel);
  IppIArithmetic<float>::AddC(lux, -darkLevel, whole);
  IppIArithmetic<float>::Multiply(gain, lux, whole);
  std::printf("light on the coins: %.1f lux\n",
              Statistic<float>::Mean(lux, mask, whole));

  IppIMemory<u8> rest = mask;  // a copy of the pixels
  std::printf("   left mm  top mm  area mm2  diameter mm\n");
  while (Statistic<u8>::Max(rest, whole) > 0) {
    const Zorvan::Point seed =
        Statistic<u8>::MinMaxIndexWithMask(rest, rest).MaxIndex;
    const Zorvan::ConnectionInfo coin =
        ComputerVision::FloodFill<u8>(rest, seed, 0, whole);
    const double area = coin.area * mmPerPixel * mmPerPixel;
    std::printf("%10.2f %7.2f %9.2f %12.2f\n", coin.rect.x * mmPerPixel,
                coin.rect.y * mmPerPixel, area,
                std::sqrt(4 * area / 3.14159265358979));
  }

  writePng("before.png", picture);
  writePng("after.png", toBytes(lux));
}
