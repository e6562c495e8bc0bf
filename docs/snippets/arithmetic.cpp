#include <cmath>

#include "docs/snippets/snippets.h"

namespace Snippets {
namespace {

TEST(Arithmetic, TheFirstImageIsSubtractedAndIsTheDivisor) {
  std::vector<u8> beneath{1, 2, 3, 4}, all{11, 22, 33, 3}, rest(4);
  std::vector<float> times{2, 4, 5, 10}, light{4, 4, 10, 5};
  auto background = wrap(beneath, 2, 2), whole = wrap(all, 2, 2), difference = wrap(rest, 2, 2);
  auto exposure = wrap(times, 2, 2), picture = wrap(light, 2, 2);
  const Rect rect = picture.SizeToRoi();
  // snippet
  IppIArithmetic<u8>::Subtract(background, whole, difference, rect);  // difference = whole - background
  IppIArithmetic<float>::Divide(exposure, picture, rect);             // picture = picture / exposure
  // end of snippet
  EXPECT_EQ(rest, (std::vector<u8>{10, 20, 30, 0}));
  const std::vector<float> expected{2, 1, 2, 0.5F};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(light[i], expected[i], 1e-5F);
}

void divide(IppIMemory<float>& weights, IppIMemory<float>& sums, IppIMemory<float>& means, Rect rect) {
  // snippet
  try {
    IppIArithmetic<float>::Divide(weights, sums, means, rect);
  } catch (const IppException& exception) {
    if (codeOf(exception) != 2) throw;
    // Some weights are 0: the means are infinite or NaN there, and correct elsewhere.
  }
  // end of snippet
}

TEST(Arithmetic, AWarningIsCaughtAndAWrongRegionIsNot) {
  std::vector<float> w{2, 0, 0, 1}, s{4, 5, 0, 3}, m(4);
  auto weights = wrap(w, 2, 2), sums = wrap(s, 2, 2), means = wrap(m, 2, 2);
  divide(weights, sums, means, means.SizeToRoi());
  EXPECT_NEAR(m[0], 2, 1e-5F);
  EXPECT_TRUE(std::isinf(m[1]));
  EXPECT_TRUE(std::isnan(m[2]));
  EXPECT_NEAR(m[3], 3, 1e-5F);
  EXPECT_EQ(raisedCode([&] { divide(weights, sums, means, {0, 0, 3, 2}); }), 29);
  EXPECT_EQ(raisedCode([&] { divide(weights, sums, means, {0, 0, 0, 2}); }), -6);
}

TEST(Arithmetic, AnAddendMadeByTheCaller) {
  std::vector<u8> pixels{1, 2, 250, 4}, selected{0, 1, 255, 0};
  auto image = wrap(pixels, 2, 2), mask = wrap(selected, 2, 2);
  const Rect rect = image.SizeToRoi();
  const u8 value = 10;
  // snippet
  IppIMemory<u8> addend = Initializer::Allocate<u8>(image.width(), image.height());
  Initializer::Fill<u8>(addend, 0, addend.SizeToRoi());
  Initializer::FillWithMask<u8>(addend, mask, value, rect);
  IppIArithmetic<u8>::Add(addend, image, rect);
  // end of snippet
  EXPECT_EQ(pixels, (std::vector<u8>{1, 12, 255, 4}));
}

}  // namespace
}  // namespace Snippets
