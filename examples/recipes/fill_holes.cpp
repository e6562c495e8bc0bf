// Fill holes
//
// The outside is flooded from a corner. What the flood does not reach, and is
// not an object, is a hole. A frame of one pixel joins all that lies outside,
// also where objects touch the edge.

#include "recipe.h"

using namespace Recipes;

IppIMemory<u8> withoutHoles(IppIMemory<u8>& mask) {
  IppIMemory<u8> framed(mask.width() + 2, mask.height() + 2);
  Initializer::Fill<u8>(framed, 0, framed.SizeToRoi());
  IppIMemory<u8> inner = viewOf(framed, {1, 1, mask.width(), mask.height()});
  Initializer::Copy(mask, inner, mask.SizeToRoi());

  ComputerVision::FloodFill<u8>(framed, {0, 0}, 255, framed.SizeToRoi());

  // Holes are what is still black.
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
