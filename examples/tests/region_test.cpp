// Regions are at their column and row, in tall and in wide images, and never outside.

#include "region.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace {

using Examples::Area;
using Examples::rectOf;
using Examples::rectOfView;
using Examples::viewOf;
using Zorvan::u8;
using Zorvan::Ipp::IppException;
using Zorvan::Ipp::Image::Initializer;
using Zorvan::Ipp::Image::IppIMemory;

bool contains(Area area, int column, int row) {
  return column >= area.column && column < area.column + area.width && row >= area.row &&
         row < area.row + area.height;
}

/// Fills every region of a small image through a view, and compares all pixels and those after the image.
void checkAllViews(int width, int height) {
  for (int column = 0; column < width; ++column) {
    for (int row = 0; row < height; ++row) {
      for (int w = 1; column + w <= width; ++w) {
        for (int h = 1; row + h <= height; ++h) {
          const Area area{column, row, w, h};
          std::vector<u8> pixels(static_cast<std::size_t>(width * (height + 1)), 1);
          IppIMemory<u8> image = IppIMemory<u8>::CreateContainer(pixels.data(), width, height);
          IppIMemory<u8> view = viewOf(image, area);
          Initializer::Fill<u8>(view, 9, rectOfView(area));
          bool right = true;
          for (int i = 0; i < width * (height + 1); ++i) {
            right = right &&
                    pixels[static_cast<std::size_t>(i)] == (contains(area, i % width, i / width) ? 9 : 1);
          }
          EXPECT_TRUE(right);
        }
      }
    }
  }
}

TEST(Region, IsAtItsColumnAndRow) {
  checkAllViews(5, 3);
  checkAllViews(3, 5);
}

TEST(Region, IsRefusedOutside) {
  const IppIMemory<u8> image(7, 3);
  for (const Area area :
       {Area{-1, 0, 2, 2}, Area{0, -1, 2, 2}, Area{6, 0, 2, 1}, Area{0, 2, 1, 2}, Area{0, 0, 8, 1},
        Area{0, 0, 1, 4}, Area{0, 0, 0, 1}, Area{0, 0, 1, 0}, Area{2147483647, 0, 1, 1},
        Area{1, 0, 2147483647, 1}, Area{0, -2147483647, 1, 2147483647}}) {
    EXPECT_THROW(rectOf(image, area), std::out_of_range);
    EXPECT_THROW(viewOf(image, area), std::out_of_range);
  }
}

TEST(Region, InTheRightPartOfAWideImageNeedsAView) {
  IppIMemory<u8> image(7, 3);
  Initializer::Fill<u8>(image, 1, image.SizeToRoi());
  const Area right{5, 0, 2, 2};
  EXPECT_THROW(Initializer::Fill<u8>(image, 9, rectOf(image, right)), IppException);
  const Area left{1, 1, 2, 2};
  Initializer::Fill<u8>(image, 9, rectOf(image, left));
  const auto pixels = image.buffer();
  for (int i = 0; i < 21; ++i) EXPECT_EQ(pixels[i], (contains(left, i % 7, i / 7) ? 9 : 1));
}

TEST(Region, AViewOutlivesItsImage) {
  IppIMemory<u8> view;
  {
    IppIMemory<u8> image(4, 4);
    Initializer::Fill<u8>(image, 5, image.SizeToRoi());
    view = viewOf(image, {1, 1, 2, 2});
  }
  EXPECT_EQ(view.buffer()[0], 5);
}

}  // namespace
