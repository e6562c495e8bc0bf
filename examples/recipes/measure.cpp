// Measure under a mask
//
// Mean, standard deviation and extremes of the selected pixels. Positions are
// counted from the region's first pixel. If the mask selects no pixel, there
// are no extremes, and the operation raises the status 1.

#include <cstdio>

#include "recipe.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> picture = coinPicture();
  IppIMemory<u8> mask = coinMask();
  const Rect whole = picture.SizeToRoi();

  const Zorvan::MeanStdDev level =
      Statistic<u8>::MeanAndStandardDeviationWithMask(picture, mask, whole);
  const Zorvan::MinMaxIndex extremes =
      Statistic<u8>::MinMaxIndexWithMask(picture, mask, whole);
  std::printf("whole picture: mean %d\n", Statistic<u8>::Mean(picture, whole));
  std::printf("coins:         mean %.2f, deviation %.2f\n", level.Mean,
              level.StdDev);
  std::printf("darkest        %.0f at column %d, row %d\n", extremes.Min,
              extremes.MinIndex.x, extremes.MinIndex.y);
  std::printf("brightest      %.0f at column %d, row %d\n", extremes.Max,
              extremes.MaxIndex.x, extremes.MaxIndex.y);

  IppIMemory<u8> measured = IppILogical<u8>::And(picture, mask, whole, true);
  writePng("before.png", picture);
  writePng("after.png", measured);
}
