// Regions off the origin
//
// A Rect has its row before its column, and the test of it swaps the two. On
// images that are not square the test refuses some regions that lie inside, and
// accepts some that do not. rectOf() takes column and row, and tests them
// first. viewOf() makes an image that begins at the region; it works for every
// region inside.

#include <cstdio>

#include "recipe.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> picture = coinPicture();
  const IppIMemory<u8> before = picture;  // a copy of the pixels

  // Column 20, row 40: a Rect with x = 40 and y = 20.
  const Area first{20, 40, 60, 30};
  Initializer::Fill<u8>(picture, 255, rectOf(picture, first));

  // Inside the picture, and refused: y + height would be 200 + 30.
  const Area second{200, 100, 30, 30};
  try {
    Initializer::Fill<u8>(picture, 255, rectOf(picture, second));
  } catch (const Zorvan::Ipp::IppException& refused) {
    std::printf("%s\n", refused.what());
  }
  IppIMemory<u8> view = viewOf(picture, second);
  Initializer::Fill<u8>(view, 255, rectOfView(second));

  try {
    rectOf(picture, {200, 100, 60, 30});
  } catch (const std::out_of_range& outside) {
    std::printf("%s\n", outside.what());
  }
  writePng("before.png", before);
  writePng("after.png", picture);
}
