#include <algorithm>

#include "digits.h"
#include "steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

IppIMemory<u8> drawBoxes(IppIMemory<u8>& picture,
                         const std::deque<Object>& objects) {
  IppIMemory<u8> drawn = picture;  // a copy of the pixels
  const auto fill = [&](Area area, u8 value) {
    IppIMemory<u8> view = Examples::viewOf(drawn, area);
    Initializer::Fill<u8>(view, value, Examples::rectOfView(area));
  };
  int number = 0;
  for (const Object& object : objects) {
    const auto [column, row, width, height] = object.box;
    fill({column, row, width, 1}, 255);
    fill({column, row + height - 1, width, 1}, 255);
    fill({column, row, 1, height}, 255);
    fill({column + width - 1, row, 1, height}, 255);
    drawNumber(drawn, ++number, column + 2, row + 2);
  }
  return drawn;
}

IppIMemory<u8> drawLabels(IppIMemory<u8>& mask, std::deque<Object>& objects) {
  IppIMemory<int> labels(mask.size());
  Initializer::Fill<int>(labels, 0, mask.SizeToRoi());
  const int step = std::max<int>(1, 220 / static_cast<int>(objects.size() + 1));
  int value = 30;
  for (Object& object : objects) {
    value += step;
    IppIMemory<int> view = Examples::viewOf(labels, object.box);
    Initializer::FillWithMask<int>(view, object.mask, value,
                                   Examples::rectOfView(object.box));
  }
  IppIMemory<u8> shown(mask.size());
  // Labels above 255 saturate to 255.
  Initializer::Convert(labels, shown, mask.SizeToRoi());
  return shown;
}

}  // namespace Coins
