#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> clean(IppIMemory<u8>& mask, int side) {
  const Zorvan::Rect whole = mask.SizeToRoi();
  IppIMemory<u8> opened(mask.size());
  IppIMemory<u8> closed(mask.size());
  IppIMorphology<u8>::Open(mask, opened, whole, {side, side});
  IppIMorphology<u8>::Close(opened, closed, whole, {3, 3});
  return closed;
}

}  // namespace Coins
