#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> edges(IppIMemory<u8>& picture) {
  const Zorvan::Rect whole = picture.SizeToRoi();
  IppIMemory<u8> negative(picture.size());
  IppIMemory<u8> inner(picture.size());
  IppIMemory<u8> outer(picture.size());
  IppILogical<u8>::Not(picture, negative, whole);

  // Negative results saturate to 0 in bytes. The negative picture has them as
  // positive results.
  FilteringFunction::LaplaceBorder3x3<u8>(picture, inner, whole,
                                          Zorvan::eBorderReplicate, 0);
  FilteringFunction::LaplaceBorder3x3<u8>(negative, outer, whole,
                                          Zorvan::eBorderReplicate, 0);
  IppIArithmetic<u8>::Add(inner, outer, whole);
  return outer;
}

}  // namespace Coins
