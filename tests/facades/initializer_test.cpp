#include <cstdlib>
#include <limits>
#include <new>
#include <type_traits>

#include "tests/facades/Support.h"

namespace Zorvan::Test {
namespace {

using Ipp::Image::Initializer;

template <class T>
class EachPixelType : public testing::Test {};
using PixelTypes = testing::Types<u8, u16, s16, int, float>;
TYPED_TEST_SUITE(EachPixelType, PixelTypes);

template <class T>
class EachReturnedType : public testing::Test {};
using ReturnedTypes = testing::Types<u8, int, float>;
TYPED_TEST_SUITE(EachReturnedType, ReturnedTypes);

template <class T>
class EachWithheldType : public testing::Test {};
using WithheldTypes = testing::Types<u16, s16>;
TYPED_TEST_SUITE(EachWithheldType, WithheldTypes);

TYPED_TEST(EachPixelType, AllocateMakesAnImageOfItsSize) {
  auto image = Initializer::Allocate<TypeParam>(100, 3);
  EXPECT_EQ(image.width(), 100);
  EXPECT_EQ(image.height(), 3);
  EXPECT_EQ(image.imageStep(), 100 * static_cast<int>(sizeof(TypeParam)));
  EXPECT_NE(image.buffer(), nullptr);
}

TYPED_TEST(EachPixelType, AllocateRefusesEmptySizes) {
  for (const Size size : {Size{0, 5}, Size{5, 0}, Size{-1, 1}}) {
    EXPECT_EQ(plainTextOf([&] { Initializer::Allocate<TypeParam>(size.width, size.height); }),
              "invalid image size");
  }
}

TYPED_TEST(EachPixelType, FillStartsAtTheSwappedOriginAndKeepsTheRest) {
  std::vector<TypeParam> pixels(12, TypeParam(9));
  auto image = wrap(pixels, 4, 3);
  Initializer::Fill(image, TypeParam(5), Rect{0, 1, 3, 2});
  for (int i = 0; i < 12; ++i) {
    const bool inside = (i >= 1 && i <= 3) || (i >= 5 && i <= 7);
    EXPECT_EQ(pixels[static_cast<std::size_t>(i)], TypeParam(inside ? 5 : 9)) << i;
  }
}

TYPED_TEST(EachPixelType, FillCountsXInRows) {
  std::vector<TypeParam> pixels(12, TypeParam(9));
  auto image = wrap(pixels, 4, 3);
  Initializer::Fill(image, TypeParam(5), Rect{1, 0, 3, 2});
  for (int i = 0; i < 12; ++i) {
    const bool inside = (i >= 4 && i <= 6) || (i >= 8 && i <= 10);
    EXPECT_EQ(pixels[static_cast<std::size_t>(i)], TypeParam(inside ? 5 : 9)) << i;
  }
}

TYPED_TEST(EachPixelType, FillWithMaskSetsSelectedPixels) {
  std::vector<TypeParam> pixels(6, TypeParam(9));
  std::vector<u8> bytes = {0, 1, 128, 0, 255, 0};
  auto image = wrap(pixels, 3, 2);
  auto mask = wrap(bytes, 3, 2);
  Initializer::FillWithMask(image, mask, TypeParam(4), image.SizeToRoi());
  const std::vector<TypeParam> expected = {9, 4, 4, 9, 4, 9};
  EXPECT_EQ(pixels, expected);
}

TYPED_TEST(EachPixelType, CopyWithMaskCopiesSelectedPixels) {
  auto source = counted<TypeParam>(6);
  std::vector<TypeParam> target(6, TypeParam(9));
  std::vector<u8> bytes = {0, 1, 128, 0, 255, 0};
  auto src = wrap(source, 3, 2), dst = wrap(target, 3, 2);
  auto mask = wrap(bytes, 3, 2);
  Initializer::CopyWithMask(src, dst, mask, src.SizeToRoi());
  const std::vector<TypeParam> expected = {9, 1, 2, 9, 4, 9};
  EXPECT_EQ(target, expected);
}

TYPED_TEST(EachPixelType, CopyWithAMaskOfZerosLeavesTheDestination) {
  auto source = counted<TypeParam>(6);
  std::vector<TypeParam> target(6, TypeParam(9));
  std::vector<u8> bytes(6, 0);
  auto src = wrap(source, 3, 2), dst = wrap(target, 3, 2);
  auto mask = wrap(bytes, 3, 2);
  Initializer::CopyWithMask(src, dst, mask, src.SizeToRoi());
  EXPECT_EQ(target, std::vector<TypeParam>(6, TypeParam(9)));
}

TYPED_TEST(EachPixelType, CopyUsesEachImagesOwnWidth) {
  auto source = counted<TypeParam>(20);
  std::vector<TypeParam> target(12, TypeParam(99));
  auto src = wrap(source, 5, 4);
  auto dst = wrap(target, 3, 4);
  Initializer::Copy(src, dst, Rect{1, 1, 2, 2});
  const std::vector<TypeParam> expected = {99, 99, 99, 99, 6, 7, 99, 11, 12, 99, 99, 99};
  EXPECT_EQ(target, expected);
}

TYPED_TEST(EachPixelType, WholeCopyUsesTheSourcesSize) {
  auto source = counted<TypeParam>(6);
  std::vector<TypeParam> target(12, TypeParam(99));
  auto src = wrap(source, 3, 2), dst = wrap(target, 4, 3);
  Initializer::Copy(src, dst);
  const std::vector<TypeParam> expected = {0, 1, 2, 99, 3, 4, 5, 99, 99, 99, 99, 99};
  EXPECT_EQ(target, expected);
}

TYPED_TEST(EachPixelType, WholeCopyRefusesASmallerDestination) {
  auto source = counted<TypeParam>(6);
  std::vector<TypeParam> target(6, TypeParam(99));
  auto src = wrap(source, 3, 2), dst = wrap(target, 2, 3);
  EXPECT_EQ(ippTextOf([&] { Initializer::Copy(src, dst); }), rectDoesNotFitText);
  EXPECT_EQ(target, std::vector<TypeParam>(6, TypeParam(99)));
}

TYPED_TEST(EachPixelType, ARectThatDoesNotFitThrows29AndWritesNothing) {
  std::vector<TypeParam> pixels(12, TypeParam(9));
  auto image = wrap(pixels, 4, 3);
  for (const Rect rect : {Rect{0, 0, 5, 3}, Rect{2, 0, 3, 3}, Rect{0, 0, 4, 4}, Rect{0, 1, 4, 3}}) {
    EXPECT_EQ(ippTextOf([&] { Initializer::Fill(image, TypeParam(5), rect); }), rectDoesNotFitText);
  }
  EXPECT_EQ(pixels, std::vector<TypeParam>(12, TypeParam(9)));
}

TYPED_TEST(EachPixelType, TheSumsOfTheRectTestWrap) {
  std::vector<TypeParam> pixels(12, TypeParam(9));
  auto image = wrap(pixels, 4, 3);
  constexpr int most = std::numeric_limits<int>::max();
  // The sum wraps to a negative number, which fits; the entry then refuses the negative height.
  EXPECT_EQ(ippTextOf([&] { Initializer::Fill(image, TypeParam(5), Rect{most, 0, most, -1}); }), badSizeText);
}

TYPED_TEST(EachPixelType, EmptyRegionsAndEmptyImagesAreTheEntrysMatter) {
  std::vector<TypeParam> pixels(12, TypeParam(9));
  auto image = wrap(pixels, 4, 3);
  EXPECT_EQ(ippTextOf([&] { Initializer::Fill(image, TypeParam(5), Rect{0, 0, 0, 3}); }), badSizeText);
  EXPECT_EQ(ippTextOf([&] { Initializer::Fill(image, TypeParam(5), Rect{0, 0, 4, -1}); }), badSizeText);
  IppIMemory<TypeParam> empty;
  EXPECT_EQ(ippTextOf([&] { Initializer::Fill(empty, TypeParam(5), Rect{0, 0, 0, 0}); }), noBufferText);
  EXPECT_EQ(ippTextOf([&] { Initializer::Fill(empty, TypeParam(5), Rect{-3, -3, 2, 2}); }), noBufferText);
  EXPECT_EQ(ippTextOf([&] { Initializer::Copy(image, empty, Rect{0, 0, 0, 0}); }), noBufferText);
}

TYPED_TEST(EachPixelType, AMaskWithTooFewRowsThrows29) {
  std::vector<TypeParam> pixels(12, TypeParam(9));
  std::vector<u8> bytes(8, 255);
  auto image = wrap(pixels, 4, 3);
  auto mask = wrap(bytes, 4, 2);
  EXPECT_EQ(ippTextOf([&] { Initializer::FillWithMask(image, mask, TypeParam(1), image.SizeToRoi()); }),
            rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { Initializer::CopyWithMask(image, image, mask, image.SizeToRoi()); }),
            rectDoesNotFitText);
  EXPECT_EQ(pixels, std::vector<TypeParam>(12, TypeParam(9)));
}

TYPED_TEST(EachReturnedType, CopyOfARegionAtTheOriginIsACrop) {
  auto source = counted<TypeParam>(20);
  auto src = wrap(source, 5, 4);
  const auto crop = Initializer::Copy(src, Rect{0, 0, 3, 2}, true);
  ASSERT_EQ(crop.width(), 3);
  ASSERT_EQ(crop.height(), 2);
  const int expected[] = {0, 1, 2, 5, 6, 7};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(crop.buffer()[i], TypeParam(expected[i]));
}

TYPED_TEST(EachReturnedType, CopyOfARegionInTheSourcesSizeKeepsItsPlace) {
  auto source = counted<TypeParam>(20);
  auto src = wrap(source, 5, 4);
  const auto copy = Initializer::Copy(src, Rect{1, 2, 3, 2}, false);
  ASSERT_EQ(copy.width(), 5);
  ASSERT_EQ(copy.height(), 4);
  for (const int element : {7, 8, 9, 12, 13, 14}) EXPECT_EQ(copy.buffer()[element], TypeParam(element));
}

TYPED_TEST(EachReturnedType, CopyOfARegionElsewhereShiftsTheRowsPastTheCrop) {
  auto source = counted<TypeParam>(60);
  auto src = wrap(source, 6, 10);
  // The region starts at element 1 * 4 + 2 of the crop: pixels after its 12 are dropped.
  const auto crop = Initializer::Copy(src, Rect{1, 2, 4, 3}, true);
  const int expected[] = {8, 9, 10, 11, 14, 15};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(crop.buffer()[6 + i], TypeParam(expected[i]));
}

TYPED_TEST(EachReturnedType, CopyOfARegionFarFromTheOriginStaysInItsOwnMemory) {
  std::vector<TypeParam> source(200 * 200, TypeParam(1));
  auto src = wrap(source, 200, 200);
  EXPECT_EQ(Initializer::Copy(src, Rect{100, 100, 50, 50}, true).width(), 50);
  EXPECT_EQ(Initializer::Copy(src, Rect{100, 100, 50, 50}, false).width(), 200);
}

TYPED_TEST(EachReturnedType, CopyFromBeforeTheSourcesPixelsHasRoomBeforeItsOwn) {
  auto source = counted<TypeParam>(40);
  // Ten pixels lie before the image: the caller is responsible for a negative origin, which is valid here.
  auto src = IppIMemory<TypeParam>::CreateContainer(source.data() + 10, 5, 4);
  const auto copy = Initializer::Copy(src, Rect{-1, 0, 5, 2}, false);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(copy.buffer()[i], TypeParam(10 + i));
}

TYPED_TEST(EachReturnedType, CopyOfARegionLargerThanTheSourcesSizeHasRoomAfterIt) {
  auto source = counted<TypeParam>(60);
  auto src = wrap(source, 3, 2);  // there are more pixels after the image
  const auto copy = Initializer::Copy(src, Rect{0, 0, 4, 9}, false);
  ASSERT_EQ(copy.width(), 3);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(copy.buffer()[i], TypeParam(i));
}

TYPED_TEST(EachReturnedType, CopyOfAnEmptyRegion) {
  auto source = counted<TypeParam>(20);
  auto src = wrap(source, 5, 4);
  EXPECT_EQ(plainTextOf([&] { Initializer::Copy(src, Rect{0, 0, 0, 2}, true); }), "invalid image size");
  EXPECT_EQ(ippTextOf([&] { Initializer::Copy(src, Rect{0, 0, 0, 2}, false); }), badSizeText);
}

TYPED_TEST(EachWithheldType, CopyToANewImageNeverReturns) {
  auto source = counted<TypeParam>(20);
  auto src = wrap(source, 5, 4);
  for (const bool sizeFromRect : {true, false}) {
    EXPECT_EQ(plainTextOf([&] {
                Initializer::Copy(src, Rect{0, 0, 3, 2}, sizeFromRect);
              }),
              "Assign error in IppIMemory");
  }
  EXPECT_EQ(ippTextOf([&] { Initializer::Copy(src, Rect{0, 0, 0, 2}, false); }), badSizeText);
}

TEST(Convert, LimitsToEightBits) {
  std::vector<int> source = {
      -1, 0, 255, 256, 65536, std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 77};
  std::vector<u8> target(8, 9);
  auto src = wrap(source, 4, 2);
  auto dst = wrap(target, 4, 2);
  Initializer::Convert(src, dst, src.SizeToRoi());
  EXPECT_EQ(target, (std::vector<u8>{0, 0, 255, 255, 255, 0, 255, 77}));
}

TEST(Convert, RoundsToFloats) {
  std::vector<int> source = {16777217, 16777219, std::numeric_limits<int>::min(), -3};
  std::vector<float> target(4);
  auto src = wrap(source, 2, 2);
  auto dst = wrap(target, 2, 2);
  Initializer::Convert(src, dst, src.SizeToRoi());
  EXPECT_EQ(target, (std::vector<float>{16777216.0F, 16777220.0F, -2147483648.0F, -3.0F}));
}

TEST(Convert, TheRectHasToFitBothImages) {
  std::vector<int> source(8);
  std::vector<u8> target(4, 9);
  auto src = wrap(source, 4, 2);
  auto dst = wrap(target, 2, 2);
  EXPECT_EQ(ippTextOf([&] { Initializer::Convert(src, dst, src.SizeToRoi()); }), rectDoesNotFitText);
  EXPECT_EQ(target, std::vector<u8>(4, 9));
}

TEST(InitializerClass, IsAssignedWithoutEffect) {
  Initializer a, b;
  EXPECT_EQ(&(a = b), &a);
  EXPECT_EQ(&(a = Initializer()), &a);
}

}  // namespace
}  // namespace Zorvan::Test
