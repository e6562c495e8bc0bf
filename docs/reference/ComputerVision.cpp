#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(ComputerVisionExamples, FilledArea) {
  //! [ConnectionInfo]
  auto picture = image<u8>({{1, 0, 0}, {1, 0, 0}});
  const ConnectionInfo filled = ComputerVision::FloodFill<u8>(picture, {1, 0}, 9, picture.SizeToRoi());
  EXPECT_EQ(filled.area, 4);
  EXPECT_EQ(filled.value[0], 9);
  EXPECT_EQ(filled.rect.x, 1);  // the first column
  EXPECT_EQ(filled.rect.y, 0);  // the first row
  EXPECT_EQ(filled.rect.width, 2);
  EXPECT_EQ(filled.rect.height, 2);
  //! [ConnectionInfo]
}

TEST(ComputerVisionExamples, AConnectedArea) {
  //! [FloodFill(image, seed, value, rect)]
  auto picture = image<u8>({{0, 0, 5, 0}, {5, 5, 0, 0}});
  ComputerVision::FloodFill<u8>(picture, {0, 0}, 9, picture.SizeToRoi());  // from column 0, row 0
  expectRows(picture, {{9, 9, 5, 0},                                       // corners do not connect
                       {5, 5, 0, 0}});
  //! [FloodFill(image, seed, value, rect)]
}

TEST(ComputerVisionExamples, Objects) {
  //! [ComputerVision()]
  std::vector<ComputerVision> objects(2);  // possible, but operations are static: no object is needed
  objects.push_back(objects[0]);
  objects.push_back(ComputerVision());
  EXPECT_EQ(objects.size(), 4U);
  //! [ComputerVision()]
}

TEST(ComputerVisionExamples, Assignments) {
  //! [operator=(other)]
  ComputerVision first, second;
  second = first;
  second = ComputerVision();
  //! [operator=(other)]
}

}  // namespace
}  // namespace ReferenceExamples
