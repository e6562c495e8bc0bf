#include <algorithm>

#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

std::deque<Object> separate(IppIMemory<u8>& mask) {
  const Zorvan::Rect whole = mask.SizeToRoi();
  IppIMemory<u8> rest = mask, before = mask;  // copies of the pixels
  std::deque<Object> objects;
  // Bands from the top: finished bands are not searched again.
  constexpr int bandPixels = 4096;
  const int rows = std::max(1, bandPixels / mask.width());
  for (int row = 0; row < mask.height(); row += rows) {
    const Area band{0, row, mask.width(), std::min(rows, mask.height() - row)};
    const Zorvan::Rect inBand = Examples::rectOfView(band);
    IppIMemory<u8> bandOfRest = Examples::viewOf(rest, band);
    while (Statistic<u8>::Max(bandOfRest, inBand) > 0) {
      const Zorvan::Point seed =
          Statistic<u8>::MinMaxIndexWithMask(bandOfRest, bandOfRest, inBand)
              .MaxIndex;
      const Zorvan::ConnectionInfo removed =
          ComputerVision::FloodFill<u8>(rest, {seed.x, row + seed.y}, 0, whole);

      // The object is the pixels that the flood fill changed in its box.
      const Area box{removed.rect.x, removed.rect.y, removed.rect.width,
                     removed.rect.height};
      const Zorvan::Rect inBox = Examples::rectOfView(box);
      IppIMemory<u8> old = Examples::viewOf(before, box),
                     changed = Examples::viewOf(rest, box);
      Object& object = objects.emplace_back();
      object.box = box;
      object.area = removed.area;
      object.mask = IppIMemory<u8>(box.width, box.height);
      IppILogical<u8>::Xor(old, changed, object.mask, inBox);
      Initializer::Copy(changed, old, inBox);
    }
  }
  return objects;
}

}  // namespace Coins
