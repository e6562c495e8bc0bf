#include <algorithm>
#include <string>

#include "Region.h"
#include "Steps.h"

namespace Coins {

using Examples::Area;
using Zorvan::Ipp::Image::Initializer;

void crop(IppIMemory<u8>& picture, Report& report) {
  const int width = (picture.width() + 1) / 2, height = (picture.height() + 1) / 2;

  // At the origin the copy that makes its own image is a plain crop.
  IppIMemory<u8> quarter;
  double ms = Examples::timed([&] { quarter = Initializer::Copy(picture, {0, 0, width, height}, true); });
  report.add("quarter", quarter, ms, "Copy into a new image, region at the origin");

  // Elsewhere: a view of the region, and an image of the region's size to copy it into.
  const Area middle{picture.width() / 4, picture.height() / 4, width, height};
  IppIMemory<u8> view = Examples::viewOf(picture, middle);
  IppIMemory<u8> cut = Initializer::Allocate<u8>(width, height);
  ms = Examples::timed([&] { Initializer::Copy(view, cut, Examples::rectOfView(middle)); });
  report.add("middle", cut, ms,
             "Copy of the region at column " + std::to_string(middle.column) + ", row " +
                 std::to_string(middle.row));

  // One Rect serves two images of one size.
  IppIMemory<u8> spot = Initializer::Allocate<u8>(picture.width(), picture.height());
  const int shorter = std::min(picture.width(), picture.height()), side = (shorter + 1) / 2;
  const Zorvan::Rect window = Examples::rectOf(picture, {shorter - side, 0, side, side});
  ms = Examples::timed([&] {
    Initializer::Fill<u8>(spot, 0, spot.SizeToRoi());
    Initializer::Copy(picture, spot, window);
  });
  report.add("spot", spot, ms, "Fill with black, then Copy of one region into the same place");
}

}  // namespace Coins
