#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> fillCoins(IppIMemory<u8>& picture, IppIMemory<u8>& mask) {
  IppIMemory<u8> filled = picture;  // a copy of the pixels
  Initializer::FillWithMask<u8>(filled, mask, 255, filled.SizeToRoi());
  return filled;
}

IppIMemory<u8> paste(IppIMemory<u8>& picture, IppIMemory<u8>& mask,
                     IppIMemory<u8>& ground) {
  IppIMemory<u8> pasted = ground;
  Initializer::CopyWithMask(picture, pasted, mask, pasted.SizeToRoi());
  return pasted;
}

Combined combine(IppIMemory<u8>& mask, IppIMemory<u8>& other) {
  const Zorvan::Rect whole = mask.SizeToRoi();
  return {IppILogical<u8>::And(mask, other, whole, true),
          IppILogical<u8>::Or(mask, other, whole, true),
          IppILogical<u8>::Xor(mask, other, whole, true)};
}

}  // namespace Coins
