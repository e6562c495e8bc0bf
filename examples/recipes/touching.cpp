// Touching objects
//
// Erosion separates objects that touch, and keeps a core of each. The cores are
// counted. Each core is dilated by the same square, restricted to the mask, and
// gets its own grey.

#include <cstdio>

#include "recipe.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> mask = touchingMask();
  const Rect whole = mask.SizeToRoi();
  constexpr Zorvan::Size square{23, 23};

  IppIMemory<u8> cores(mask.size()), rest(mask.size());
  IppIMorphology<u8>::Erode(mask, cores, whole, square);
  Initializer::Copy(cores, rest, whole);

  IppIMemory<u8> labels(mask.size()), core(mask.size()), grown(mask.size());
  Initializer::Fill<u8>(labels, 0, whole);
  int count = 0;
  while (Statistic<u8>::Max(rest, whole) > 0) {
    const Zorvan::Point seed =
        Statistic<u8>::MinMaxIndexWithMask(rest, rest).MaxIndex;
    ComputerVision::FloodFill<u8>(rest, seed, 0, whole);
    // The core is the pixels that the flood fill changed.
    IppILogical<u8>::Xor(cores, rest, core, whole);
    Initializer::Copy(rest, cores, whole);

    IppIMorphology<u8>::Dilate(core, grown, whole, square);
    IppILogical<u8>::And(mask, grown, whole);
    const u8 grey = static_cast<u8>(++count * 30);
    Initializer::FillWithMask<u8>(labels, grown, grey, whole);
  }
  std::printf("%d objects\n", count);

  writePng("before.png", mask);
  writePng("after.png", labels);
}
