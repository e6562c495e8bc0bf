// Count and measure
//
// While the mask has a bright pixel, the object around that pixel is filled
// with its own grey. The fill returns the area and the box of the object.
// Pixels are connected by their sides, not by their corners.

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
    // In this box x is the first column and y the first row.
    std::printf("%4d  %4d %4d  %5d  %6d  %4.0f\n", count, object.rect.x,
                object.rect.y, object.rect.width, object.rect.height,
                object.area);
  }

  writePng("before.png", mask);
  writePng("after.png", labels);
}
