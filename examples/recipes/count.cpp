// Count and measure
//
// As long as the mask holds a bright pixel, the object around it is filled with
// a grey of its own; the fill reports its area and its box. Pixels are
// connected over their sides, not over corners.

#include <cstdio>

#include "recipe.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> mask = coinMask();
  const Rect whole = mask.SizeToRoi();
  IppIMemory<u8> rest = mask, labels = mask;  // copies of the pixels

  int count = 0;
  std::printf("      left  top  width  height  area\n");
  while (Statistic<u8>::Max(rest, whole) == 255) {
    const Zorvan::Point seed =
        Statistic<u8>::MinMaxIndexWithMask(rest, rest).MaxIndex;
    const u8 grey = static_cast<u8>(++count * 20);
    ComputerVision::FloodFill<u8>(labels, seed, grey, whole);
    const Zorvan::ConnectionInfo object =
        ComputerVision::FloodFill<u8>(rest, seed, 0, whole);
    // The box is given as people give it: x is its first column.
    std::printf("%4d  %4d %4d  %5d  %6d  %4.0f\n", count, object.rect.x,
                object.rect.y, object.rect.width, object.rect.height,
                object.area);
  }

  writePng("before.png", mask);
  writePng("after.png", labels);
}
