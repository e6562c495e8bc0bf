#include <memory>
#include <utility>

#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(IppIMemoryExamples, Empty) {
  //! [IppIMemory()]
  IppIMemory<u8> image;
  EXPECT_EQ(image.width(), 0);
  EXPECT_EQ(image.buffer(), nullptr);
  image = IppIMemory<u8>(6, 4);
  EXPECT_EQ(image.width(), 6);
  //! [IppIMemory()]
}

TEST(IppIMemoryExamples, OfASize) {
  //! [IppIMemory(size)]
  IppIMemory<u8> picture(6, 4);
  IppIMemory<float> floats(picture.size());  // as large as the picture
  EXPECT_EQ(floats.width(), 6);
  EXPECT_EQ(floats.height(), 4);
  //! [IppIMemory(size)]
}

TEST(IppIMemoryExamples, OfAWidthAndHeight) {
  //! [IppIMemory(width, height)]
  IppIMemory<u8> image(6, 4);
  Initializer::Fill<u8>(image, 0, image.SizeToRoi());  // its pixels are not set before
  EXPECT_EQ(image.buffer()[23], 0);
  //! [IppIMemory(width, height)]
}

TEST(IppIMemoryExamples, AroundASharedBlockOfASize) {
  //! [IppIMemory(size, buffer, step)]
  const Size size{3, 2};
  std::shared_ptr<u8[]> block(new u8[6]{1, 2, 3, 4, 5, 6});
  IppIMemory<u8> image(size, block, 3);
  block.reset();  // the image keeps the pixels
  EXPECT_EQ(Statistic<u8>::Max(image, image.SizeToRoi()), 6);
  //! [IppIMemory(size, buffer, step)]
}

TEST(IppIMemoryExamples, AroundASharedBlock) {
  //! [IppIMemory(width, height, buffer, step)]
  std::shared_ptr<u8[]> block(new u8[6]{1, 2, 3, 4, 5, 6});
  IppIMemory<u8> image(3, 2, block, 3);
  Initializer::Fill<u8>(image, 9, {1, 0, 2, 1});  // row 1, columns 0 and 1
  EXPECT_EQ(block[2], 3);
  EXPECT_EQ(block[3], 9);
  //! [IppIMemory(width, height, buffer, step)]
}

TEST(IppIMemoryExamples, Copied) {
  //! [IppIMemory(source)]
  auto picture = image<u8>({{1, 2, 3}});
  IppIMemory<u8> copy = picture;
  Initializer::Fill<u8>(copy, 9, copy.SizeToRoi());
  expectRows(copy, {{9, 9, 9}});
  expectRows(picture, {{1, 2, 3}});  // it has its own pixels
  //! [IppIMemory(source)]
}

TEST(IppIMemoryExamples, Assigned) {
  //! [operator=(source)]
  auto picture = image<u8>({{1, 2, 3}});
  IppIMemory<u8> same;
  same = picture;
  Initializer::Fill<u8>(same, 9, same.SizeToRoi());
  expectRows(picture, {{9, 9, 9}});  // both have the same pixels
  //! [operator=(source)]
}

TEST(IppIMemoryExamples, Released) {
  //! [~IppIMemory()]
  std::shared_ptr<u8[]> block;
  {
    auto picture = image<u8>({{1, 2, 3}});
    block = picture.buffer();
  }
  EXPECT_EQ(block[2], 3);  // `block` still shares the pixels; without it they would be freed here
  //! [~IppIMemory()]
}

TEST(IppIMemoryExamples, Width) {
  //! [width()]
  const IppIMemory<u8> image(6, 4);
  EXPECT_EQ(image.width(), 6);
  //! [width()]
}

TEST(IppIMemoryExamples, Height) {
  //! [height()]
  const IppIMemory<u8> image(6, 4);
  EXPECT_EQ(image.height(), 4);
  //! [height()]
}

TEST(IppIMemoryExamples, WidthAndHeight) {
  //! [size()]
  const IppIMemory<u8> image(6, 4);
  const Size size = image.size();
  EXPECT_EQ(size.width * size.height, 24);
  //! [size()]
}

TEST(IppIMemoryExamples, Step) {
  //! [step()]
  const IppIMemory<u8> image(100, 4);
  EXPECT_EQ(image.step(), 128);       // of the block, a multiple of 64
  EXPECT_EQ(image.imageStep(), 100);  // of the pixels
  //! [step()]
}

TEST(IppIMemoryExamples, ImageStep) {
  //! [imageStep()]
  const IppIMemory<float> image(100, 4);
  EXPECT_EQ(image.imageStep(), 400);  // a float has 4 bytes
  //! [imageStep()]
}

TEST(IppIMemoryExamples, Pixels) {
  //! [buffer()]
  IppIMemory<u8> image(6, 4);
  const std::shared_ptr<u8[]> pixels = image.buffer();
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 6; ++column) pixels[row * 6 + column] = u8(10 * row + column);
  }
  EXPECT_EQ(Statistic<u8>::Max(image, image.SizeToRoi()), 35);
  //! [buffer()]
}

TEST(IppIMemoryExamples, WholeImage) {
  //! [SizeToRoi()]
  IppIMemory<u8> image(6, 4);
  const Rect whole = image.SizeToRoi();
  EXPECT_EQ(whole.x, 0);
  EXPECT_EQ(whole.y, 0);
  EXPECT_EQ(whole.width, 6);
  EXPECT_EQ(whole.height, 4);
  //! [SizeToRoi()]
}

TEST(IppIMemoryExamples, AddressOfARegion) {
  //! [ToIppStream(rect)]
  auto picture = image<u8>({{0, 1, 2, 3}, {10, 11, 12, 13}, {20, 21, 22, 23}});
  const Rect rect{2, 1, 3, 1};  // row 2, column 1
  EXPECT_EQ(*picture.ToIppStream(rect), 21);
  //! [ToIppStream(rect)]
}

TEST(IppIMemoryExamples, BlockOfASize) {
  //! [Allocate(size, step)]
  int step = 0;
  const Size size{100, 4};
  auto block = IppIMemory<u8>::Allocate(size, step);
  EXPECT_EQ(step, 128);
  IppIMemory<u8> image(size, std::move(block), step);
  EXPECT_EQ(image.step(), 128);
  //! [Allocate(size, step)]
}

TEST(IppIMemoryExamples, Block) {
  //! [Allocate(width, height, step)]
  int step = 0;
  auto block = IppIMemory<float>::Allocate(10, 4, step);
  EXPECT_EQ(step, 64);  // ten floats are 40 bytes, rounded up
  block[39] = 1.5F;     // the last pixel: rows have no gap
  //! [Allocate(width, height, step)]
}

TEST(IppIMemoryExamples, AroundMemoryOfTheCaller) {
  //! [CreateContainer(pointer, width, height)]
  u8 pixels[] = {1, 2, 3,  //
                 4, 5, 6};
  auto image = IppIMemory<u8>::CreateContainer(pixels, 3, 2);
  Initializer::Fill<u8>(image, 9, {1, 1, 2, 1});  // row 1, columns 1 and 2
  EXPECT_EQ(pixels[3], 4);
  EXPECT_EQ(pixels[4], 9);
  EXPECT_EQ(pixels[5], 9);
  //! [CreateContainer(pointer, width, height)]
}

TEST(IppIMemoryExamples, AroundMemoryOfTheCallerOfASize) {
  //! [CreateContainer(pointer, size)]
  std::vector<float> pixels(6, 0.5F);  // must outlive the image
  const Size size{3, 2};
  auto image = IppIMemory<float>::CreateContainer(pixels.data(), size);
  IppIArithmetic<float>::AddC(image, 1, image.SizeToRoi());
  EXPECT_EQ(pixels[5], 1.5F);
  //! [CreateContainer(pointer, size)]
}

}  // namespace
}  // namespace ReferenceExamples
