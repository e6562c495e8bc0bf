#include "Steps.h"

namespace Coins {

using namespace Zorvan::Ipp::Image;

std::deque<Object> separate(IppIMemory<u8>& mask) {
  const Zorvan::Rect whole = mask.SizeToRoi();
  IppIMemory<u8> rest = mask, before = mask;  // copies of the pixels
  std::deque<Object> objects;
  while (Statistic<u8>::Max(rest, whole) > 0) {
    const Zorvan::Point seed =
        Statistic<u8>::MinMaxIndexWithMask(rest, rest).MaxIndex;
    const Zorvan::ConnectionInfo taken =
        ComputerVision::FloodFill<u8>(rest, seed, 0, whole);

    // The object is what the flood has changed. The work ahead is done in its
    // box alone.
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
  return objects;
}

}  // namespace Coins
