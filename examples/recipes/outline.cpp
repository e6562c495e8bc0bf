// Outline
//
// The brightest pixel of each neighbourhood minus the darkest one. Even areas
// become black, and every edge becomes a bright line.

#include "recipe.h"

using namespace Recipes;

int main() {
  IppIMemory<u8> picture = coinPicture();
  const Rect whole = picture.SizeToRoi();

  IppIMemory<u8> darkest(picture.size()), outline(picture.size());
  IppIMorphology<u8>::Erode(picture, darkest, whole, {3, 3});
  IppIMorphology<u8>::Dilate(picture, outline, whole, {3, 3});
  // The first image is subtracted from the second, in place.
  IppIArithmetic<u8>::Subtract(darkest, outline, whole);

  writePng("before.png", picture);
  writePng("after.png", outline);
}
