#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> fillHoles(IppIMemory<u8>& mask) {
  // A frame of one pixel connects everything outside, and contains the seed.
  IppIMemory<u8> framed(mask.width() + 2, mask.height() + 2);
  Initializer::Fill<u8>(framed, 0, framed.SizeToRoi());
  IppIMemory<u8> inner =
      Examples::viewOf(framed, {1, 1, mask.width(), mask.height()});
  Initializer::Copy(mask, inner, mask.SizeToRoi());

  // After the flood fill from the corner, only the holes are black.
  ComputerVision::FloodFill<u8>(framed, {0, 0}, 255, framed.SizeToRoi());
  IppIMemory<u8> filled(mask.size());
  IppILogical<u8>::Not(inner, filled, mask.SizeToRoi());
  IppILogical<u8>::Or(mask, filled, mask.SizeToRoi());
  return filled;
}

}  // namespace Coins
