// Background by opening
//
// Opening with a square that no object can hold leaves the ground alone. Taken
// from the picture, it leaves the objects on an even ground, so that one
// threshold serves all of them.

#include "recipe.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> picture = coinPicture();
  const Rect whole = picture.SizeToRoi();

  IppIMemory<u8> ground(picture.size()), even(picture.size());
  IppIMorphology<u8>::Open(picture, ground, whole, {45, 45});
  // The first image is taken from the second.
  IppIArithmetic<u8>::Subtract(ground, picture, even, whole);

  writePng("before.png", picture);
  writePng("after.png", even);
}
