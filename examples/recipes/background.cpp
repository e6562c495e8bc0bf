// Background by opening
//
// An opening with a square that does not fit into any object keeps only the
// background. The picture minus the background shows the objects on an even
// background, where one threshold is right for all of them.

#include "recipe.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> picture = coinPicture();
  const Rect whole = picture.SizeToRoi();

  IppIMemory<u8> background(picture.size()), even(picture.size());
  IppIMorphology<u8>::Open(picture, background, whole, {45, 45});
  // The first image is subtracted from the second.
  IppIArithmetic<u8>::Subtract(background, picture, even, whole);

  writePng("before.png", picture);
  writePng("after.png", even);
}
