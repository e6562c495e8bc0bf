// Fill holes
//
// A flood fill from a corner fills the outside. Pixels that it does not reach
// and that are not part of an object are holes. A frame of one pixel connects
// the whole outside, also where objects touch the edge.

#include "recipe.h"

using namespace Recipes;

IppIMemory<u8> withoutHoles(IppIMemory<u8>& mask) {
  IppIMemory<u8> framed(mask.width() + 2, mask.height() + 2);
  Initializer::Fill<u8>(framed, 0, framed.SizeToRoi());
  IppIMemory<u8> inner = viewOf(framed, {1, 1, mask.width(), mask.height()});
  Initializer::Copy(mask, inner, mask.SizeToRoi());

  ComputerVision::FloodFill<u8>(framed, {0, 0}, 255, framed.SizeToRoi());

  // Only the holes are still black.
  IppIMemory<u8> filled(mask.size());
  IppILogical<u8>::Not(inner, filled, mask.SizeToRoi());
  IppILogical<u8>::Or(mask, filled, mask.SizeToRoi());
  return filled;
}

int main() {
  IppIMemory<u8> mask = ringMask();
  writePng("before.png", mask);
  writePng("after.png", withoutHoles(mask));
}
