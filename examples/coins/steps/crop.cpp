#include <algorithm>

#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> cropCorner(IppIMemory<u8>& picture) {
  // For a region at the origin, the copy into a new image is a plain crop.
  return Initializer::Copy(
      picture, {0, 0, (picture.width() + 1) / 2, (picture.height() + 1) / 2},
      true);
}

IppIMemory<u8> cropMiddle(IppIMemory<u8>& picture) {
  const Area middle{picture.width() / 4, picture.height() / 4,
                    (picture.width() + 1) / 2, (picture.height() + 1) / 2};
  // For other regions: copy a view of the region into an image of its size.
  IppIMemory<u8> view = Examples::viewOf(picture, middle);
  IppIMemory<u8> cut(middle.width, middle.height);
  Initializer::Copy(view, cut, Examples::rectOfView(middle));
  return cut;
}

IppIMemory<u8> keepWindow(IppIMemory<u8>& picture) {
  IppIMemory<u8> spot(picture.size());
  Initializer::Fill<u8>(spot, 0, spot.SizeToRoi());
  // One Rect is right for two images of the same size.
  const int shorter = std::min(picture.width(), picture.height()),
            side = (shorter + 1) / 2;
  Initializer::Copy(picture, spot,
                    Examples::rectOf(picture, {shorter - side, 0, side, side}));
  return spot;
}

}  // namespace Coins
