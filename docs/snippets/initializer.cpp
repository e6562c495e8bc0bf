#include "docs/snippets/snippets.h"

namespace Snippets {
namespace {

TEST(Initializer, ACropAwayFromTheOrigin) {
  std::vector<u8> pixels{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  auto picture = wrap(pixels, 6, 2);
  const Area area{3, 0, 2, 2};
  // snippet
  IppIMemory<u8> view = viewOf(picture, area);  // examples/common/region.h
  IppIMemory<u8> cut = Initializer::Allocate<u8>(area.width, area.height);
  Initializer::Copy(view, cut, rectOfView(area));
  // end of snippet
  EXPECT_EQ(pixelsOf(cut), (std::vector<u8>{4, 5, 10, 11}));
}

}  // namespace
}  // namespace Snippets
