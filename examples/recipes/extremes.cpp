// Darkest and brightest place
//
// The extremes of a picture and their positions. A mask of 255 selects every
// pixel. Of several equal pixels the first is found: in the topmost row, the
// leftmost. A cross marks each of the two positions.

#include <algorithm>
#include <cstdio>

#include "recipe.h"

using namespace Recipes;

void drawCross(IppIMemory<u8>& picture, Zorvan::Point at, u8 grey) {
  const int left = std::max(at.x - 8, 0), top = std::max(at.y - 8, 0);
  const int right = std::min(at.x + 9, picture.width());
  const int bottom = std::min(at.y + 9, picture.height());
  for (const Area line :
       {Area{left, at.y, right - left, 1}, Area{at.x, top, 1, bottom - top}}) {
    IppIMemory<u8> view = viewOf(picture, line);
    Initializer::Fill<u8>(view, grey, rectOfView(line));
  }
}

int main() {
  IppIMemory<u8> picture = coinPicture();
  addNoise(picture, 12, 3);
  IppIMemory<u8> everywhere(picture.size()), marked = picture;
  Initializer::Fill<u8>(everywhere, 255, everywhere.SizeToRoi());

  const Zorvan::MinMaxIndex found =
      Statistic<u8>::MinMaxIndexWithMask(picture, everywhere);
  std::printf("darkest   %3.0f at column %d, row %d\n", found.Min,
              found.MinIndex.x, found.MinIndex.y);
  std::printf("brightest %3.0f at column %d, row %d\n", found.Max,
              found.MaxIndex.x, found.MaxIndex.y);

  drawCross(marked, found.MinIndex, 255);
  drawCross(marked, found.MaxIndex, 0);
  writePng("before.png", picture);
  writePng("after.png", marked);
}
