// Threshold to mask
//
// Bytes above a level become 255, the others 0. The level is subtracted, so
// bytes up to it become 0. The others are multiplied by 255, which saturates to
// 255. For float images the Comparer class does it in one call.

#include "recipe.h"

using namespace Recipes;

IppIMemory<u8> above(IppIMemory<u8>& picture, u8 level) {
  const Rect whole = picture.SizeToRoi();
  IppIMemory<u8> mask(picture.size()), factor(picture.size());
  Initializer::Fill<u8>(mask, level, whole);
  Initializer::Fill<u8>(factor, 255, whole);
  // The first image is subtracted from the second.
  IppIArithmetic<u8>::Subtract(mask, picture, mask, whole);
  IppIArithmetic<u8>::Multiply(factor, mask, whole);
  return mask;
}

int main() {
  IppIMemory<u8> picture = coinPicture();
  IppIMemory<u8> mask = above(picture, 130);
  writePng("before.png", picture);
  writePng("after.png", mask);
}
