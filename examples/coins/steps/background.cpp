#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> background(IppIMemory<u8>& picture) {
  IppIMemory<u8> ground(picture.size());
  // A square of this size does not fit into any coin.
  constexpr Zorvan::Size square{61, 61};
  IppIMorphology<u8>::Open(picture, ground, picture.SizeToRoi(), square);
  return ground;
}

IppIMemory<u8> withoutBackground(IppIMemory<u8>& picture,
                                 IppIMemory<u8>& ground) {
  IppIMemory<u8> flat(picture.size());
  // The first image is subtracted from the second.
  IppIArithmetic<u8>::Subtract(ground, picture, flat, picture.SizeToRoi());
  return flat;
}

}  // namespace Coins
