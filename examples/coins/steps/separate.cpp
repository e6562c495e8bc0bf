#include <algorithm>

#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

std::deque<Object> separate(IppIMemory<u8>& mask) {
  const Zorvan::Rect whole = mask.SizeToRoi();
  IppIMemory<u8> rest = mask, before = mask;  // copies of the pixels
  std::deque<Object> objects;
  // Band by band from the top: what has been searched is never searched again.
  constexpr int kPixels = 4096;
  const int rows = std::max(1, kPixels / mask.width());
  for (int row = 0; row < mask.height(); row += rows) {
    const Area band{0, row, mask.width(), std::min(rows, mask.height() - row)};
    const Zorvan::Rect inBand = Examples::rectOfView(band);
    IppIMemory<u8> left = Examples::viewOf(rest, band);
    while (Statistic<u8>::Max(left, inBand) > 0) {
      const Zorvan::Point seed =
          Statistic<u8>::MinMaxIndexWithMask(left, left, inBand).MaxIndex;
      const Zorvan::ConnectionInfo taken =
          ComputerVision::FloodFill<u8>(rest, {seed.x, row + seed.y}, 0, whole);

      // The object is what the flood has changed: compare within its box.
      const Area box{taken.rect.x, taken.rect.y, taken.rect.width,
                     taken.rect.height};
      const Zorvan::Rect inBox = Examples::rectOfView(box);
      IppIMemory<u8> was = Examples::viewOf(before, box),
                     is = Examples::viewOf(rest, box);
      Object& object = objects.emplace_back();
      object.box = box;
      object.area = taken.area;
      object.mask = IppIMemory<u8>(box.width, box.height);
      IppILogical<u8>::Xor(was, is, object.mask, inBox);
      Initializer::Copy(is, was, inBox);
    }
  }
  return objects;
}

}  // namespace Coins
