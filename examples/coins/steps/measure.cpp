#include <cmath>

#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

Measures measure(IppIMemory<u8>& picture, Object& object) {
  IppIMemory<u8> view = Examples::viewOf(picture, object.box);
  const Zorvan::Rect inBox = Examples::rectOfView(object.box);
  return {
      Statistic<u8>::MeanAndStandardDeviationWithMask(view, object.mask, inBox),
      Statistic<u8>::MinMaxIndexWithMask(view, object.mask, inBox),
      std::sqrt(4 * object.area / 3.14159265358979)};
}

}  // namespace Coins
