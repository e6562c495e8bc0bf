#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(InitializerExamples, Allocated) {
  //! [Allocate(width, height)]
  IppIMemory<u16> image = Initializer::Allocate<u16>(6, 4);
  EXPECT_EQ(image.width(), 6);
  EXPECT_EQ(image.height(), 4);
  //! [Allocate(width, height)]
}

TEST(InitializerExamples, ARegionCopied) {
  //! [Copy(src, dst, rect)]
  auto src = image<u8>({{1, 2, 3}, {4, 5, 6}});
  auto dst = image<u8>({{0, 0, 0}, {0, 0, 0}});
  Initializer::Copy(src, dst, {0, 1, 2, 1});  // from row 0, column 1; 2 wide, 1 high
  expectRows(dst, {{0, 2, 3}, {0, 0, 0}});
  //! [Copy(src, dst, rect)]
}

TEST(InitializerExamples, AWholeImageCopied) {
  //! [Copy(src, dst)]
  auto src = image<u8>({{1, 2}});
  auto dst = image<u8>({{0, 0, 0}, {0, 0, 0}});
  Initializer::Copy(src, dst);
  expectRows(dst, {{1, 2, 0}, {0, 0, 0}});
  //! [Copy(src, dst)]
}

TEST(InitializerExamples, ANewImage) {
  //! [Copy(src, rect, sizeFromRect)]
  auto src = image<u8>({{1, 2, 3}, {4, 5, 6}});
  IppIMemory<u8> left = Initializer::Copy(src, {0, 0, 2, 2}, true);
  expectRows(left, {{1, 2}, {4, 5}});
  //! [Copy(src, rect, sizeFromRect)]
}

TEST(InitializerExamples, SelectedPixelsCopied) {
  //! [CopyWithMask(src, dst, mask, rect)]
  auto src = image<u8>({{1, 2, 3}});
  auto dst = image<u8>({{7, 8, 9}});
  auto mask = image<u8>({{255, 0, 1}});
  Initializer::CopyWithMask(src, dst, mask, dst.SizeToRoi());
  expectRows(dst, {{1, 8, 3}});
  //! [CopyWithMask(src, dst, mask, rect)]
}

TEST(InitializerExamples, ARegionFilled) {
  //! [Fill(image, value, rect)]
  auto picture = image<float>({{1, 2, 3}, {4, 5, 6}});
  Initializer::Fill<float>(picture, 0.5F, {1, 0, 2, 1});  // from row 1, column 0; 2 wide, 1 high
  expectRows(picture, {{1, 2, 3}, {0.5F, 0.5F, 6}});
  //! [Fill(image, value, rect)]
}

TEST(InitializerExamples, SelectedPixelsFilled) {
  //! [FillWithMask(image, mask, value, rect)]
  auto picture = image<u8>({{1, 2, 3}});
  auto mask = image<u8>({{255, 0, 1}});
  Initializer::FillWithMask<u8>(picture, mask, 9, picture.SizeToRoi());
  expectRows(picture, {{9, 2, 9}});
  //! [FillWithMask(image, mask, value, rect)]
}

TEST(InitializerExamples, IntegersConverted) {
  //! [Convert(src, dst, rect)]
  auto numbers = image<int>({{-5, 100, 300}});
  auto bytes = image<u8>({{0, 0, 0}});
  auto floats = image<float>({{0, 0, 0}});
  Initializer::Convert(numbers, bytes, numbers.SizeToRoi());
  Initializer::Convert(numbers, floats, numbers.SizeToRoi());
  expectRows(bytes, {{0, 100, 255}});
  expectRows(floats, {{-5, 100, 300}});
  //! [Convert(src, dst, rect)]
}

TEST(InitializerExamples, Objects) {
  //! [Initializer()]
  std::vector<Initializer> objects(2);  // possible, but operations are static: no object is needed
  objects.push_back(objects[0]);
  objects.push_back(Initializer());
  EXPECT_EQ(objects.size(), 4U);
  //! [Initializer()]
}

TEST(InitializerExamples, Assignments) {
  //! [operator=(other)]
  Initializer first, second;
  second = first;
  second = Initializer();
  //! [operator=(other)]
}

}  // namespace
}  // namespace ReferenceExamples
