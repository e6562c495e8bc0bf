#include "Steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> background(IppIMemory<u8>& picture) {
  IppIMemory<u8> ground(picture.size());
  IppIMorphology<u8>::Open(picture, ground, picture.SizeToRoi(), {61, 61});  // wider than any coin
  return ground;
}

IppIMemory<u8> withoutBackground(IppIMemory<u8>& picture, IppIMemory<u8>& ground) {
  IppIMemory<u8> flat(picture.size());
  IppIArithmetic<u8>::Subtract(ground, picture, flat, picture.SizeToRoi());  // picture - ground
  return flat;
}

}  // namespace Coins
