#include "docs/reference/examples.h"

namespace ReferenceExamples {
namespace {

TEST(StatisticExamples, RecordOfAMean) {
  //! [MeanStdDev]
  auto picture = image<u8>({{1, 3, 200}});
  auto mask = image<u8>({{255, 255, 0}});
  const MeanStdDev level =
      Statistic<u8>::MeanAndStandardDeviationWithMask(picture, mask, picture.SizeToRoi());
  EXPECT_DOUBLE_EQ(level.Mean, 2);
  EXPECT_DOUBLE_EQ(level.StdDev, 1);
  //! [MeanStdDev]
}

TEST(StatisticExamples, RecordOfExtremes) {
  //! [MinMaxIndex]
  auto picture = image<u8>({{5, 1, 9}, {9, 1, 5}});
  auto mask = image<u8>({{1, 1, 1}, {1, 1, 1}});
  const MinMaxIndex found = Statistic<u8>::MinMaxIndexWithMask(picture, mask);
  EXPECT_EQ(found.Max, 9);
  EXPECT_EQ(found.MaxIndex.x, 2);  // column 2 of row 0: the first of the two
  EXPECT_EQ(found.MaxIndex.y, 0);
  //! [MinMaxIndex]
}

TEST(StatisticExamples, Darkest) {
  //! [Min(image, rect)]
  auto picture = image<u8>({{5, 1, 9}});
  EXPECT_EQ(Statistic<u8>::Min(picture, picture.SizeToRoi()), 1);
  //! [Min(image, rect)]
}

TEST(StatisticExamples, Brightest) {
  //! [Max(image, rect)]
  auto picture = image<u16>({{5, 1000, 9}});
  EXPECT_EQ(Statistic<u16>::Max(picture, picture.SizeToRoi()), 1000);
  EXPECT_EQ(Statistic<u16>::Max(picture, {0, 0, 1, 1}), 5);  // of the first pixel only
  //! [Max(image, rect)]
}

TEST(StatisticExamples, MeanOfARegion) {
  //! [Mean(image, rect)]
  auto bytes = image<u8>({{1, 2}});
  auto floats = image<float>({{1, 2}});
  EXPECT_EQ(Statistic<u8>::Mean(bytes, bytes.SizeToRoi()), 1);  // truncated
  EXPECT_EQ(Statistic<float>::Mean(floats, floats.SizeToRoi()), 1.5F);
  //! [Mean(image, rect)]
}

TEST(StatisticExamples, MeanOfSelectedPixels) {
  //! [Mean(image, mask, rect)]
  auto picture = image<float>({{1, 2, 600}});
  auto mask = image<u8>({{255, 255, 0}});
  EXPECT_EQ(Statistic<float>::Mean(picture, mask, picture.SizeToRoi()), 1.5F);
  //! [Mean(image, mask, rect)]
}

TEST(StatisticExamples, MeanAndDeviation) {
  //! [MeanAndStandardDeviationWithMask(image, mask, rect)]
  auto picture = image<u8>({{10, 20, 30, 40, 255}});
  auto mask = image<u8>({{1, 1, 1, 1, 0}});
  const auto level = Statistic<u8>::MeanAndStandardDeviationWithMask(picture, mask, picture.SizeToRoi());
  EXPECT_DOUBLE_EQ(level.Mean, 25);
  EXPECT_NEAR(level.StdDev, 11.1803, 0.0001);  // the root of 125
  //! [MeanAndStandardDeviationWithMask(image, mask, rect)]
}

TEST(StatisticExamples, ExtremesOfAnImage) {
  //! [MinMaxIndexWithMask(image, mask)]
  auto picture = image<u8>({{0, 20, 30}, {40, 10, 255}});
  auto mask = image<u8>({{0, 1, 1}, {1, 1, 0}});
  const MinMaxIndex found = Statistic<u8>::MinMaxIndexWithMask(picture, mask);
  EXPECT_EQ(found.Min, 10);
  EXPECT_EQ(found.MinIndex.x, 1);  // column 1
  EXPECT_EQ(found.MinIndex.y, 1);  // row 1
  EXPECT_EQ(found.Max, 40);
  EXPECT_EQ(found.MaxIndex.x, 0);
  EXPECT_EQ(found.MaxIndex.y, 1);
  //! [MinMaxIndexWithMask(image, mask)]
}

TEST(StatisticExamples, ExtremesOfARegion) {
  //! [MinMaxIndexWithMask(image, mask, rect)]
  auto picture = image<u8>({{0, 20, 30}, {40, 10, 255}, {0, 0, 0}});
  auto mask = image<u8>({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}});
  const Rect rect{0, 1, 2, 2};  // from row 0, column 1
  const MinMaxIndex found = Statistic<u8>::MinMaxIndexWithMask(picture, mask, rect);
  EXPECT_EQ(found.Max, 255);
  EXPECT_EQ(found.MaxIndex.x, 1);  // of the region: column 2 of the image
  EXPECT_EQ(found.MaxIndex.y, 1);
  //! [MinMaxIndexWithMask(image, mask, rect)]
}

TEST(StatisticExamples, Objects) {
  //! [Statistic()]
  std::vector<Statistic<u8>> objects(2);  // possible, but operations are static: no object is needed
  objects.push_back(objects[0]);
  objects.push_back(Statistic<u8>());
  EXPECT_EQ(objects.size(), 4U);
  //! [Statistic()]
}

TEST(StatisticExamples, Assignments) {
  //! [operator=(other)]
  Statistic<u8> first, second;
  second = first;
  second = Statistic<u8>();
  //! [operator=(other)]
}

}  // namespace
}  // namespace ReferenceExamples
