#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(GeometryExamples, SizeOfAnImage) {
  //! [Size]
  const Size size{6, 4};
  IppIMemory<u8> image(size);
  EXPECT_EQ(image.width(), 6);
  EXPECT_EQ(image.height(), 4);
  //! [Size]
}

TEST(GeometryExamples, PointOfASeed) {
  //! [Point]
  auto picture = image<u8>({{1, 1, 2}, {1, 2, 2}});
  const Point seed{2, 0};  // column 2, row 0
  ComputerVision::FloodFill<u8>(picture, seed, 9, picture.SizeToRoi());
  expectRows(picture, {{1, 1, 9}, {1, 9, 9}});
  //! [Point]
}

TEST(GeometryExamples, RectOfARegion) {
  //! [Rect]
  auto picture = image<u8>({{1, 1, 1, 1, 1, 1}, {1, 1, 1, 1, 1, 1}, {1, 1, 1, 1, 1, 1}, {1, 1, 1, 1, 1, 1}});
  const Rect rect{1, 2, 3, 2};  // row 1, column 2; 3 pixels wide, 2 high
  Initializer::Fill<u8>(picture, 7, rect);
  expectRows(picture, {{1, 1, 1, 1, 1, 1}, {1, 1, 7, 7, 7, 1}, {1, 1, 7, 7, 7, 1}, {1, 1, 1, 1, 1, 1}});
  //! [Rect]
}

}  // namespace
}  // namespace ReferenceExamples
