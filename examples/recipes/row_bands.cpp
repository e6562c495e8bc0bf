// Row bands
//
// Several operations run one after the other on a band of rows, which stays in
// the cache between them. Each band is a view that shares the picture's pixels.
// For operations that depend on one pixel at a time, the result is the same as
// on the whole picture. The recipe for tiles shows what the others need.

#include <algorithm>
#include <cstdio>

#include "recipe.h"

using namespace Recipes;

// Twice as bright above a level, black below it.
void stretch(IppIMemory<u8>& band, IppIMemory<u8>& level, Rect rect) {
  IppIArithmetic<u8>::Subtract(level, band, rect);
  IppIArithmetic<u8>::Add(band, band, rect);
}

int main() {
  IppIMemory<u8> picture = coinPicture();
  IppIMemory<u8> inBands = picture, atOnce = picture;  // copies of the pixels
  IppIMemory<u8> level(picture.size());
  Initializer::Fill<u8>(level, 80, level.SizeToRoi());

  constexpr int rows = 32;
  for (int row = 0; row < picture.height(); row += rows) {
    const int height = std::min(rows, picture.height() - row);
    IppIMemory<u8> band = viewOf(inBands, {0, row, picture.width(), height});
    stretch(band, level, {0, 0, picture.width(), height});
  }

  stretch(atOnce, level, atOnce.SizeToRoi());
  IppILogical<u8>::Xor(inBands, atOnce, atOnce.SizeToRoi());
  std::printf("largest difference: %d\n",
              Statistic<u8>::Max(atOnce, atOnce.SizeToRoi()));
  writePng("before.png", picture);
  writePng("after.png", inBands);
}
