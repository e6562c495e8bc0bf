// 8-bit to float
//
// Bytes are added to a float image of zeros, under a mask that selects every
// pixel. Floats can hold values that bytes cannot. Here each pixel is squared,
// and scaled to the range of bytes, which makes dark pixels darker.

#include <cstdio>

#include "recipe.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> picture = coinPicture();
  const Rect whole = picture.SizeToRoi();

  IppIMemory<float> floats(picture.size());
  IppIMemory<u8> everywhere(picture.size());
  Initializer::Fill<float>(floats, 0, whole);
  Initializer::Fill<u8>(everywhere, 255, whole);
  IppIArithmetic<u8>::AddWithMask(picture, floats, everywhere, whole);

  IppIArithmetic<float>::Square(floats, whole);
  std::printf("brightest byte %d, brightest square %.0f\n",
              Statistic<u8>::Max(picture, whole),
              Statistic<float>::Max(floats, whole));

  IppIMemory<float> factor(picture.size());
  Initializer::Fill<float>(factor, 1 / 255.0f, whole);
  IppIArithmetic<float>::Multiply(factor, floats, whole);

  writePng("before.png", picture);
  writePng("after.png", toBytes(floats));
}
