#include <cmath>
#include <limits>
#include <type_traits>

#include "tests/facades/Support.h"

namespace Zorvan::Test {
namespace {

using Ipp::Image::Statistic;

constexpr const char* noTypeText =
    "ippStsDataTypeErr: Data type is incorrect or not supported( error Code : -59 )";

template <class T>
class EachStatisticType : public testing::Test {};
using StatisticTypes = testing::Types<u8, u16, float>;
TYPED_TEST_SUITE(EachStatisticType, StatisticTypes);

template <class T>
class EachExtremeType : public testing::Test {};
using ExtremeTypes = testing::Types<u8, float>;
TYPED_TEST_SUITE(EachExtremeType, ExtremeTypes);

TYPED_TEST(EachStatisticType, ReducesARegionAtTheSwappedOrigin) {
  auto pixels = counted<TypeParam>(20);
  std::vector<u8> bytes(20, 1);
  auto image = wrap(pixels, 5, 4), view = wrap(pixels, 5, 4);
  auto mask = wrap(bytes, 5, 4);
  const Rect rect{1, 2, 3, 2};  // pixels 7 8 9 and 12 13 14
  EXPECT_EQ(Statistic<TypeParam>::Min(image, rect), TypeParam(7));
  EXPECT_EQ(Statistic<TypeParam>::Max(image, rect), TypeParam(14));
  EXPECT_EQ(Statistic<TypeParam>::Mean(image, rect), TypeParam(10.5));
  EXPECT_EQ(Statistic<TypeParam>::Mean(image, mask, rect), TypeParam(10.5));
  bytes[7] = bytes[14] = 0;
  EXPECT_EQ(Statistic<TypeParam>::Mean(image, mask, rect), TypeParam(10.5));
  bytes[8] = bytes[9] = bytes[12] = 0;
  EXPECT_EQ(Statistic<TypeParam>::Mean(image, mask, rect), TypeParam(13));
}

TYPED_TEST(EachStatisticType, MasksUseTheirOwnWidth) {
  auto pixels = counted<TypeParam>(6);
  std::vector<u8> bytes = {1, 0, 0, 9, 0, 1, 0, 9};
  auto image = wrap(pixels, 3, 2);
  auto mask = wrap(bytes, 4, 2);
  EXPECT_EQ(Statistic<TypeParam>::Mean(image, mask, Rect{0, 0, 3, 2}), TypeParam(2));  // pixels 0 and 4
}

TYPED_TEST(EachStatisticType, AMeanWithoutSelectedPixelsIsZero) {
  auto pixels = counted<TypeParam>(6);
  std::vector<u8> bytes(6, 0);
  auto image = wrap(pixels, 3, 2);
  auto mask = wrap(bytes, 3, 2);
  EXPECT_EQ(Statistic<TypeParam>::Mean(image, mask, image.SizeToRoi()), TypeParam(0));
  const MeanStdDev found =
      Statistic<TypeParam>::MeanAndStandardDeviationWithMask(image, mask, image.SizeToRoi());
  EXPECT_EQ(found.Mean, 0);
  EXPECT_EQ(found.StdDev, 0);
}

TYPED_TEST(EachStatisticType, RegionsReachExactlyToTheEdge) {
  using Tested = Statistic<TypeParam>;
  auto pixels = counted<TypeParam>(12);
  std::vector<u8> bytes(12, 1), fewBytes(6, 1);
  auto image = wrap(pixels, 4, 3);
  auto mask = wrap(bytes, 4, 3), small = wrap(fewBytes, 3, 2);
  EXPECT_EQ(ippTextOf([&] { Tested::Min(image, {0, 0, 4, 3}); }), "no exception");
  for (const Rect rect : {Rect{0, 0, 5, 3}, Rect{0, 0, 4, 4}, Rect{1, 0, 4, 3}, Rect{0, 1, 4, 3}}) {
    EXPECT_EQ(ippTextOf([&] { Tested::Min(image, rect); }), rectDoesNotFitText);
    EXPECT_EQ(ippTextOf([&] { Tested::Max(image, rect); }), rectDoesNotFitText);
    EXPECT_EQ(ippTextOf([&] { Tested::Mean(image, rect); }), rectDoesNotFitText);
    EXPECT_EQ(ippTextOf([&] { Tested::Mean(image, mask, rect); }), rectDoesNotFitText);
    EXPECT_EQ(ippTextOf([&] { Tested::MeanAndStandardDeviationWithMask(image, mask, rect); }),
              rectDoesNotFitText);
    EXPECT_EQ(ippTextOf([&] { Tested::MinMaxIndexWithMask(image, mask, rect); }), rectDoesNotFitText);
  }
  EXPECT_EQ(ippTextOf([&] { Tested::Mean(image, small, {0, 0, 4, 3}); }), rectDoesNotFitText);
  EXPECT_EQ(ippTextOf([&] { Tested::MinMaxIndexWithMask(image, small); }), rectDoesNotFitText);
}

TYPED_TEST(EachStatisticType, EmptyRegionsAndImagesAreRefused) {
  using Tested = Statistic<TypeParam>;
  auto pixels = counted<TypeParam>(12);
  std::vector<u8> bytes(12, 1);
  auto image = wrap(pixels, 4, 3);
  auto mask = wrap(bytes, 4, 3);
  for (const Rect rect : {Rect{0, 0, 0, 3}, Rect{0, 0, 4, 0}, Rect{0, 0, -1, 3}}) {
    EXPECT_EQ(ippTextOf([&] { Tested::Min(image, rect); }), badSizeText);
    EXPECT_EQ(ippTextOf([&] { Tested::Max(image, rect); }), badSizeText);
    EXPECT_EQ(ippTextOf([&] { Tested::Mean(image, rect); }), badSizeText);
    EXPECT_EQ(ippTextOf([&] { Tested::Mean(image, mask, rect); }), badSizeText);
    EXPECT_EQ(ippTextOf([&] { Tested::MeanAndStandardDeviationWithMask(image, mask, rect); }), badSizeText);
  }
  auto empty = IppIMemory<TypeParam>::CreateContainer(nullptr, 4, 3);
  auto noMask = IppIMemory<u8>::CreateContainer(nullptr, 4, 3);
  EXPECT_EQ(ippTextOf([&] { Tested::Min(empty, {0, 0, 4, 3}); }), noBufferText);
  EXPECT_EQ(ippTextOf([&] { Tested::Mean(empty, {0, 0, 4, 3}); }), noBufferText);
  EXPECT_EQ(ippTextOf([&] { Tested::Mean(image, noMask, {0, 0, 4, 3}); }), noBufferText);
}

template <class T>
T meanOf(std::vector<T> pixels) {
  auto image = wrap(pixels, static_cast<int>(pixels.size()), 1);
  return Statistic<T>::Mean(image, image.SizeToRoi());
}

TEST(StatisticMean, CutsIntegersOff) {
  EXPECT_EQ(meanOf<u8>({1, 2}), 1);
  EXPECT_EQ(meanOf<u8>({254, 255}), 254);
  EXPECT_EQ(meanOf<u8>({77}), 77);
  EXPECT_EQ(meanOf<u16>({65534, 65535}), 65534);
  EXPECT_EQ(meanOf<u16>({0, 1, 1}), 0);
}

TEST(StatisticMean, RoundsFloatsOnce) {
  // 16777217 lies between two floats: sums in double keep it until the end.
  EXPECT_EQ(meanOf<float>({16777216.0f, 16777218.0f}), 16777216.0f);
  EXPECT_EQ(meanOf<float>({16777216.0f, 1.0f, -16777216.0f}), 1.0f / 3);
  EXPECT_TRUE(std::isnan(meanOf<float>({1.0f, std::numeric_limits<float>::quiet_NaN()})));
}

TYPED_TEST(EachExtremeType, FindsExtremesAndTheirFirstPlaces) {
  using Tested = Statistic<TypeParam>;
  std::vector<TypeParam> pixels = {5, 3, 9, 0, 9, 3, 9, 3, 200};
  std::vector<u8> bytes = {1, 1, 1, 0, 255, 128, 1, 1, 0};
  auto image = wrap(pixels, 3, 3);
  auto mask = wrap(bytes, 3, 3);
  const MinMaxIndex found = Tested::MinMaxIndexWithMask(image, mask);
  EXPECT_EQ(found.Min, 3);
  EXPECT_EQ(found.MinIndex.x, 1);
  EXPECT_EQ(found.MinIndex.y, 0);
  EXPECT_EQ(found.Max, 9);
  EXPECT_EQ(found.MaxIndex.x, 2);
  EXPECT_EQ(found.MaxIndex.y, 0);
  const MinMaxIndex below = Tested::MinMaxIndexWithMask(image, mask, {1, 1, 2, 2});
  EXPECT_EQ(below.MinIndex.x, 1);  // counted from the region's first pixel
  EXPECT_EQ(below.MinIndex.y, 0);
  EXPECT_EQ(below.MaxIndex.x, 0);
  EXPECT_EQ(below.MaxIndex.y, 0);
}

TYPED_TEST(EachExtremeType, AnEmptyMaskThrows) {
  std::vector<TypeParam> pixels(6, 5);
  std::vector<u8> bytes(6, 0);
  auto image = wrap(pixels, 3, 2);
  auto mask = wrap(bytes, 3, 2);
  EXPECT_EQ(ippTextOf([&] { Statistic<TypeParam>::MinMaxIndexWithMask(image, mask); }),
            "ippStsNoOperation: No operation has been executed( error Code : 1 )");
}

TYPED_TEST(EachExtremeType, ALargerMaskIsUsedFromItsTopLeft) {
  std::vector<TypeParam> pixels = {5, 3, 9, 1};
  std::vector<u8> bytes = {1, 0, 1, 1, 0, 1, 1, 1, 1};
  auto image = wrap(pixels, 2, 2);
  auto mask = wrap(bytes, 3, 3);
  const MinMaxIndex found = Statistic<TypeParam>::MinMaxIndexWithMask(image, mask);
  EXPECT_EQ(found.Min, 5);
  EXPECT_EQ(found.Max, 9);
  EXPECT_EQ(found.MaxIndex.x, 0);
  EXPECT_EQ(found.MaxIndex.y, 1);
}

TYPED_TEST(EachExtremeType, DeviationIsThePopulations) {
  std::vector<TypeParam> pixels = {1, 3, 100};
  std::vector<u8> bytes = {1, 2, 0};
  auto image = wrap(pixels, 3, 1);
  auto mask = wrap(bytes, 3, 1);
  const MeanStdDev found =
      Statistic<TypeParam>::MeanAndStandardDeviationWithMask(image, mask, image.SizeToRoi());
  EXPECT_EQ(found.Mean, 2);
  EXPECT_EQ(found.StdDev, 1);
}

TEST(StatisticOfWords, DeviationReadsBytes) {
  std::vector<u16> pixels = {0x0102, 0xFFFF, 0x0708, 0xFFFF};
  std::vector<u8> bytes(4, 1);
  auto image = wrap(pixels, 2, 2);
  auto mask = wrap(bytes, 2, 2);
  const MeanStdDev row = Statistic<u16>::MeanAndStandardDeviationWithMask(image, mask, {0, 0, 2, 1});
  EXPECT_EQ(row.Mean, 1.5);
  EXPECT_EQ(row.StdDev, 0.5);
  const MeanStdDev rows = Statistic<u16>::MeanAndStandardDeviationWithMask(image, mask, {0, 0, 2, 2});
  EXPECT_EQ(rows.Mean, (2 + 1 + 8 + 7) / 4.0);
}

TEST(StatisticOfWords, ExtremesWithPlacesDoNotExist) {
  std::vector<u16> pixels(6, 5);
  std::vector<u8> bytes(6, 1);
  auto image = wrap(pixels, 3, 2);
  auto mask = wrap(bytes, 3, 2);
  EXPECT_EQ(ippTextOf([&] { Statistic<u16>::MinMaxIndexWithMask(image, mask); }), noTypeText);
  EXPECT_EQ(ippTextOf([&] { Statistic<u16>::MinMaxIndexWithMask(image, mask, {0, 0, 0, 0}); }), noTypeText);
  EXPECT_EQ(ippTextOf([&] {
              Statistic<u16>::MinMaxIndexWithMask(image, mask, {0, 0, 4, 2});
            }),
            rectDoesNotFitText);
}

TYPED_TEST(EachStatisticType, CanBeAssigned) {
  static_assert(std::is_default_constructible_v<Statistic<TypeParam>>);
  Statistic<TypeParam> a, b;
  a = b;
  a = Statistic<TypeParam>();
}

}  // namespace
}  // namespace Zorvan::Test
