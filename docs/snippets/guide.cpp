#include "docs/snippets/snippets.h"

namespace Snippets {
namespace {

TEST(Guide, TwoWaysToAnImage) {
  u8 pixels[640 * 480] = {5};
  // snippet
  using namespace Zorvan::Ipp::Image;

  auto owned = Initializer::Allocate<Zorvan::u8>(640, 480);  // memory of the library, not initialised
  auto wrapped = IppIMemory<Zorvan::u8>::CreateContainer(pixels, 640, 480);  // your memory
  // end of snippet
  EXPECT_EQ(owned.width(), 640);
  EXPECT_TRUE(owned.buffer());
  EXPECT_EQ(wrapped.buffer().get(), pixels);
}

TEST(Guide, RegionsInTheirPlaces) {
  const int column = 2, row = 1, width = 3, height = 2;
  std::vector<u8> pixels(8 * 4, 1), few(3 * 2);
  auto image = wrap(pixels, 8, 4);
  auto cut = wrap(few, 3, 2);
  // snippet
  Zorvan::Rect rect = rectOf(image, Area{column, row, width, height});  // x is the row, y the column
  Initializer::Fill<Zorvan::u8>(image, 7, rect);
  // end of snippet
  for (int i = 0; i < 32; ++i) {
    const bool inside = i / 8 >= row && i / 8 < row + height && i % 8 >= column && i % 8 < column + width;
    EXPECT_EQ(pixels[static_cast<std::size_t>(i)], inside ? 7 : 1);
  }

  const Area area{5, 0, 3, 2};
  EXPECT_EQ(raisedCode([&] { Initializer::Fill<u8>(image, 7, rectOf(image, area)); }), 29);
  pixels[5] = 3;
  pixels[15] = 4;
  // snippet
  IppIMemory<Zorvan::u8> view = viewOf(image, area);  // begins at the region's first pixel
  Initializer::Copy(view, cut, rectOfView(area));     // every image can have its own place
  // end of snippet
  EXPECT_EQ(few, (std::vector<u8>{3, 1, 1, 1, 1, 4}));
}

/// Runs an opening, and records its exception.
void open(IppIMemory<u8>& src, IppIMemory<u8>& dst, Rect rect, std::vector<std::string>& seen) {
  // snippet
  try {
    IppIMorphology<Zorvan::u8>::Open(src, dst, rect, {3, 3});
  } catch (const IppException& exception) {  // a status: 29 where the region does not fit
    seen.push_back("code " + std::to_string(codeOf(exception)));
  } catch (const std::exception& exception) {  // only a text: "Morph border get size error."
    seen.push_back(exception.what());
  }
  // end of snippet
}

TEST(Guide, TwoTypesOfFailures) {
  std::vector<u8> pixels(8 * 4, 1);
  auto image = wrap(pixels, 8, 4);
  std::vector<std::string> seen;
  open(image, image, {0, 0, 9, 4}, seen);
  open(image, image, {0, 0, 0, 4}, seen);
  open(image, image, {0, 0, 8, 4}, seen);
  EXPECT_EQ(seen, (std::vector<std::string>{"code 29", "Morph border get size error."}));
}

/// The four regions that the guide draws in an image 8 wide and 4 high.
TEST(Guide, TheTestOfRegions) {
  std::vector<u8> pixels(8 * 8, 1);  // memory after the image, for regions that leave it
  auto image = wrap(pixels, 8, 4);
  const auto filled = [&](Rect rect) {
    pixels.assign(64, 1);
    const int code = raisedCode([&] { Initializer::Fill<u8>(image, 7, rect); });
    std::vector<int> places;
    for (int i = 0; i < 64; ++i) {
      if (pixels[static_cast<std::size_t>(i)] == 7) places.push_back(i);
    }
    return code == 0 ? places : std::vector<int>{-code};
  };
  EXPECT_EQ(filled({1, 2, 3, 2}), (std::vector<int>{10, 11, 12, 18, 19, 20}));
  EXPECT_EQ(filled({0, 5, 3, 2}), (std::vector<int>{-29}));
  EXPECT_EQ(filled({3, 0, 2, 3}), (std::vector<int>{24, 25, 32, 33, 40, 41}));
  EXPECT_EQ(filled({0, 1, 8, 2}), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
}

}  // namespace
}  // namespace Snippets
