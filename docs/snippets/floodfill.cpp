#include "docs/snippets/snippets.h"

namespace Snippets {
namespace {

TEST(FloodFill, APartOfAnImage) {
  std::vector<u8> pixels(300 * 200, 1);
  auto image = wrap(pixels, 300, 200);
  for (std::size_t i = 0; i < 3; ++i) pixels[45 * 300 + 12 + i] = 9;
  // snippet
  // A region 200 wide and 100 high at row 40, column 10; the seed is in row 45, column 12 of the image.
  const ConnectionInfo filled = ComputerVision::FloodFill<u8>(image, {2, 5}, 255, {40, 10, 200, 100});
  // end of snippet
  EXPECT_EQ(filled.area, 3);
  EXPECT_EQ(pixels[45 * 300 + 14], 255);
  EXPECT_EQ(filled.rect.x, 2);
  EXPECT_EQ(filled.rect.y, 5);
  EXPECT_EQ(filled.rect.width, 3);
}

}  // namespace
}  // namespace Snippets
