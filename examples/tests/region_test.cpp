// Regions are at their column and row, in tall and in wide images, and never outside.

#include "region.h"

#include <stdexcept>
#include <vector>

#include "check.h"

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
          CHECK(right);
        }
      }
    }
  }
}

void checkRefusals() {
  const IppIMemory<u8> image(7, 3);
  for (const Area area :
       {Area{-1, 0, 2, 2}, Area{0, -1, 2, 2}, Area{6, 0, 2, 1}, Area{0, 2, 1, 2}, Area{0, 0, 8, 1},
        Area{0, 0, 1, 4}, Area{0, 0, 0, 1}, Area{0, 0, 1, 0}, Area{2147483647, 0, 1, 1},
        Area{1, 0, 2147483647, 1}, Area{0, -2147483647, 1, 2147483647}}) {
    CHECK(throws<std::out_of_range>([&] { rectOf(image, area); }));
    CHECK(throws<std::out_of_range>([&] { viewOf(image, area); }));
  }
}

/// A region in the right part of a wide image: it lies inside, is refused as a Rect, and works as a view.
void checkWideImage() {
  IppIMemory<u8> image(7, 3);
  Initializer::Fill<u8>(image, 1, image.SizeToRoi());
  const Area right{5, 0, 2, 2};
  CHECK(throws<IppException>([&] { Initializer::Fill<u8>(image, 9, rectOf(image, right)); }));
  const Area left{1, 1, 2, 2};
  Initializer::Fill<u8>(image, 9, rectOf(image, left));
  const auto pixels = image.buffer();
  for (int i = 0; i < 21; ++i) CHECK(pixels[i] == (contains(left, i % 7, i / 7) ? 9 : 1));
}

void checkViewOutlivesImage() {
  IppIMemory<u8> view;
  {
    IppIMemory<u8> image(4, 4);
    Initializer::Fill<u8>(image, 5, image.SizeToRoi());
    view = viewOf(image, {1, 1, 2, 2});
  }
  CHECK(view.buffer()[0] == 5);
}

}  // namespace

int main() {
  checkAllViews(5, 3);
  checkAllViews(3, 5);
  checkRefusals();
  checkWideImage();
  checkViewOutlivesImage();
  return failures;
}
