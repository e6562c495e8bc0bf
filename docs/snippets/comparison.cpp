#include "docs/snippets/snippets.h"

namespace Snippets {
namespace {

TEST(Comparison, PixelsBetweenTwoLimits) {
  std::vector<float> pixels{49, 50, 200, 201};
  std::vector<u8> low(4), high(4);
  auto src = wrap(pixels, 2, 2);
  auto from = wrap(low, 2, 2), to = wrap(high, 2, 2);
  const Rect rect = src.SizeToRoi();
  // snippet
  Comparer<float>::Compare(src, from, rect, 50, Zorvan::eGreaterEqual);
  Comparer<float>::Compare(src, to, rect, 200, Zorvan::eLessEqual);
  IppILogical<Zorvan::u8>::And(from, to, rect);  // `to` now selects both
  Initializer::FillWithMask<float>(src, to, 0.0f, rect);
  // end of snippet
  EXPECT_EQ(pixels, (std::vector<float>{49, 0, 0, 201}));
}

TEST(Comparison, APictureOfBytes) {
  std::vector<u8> grey{0, 127, 128, 255};
  auto picture = wrap(grey, 2, 2);
  // snippet
  auto values = Initializer::Allocate<float>(picture.width(), picture.height());
  auto all = Initializer::Allocate<Zorvan::u8>(picture.width(), picture.height());
  auto mask = Initializer::Allocate<Zorvan::u8>(picture.width(), picture.height());
  const Zorvan::Rect rect = picture.SizeToRoi();

  Initializer::Fill<float>(values, 0.0f, rect);
  Initializer::Fill<Zorvan::u8>(all, 255, rect);
  IppIArithmetic<Zorvan::u8>::AddWithMask(picture, values, all, rect);
  Comparer<float>::Compare(values, mask, rect, 128, Zorvan::eGreaterEqual);
  // end of snippet
  EXPECT_EQ(pixelsOf(mask), (std::vector<u8>{0, 0, 255, 255}));
}

/// For the limit 128, one bit decides.
TEST(Comparison, OneBit) {
  std::vector<u8> grey{0, 127, 128, 255}, bits(4, 128);
  auto picture = wrap(grey, 2, 2), mask = wrap(bits, 2, 2);
  IppILogical<u8>::And(picture, mask, picture.SizeToRoi());
  EXPECT_EQ(bits, (std::vector<u8>{0, 0, 128, 128}));
}

}  // namespace
}  // namespace Snippets
