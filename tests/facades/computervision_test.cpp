#include <type_traits>

#include "tests/facades/Support.h"

namespace Zorvan::Test {
namespace {

using Ipp::Image::ComputerVision;

template <class T>
class EachFilledType : public testing::Test {};
using FilledTypes = testing::Types<u8, u16, int, float>;
TYPED_TEST_SUITE(EachFilledType, FilledTypes);

void expectRect(Rect rect, int x, int y, int width, int height) {
  EXPECT_EQ(rect.x, x);
  EXPECT_EQ(rect.y, y);
  EXPECT_EQ(rect.width, width);
  EXPECT_EQ(rect.height, height);
}

TYPED_TEST(EachFilledType, FillsTheAreaAroundTheSeed) {
  using T = TypeParam;
  std::vector<T> pixels = {T(1), T(1), T(2), T(1),  //
                           T(2), T(1), T(2), T(1),  //
                           T(1), T(2), T(1), T(1)};
  auto image = wrap(pixels, 4, 3);
  const ConnectionInfo filled = ComputerVision::FloodFill<T>(image, {1, 1}, T(7), image.SizeToRoi());
  const std::vector<T> expected = {T(7), T(7), T(2), T(1),  //
                                   T(2), T(7), T(2), T(1),  //
                                   T(1), T(2), T(1), T(1)};
  EXPECT_EQ(pixels, expected);
  EXPECT_EQ(filled.area, 3);
  EXPECT_EQ(filled.value[0], 7);
  EXPECT_EQ(filled.value[1], 0);
  EXPECT_EQ(filled.value[2], 0);
  expectRect(filled.rect, 0, 0, 2, 2);
}

TYPED_TEST(EachFilledType, SeedAndRectCountFromTheRegion) {
  using T = TypeParam;
  std::vector<T> pixels(30, T(1));
  auto image = wrap(pixels, 6, 5);
  // Row 1, column 2; 3 wide, 2 high.
  const ConnectionInfo filled = ComputerVision::FloodFill<T>(image, {2, 1}, T(4), {1, 2, 3, 2});
  EXPECT_EQ(filled.area, 6);
  expectRect(filled.rect, 0, 0, 3, 2);
  for (int i = 0; i < 30; ++i) {
    const int row = i / 6, column = i % 6;
    const bool inside = row >= 1 && row <= 2 && column >= 2 && column <= 4;
    EXPECT_EQ(pixels[static_cast<std::size_t>(i)], T(inside ? 4 : 1)) << i;
  }
}

TYPED_TEST(EachFilledType, AFillWithTheSameValueIsAllZero) {
  using T = TypeParam;
  std::vector<T> pixels(6, T(3));
  auto image = wrap(pixels, 3, 2);
  const ConnectionInfo filled = ComputerVision::FloodFill<T>(image, {1, 1}, T(3), image.SizeToRoi());
  EXPECT_EQ(filled.area, 0);
  EXPECT_EQ(filled.value[0], 0);
  expectRect(filled.rect, 0, 0, 0, 0);
  EXPECT_EQ(pixels, std::vector<T>(6, T(3)));
}

TYPED_TEST(EachFilledType, RefusesWhatDoesNotFit) {
  using T = TypeParam;
  std::vector<T> pixels(6, T(3));
  auto image = wrap(pixels, 3, 2);
  const auto fill = [&](Point seed, Rect rect) { ComputerVision::FloodFill<T>(image, seed, T(5), rect); };
  EXPECT_EQ(ippTextOf([&] { fill({0, 0}, {0, 0, 4, 2}); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { fill({0, 0}, {0, 0, 3, 3}); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { fill({0, 0}, {1, 0, 3, 2}); }), rectDoesNotFitText);
  EXPECT_EQ(plainTextOf([&] { fill({0, 0}, {0, 0, 0, 2}); }), "invalid length");
  EXPECT_EQ(plainTextOf([&] { fill({0, 0}, {0, 0, 3, -1}); }), "invalid length");
  const std::string outside =
      "ippStsOutOfRangeErr: Argument is out of range, or point is outside the image( error Code : -11 )";
  EXPECT_EQ(ippTextOf([&] { fill({3, 0}, {0, 0, 3, 2}); }), outside);
  EXPECT_EQ(ippTextOf([&] { fill({0, 2}, {0, 0, 3, 2}); }), outside);
  EXPECT_EQ(ippTextOf([&] { fill({-1, 0}, {0, 0, 3, 2}); }), outside);
  EXPECT_EQ(pixels, std::vector<T>(6, T(3)));

  auto empty = IppIMemory<T>::CreateContainer(nullptr, 3, 2);
  EXPECT_EQ(ippTextOf([&] {
              ComputerVision::FloodFill<T>(empty, {0, 0}, T(5), {0, 0, 3, 2});
            }),
            noBufferText);
}

/// From 2^32 / 6 pixels on a length of 32 bits wraps, for the first of these sizes to a small one. The images
/// have one pixel in memory: a region that is refused is not read, and a fill of one that is not would end at
/// the seed.
TYPED_TEST(EachFilledType, RefusesRegionsWhoseWorkMemoryHasNoLength) {
  using T = TypeParam;
  std::vector<T> pixel = {T(3)};
  for (const Size size : {Size{26755, 26755}, Size{715827883, 1}, Size{1, 715827883}, Size{65536, 65536},
                          Size{46341, 46341}, Size{46341, 46342}, Size{2147483647, 2147483647},
                          Size{357913936, 1}, Size{1, 357913936}, Size{18919, 18919}}) {
    auto image = IppIMemory<T>::CreateContainer(pixel.data(), size);
    EXPECT_EQ(plainTextOf([&] {
                ComputerVision::FloodFill<T>(image, {0, 0}, T(3), image.SizeToRoi());
              }),
              "invalid length")
        << size.width << " x " << size.height;
  }
}

/// The work memory is larger than a buffer can be. The image has one pixel in memory, at which the fill ends.
TEST(FloodFill, FillsRegionsWithMoreWorkMemoryThanABufferHolds) {
  std::vector<u8> pixel = {3};
  auto image = IppIMemory<u8>::CreateContainer(pixel.data(), 17000, 17000);
  EXPECT_EQ(ComputerVision::FloodFill<u8>(image, {0, 0}, 3, image.SizeToRoi()).area, 0);
}

/// Three rows, the middle one full, single pixels at every second column above and below: more runs are
/// pending at the same time than a quarter of the pixels.
TYPED_TEST(EachFilledType, FillsACombOnBothSides) {
  using T = TypeParam;
  for (const int width : {3, 5, 101, 1001, 4095}) {
    std::vector<T> pixels;
    for (int i = 0; i < 3 * width; ++i) {
      const bool inside = i / width == 1 || i % width % 2 == 0;
      pixels.push_back(inside ? T(1) : T(2));
    }
    auto image = wrap(pixels, width, 3);
    const ConnectionInfo filled =
        ComputerVision::FloodFill<T>(image, {width / 2, 1}, T(9), image.SizeToRoi());
    EXPECT_EQ(filled.area, width + 2 * ((width + 1) / 2));
    expectRect(filled.rect, 0, 0, width, 3);
  }
}

TEST(FloodFill, ReportsIntegersThatDoubleHoldsExactly) {
  std::vector<int> pixels(4, -2);
  auto image = wrap(pixels, 2, 2);
  EXPECT_EQ(ComputerVision::FloodFill<int>(image, {0, 0}, -2147483647, image.SizeToRoi()).value[0],
            -2147483647);
}

TEST(ComputerVisionClass, AssignmentsDoNothing) {
  ComputerVision a, b;
  a = b;
  a = ComputerVision();
  EXPECT_TRUE(std::is_empty_v<ComputerVision>);
}

}  // namespace
}  // namespace Zorvan::Test
