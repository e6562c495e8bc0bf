// The pipeline finds the objects that were drawn: plates of known places, areas and brightness, and the coins
// of the scene.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string>
#include <vector>

#include "coin_table.h"
#include "folder.h"
#include "pipeline.h"
#include "scene.h"

namespace {

using Coins::Coin;
using Examples::Area;
using Examples::Picture;

constexpr int pictureWidth = 301;
constexpr int pictureHeight = 210;
constexpr int backgroundValue = 40;
constexpr int plateValue = 160;
constexpr int darkValue = 7;
constexpr int brightValue = 180;

Picture emptyPicture(int width = pictureWidth, int height = pictureHeight) {
  return {width, height, std::vector<Zorvan::u8>(static_cast<std::size_t>(width * height), backgroundValue)};
}

void draw(Picture& picture, Area area, int value) {
  for (int r = area.row; r < area.row + area.height; ++r) {
    for (int c = area.column; c < area.column + area.width; ++c) {
      picture.pixels[static_cast<std::size_t>(r * pictureWidth + c)] = static_cast<Zorvan::u8>(value);
    }
  }
}

/// The pipeline's outline covers both sides of the rim: an object is a pixel wider than the plate on every
/// side that is inside the picture.
Area grown(Area plate) {
  const int left = std::max(plate.column - 1, 0), top = std::max(plate.row - 1, 0);
  const int right = std::min(plate.column + plate.width + 1, pictureWidth);
  const int bottom = std::min(plate.row + plate.height + 1, pictureHeight);
  return {left, top, right - left, bottom - top};
}

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool near(double a, double b) { return std::abs(a - b) < 1e-6; }

void checkPlate(const Coin& coin, Area plate) {
  const Area box = grown(plate);
  EXPECT_TRUE(coin.box.column == box.column && coin.box.row == box.row);
  EXPECT_TRUE(coin.box.width == box.width && coin.box.height == box.height);
  const double area = box.width * box.height, inside = plate.width * plate.height - 2;
  EXPECT_EQ(coin.area, area);
  EXPECT_TRUE(near(coin.measures.diameter, std::sqrt(area * 4 / std::acos(-1.0))));

  const double ring = area - plate.width * plate.height;
  const double mean = (inside * plateValue + darkValue + brightValue + ring * backgroundValue) / area;
  const auto square = [&](double value) { return (value - mean) * (value - mean); };
  const double variance = (inside * square(plateValue) + square(darkValue) + square(brightValue) +
                           ring * square(backgroundValue)) /
                          area;
  EXPECT_TRUE(near(coin.measures.brightness.Mean, mean));
  EXPECT_TRUE(near(coin.measures.brightness.StdDev, std::sqrt(variance)));

  const Zorvan::MinMaxIndex& extremes = coin.measures.extremes;
  EXPECT_TRUE(extremes.Min == darkValue && extremes.Max == brightValue);
  EXPECT_TRUE(box.column + extremes.MinIndex.x == plate.column + 5 &&
              box.row + extremes.MinIndex.y == plate.row + 3);
  EXPECT_TRUE(box.column + extremes.MaxIndex.x == plate.column + 2 &&
              box.row + extremes.MaxIndex.y == plate.row + 6);
}

void checkCsv(const std::vector<Coin>& coins) {
  Coins::writeCoinCsv(folder + "/plates/coins.csv", coins);
  std::ifstream file(folder + "/plates/coins.csv");
  std::string line;
  std::vector<std::string> lines;
  while (std::getline(file, line)) lines.push_back(line);
  EXPECT_EQ(lines.size(), coins.size() + 1);
  EXPECT_TRUE(lines[0] ==
              "coin,column,row,width,height,area,diameter,mean,deviation,darkest,darkest_column,darkest_row,"
              "brightest,"
              "brightest_column,brightest_row");
  // The first plate is at column 20, row 9.
  EXPECT_TRUE(lines[1].rfind("1,19,8,32,22,704,29.9,", 0) == 0);
  EXPECT_TRUE(endsWith(lines[1], ",7,25,12,180,22,15"));
}

TEST(Objects, ArePlatesOfKnownPlacesAndAreas) {
  Picture picture = emptyPicture();
  // From the top. The second ends a pixel before the right edge, which its outline reaches.
  const std::vector<Area> plates{
      {20, 9, 30, 20}, {250, 14, 50, 11}, {90, 40, 61, 47}, {200, 90, 9, 77}, {20, 140, 44, 60}};
  for (const Area& plate : plates) {
    draw(picture, plate, plateValue);
    draw(picture, {plate.column + 5, plate.row + 3, 1, 1}, darkValue);
    draw(picture, {plate.column + 2, plate.row + 6, 1, 1}, brightValue);
  }
  draw(picture, {100, 150, 3, 3}, plateValue);              // a speck
  draw(picture, {100, 120, 60, 2}, plateValue);             // a scratch
  draw(picture, {100, 170, 40, 40}, plateValue);            // cut by the edge: its rim is open
  draw(picture, {240, 140, 40, 40}, backgroundValue + 30);  // too faint
  Examples::Report report(folder + "/plates");
  const std::vector<Coin> found = Coins::runPipeline(picture, report);
  ASSERT_EQ(found.size(), plates.size());
  for (std::size_t i = 0; i < plates.size(); ++i) checkPlate(found[i], plates[i]);
  checkCsv(found);
}

/// Whether the middles of the coins are those of the discs, in the same order.
bool standsAt(const std::vector<Coin>& found, const std::vector<Coins::Disc>& discs) {
  return std::equal(found.begin(), found.end(), discs.begin(), discs.end(),
                    [](const Coin& coin, const Coins::Disc& disc) {
                      return std::abs(coin.box.column + coin.box.width / 2 - disc.column) < 2 &&
                             std::abs(coin.box.row + coin.box.height / 2 - disc.row) < 2;
                    });
}

void drawDisc(Picture& picture, const Coins::Disc& disc) {
  for (int r = 0; r < pictureHeight; ++r) {
    for (int c = 0; c < pictureWidth; ++c) {
      if (std::hypot(r - disc.row, c - disc.column) <= disc.radius) draw(picture, {c, r, 1, 1}, plateValue);
    }
  }
}

/// Numbers follow the lines, although the discs of a line differ in row and size.
TEST(Objects, AreInReadingOrder) {
  Picture picture = emptyPicture();
  const std::vector<Coins::Disc> discs{{40, 30, 12},  {36, 90, 20},   {44, 150, 10},
                                       {120, 25, 10}, {112, 100, 25}, {122, 260, 18}};
  for (const Coins::Disc& disc : discs) drawDisc(picture, disc);
  Examples::Report report(folder + "/order");
  EXPECT_TRUE(standsAt(Coins::runPipeline(picture, report), discs));
}

/// A line of another brightness along a side is not connected with the disc beside it.
TEST(Objects, AreApartFromTheSides) {
  // The outline of the disc ends where the outline of the line begins.
  const Coins::Disc disc{100, pictureWidth - 4 - 60, 60.9};
  Picture alone = emptyPicture();
  drawDisc(alone, disc);
  Picture lined = alone;
  draw(lined, {pictureWidth - 1, 30, 1, 100}, 0);
  Examples::Report aloneReport(folder + "/sides/alone"), linedReport(folder + "/sides/lined");
  const std::vector<Coin> expected = Coins::runPipeline(alone, aloneReport);
  const std::vector<Coin> found = Coins::runPipeline(lined, linedReport);
  ASSERT_TRUE(expected.size() == 1 && found.size() == 1);
  EXPECT_TRUE(found[0].box.width == expected[0].box.width && found[0].area == expected[0].area);
}

/// Objects that extend over many bands of rows, and objects that begin within the rows of others.
TEST(Objects, ExtendOverManyBands) {
  Picture picture = emptyPicture();
  draw(picture, {10, 10, 12, 190}, plateValue);
  draw(picture, {40, 10, 200, 12}, plateValue);
  draw(picture, {228, 22, 12, 150}, plateValue);
  for (int row = 40; row < 160; row += 20) draw(picture, {60, row, 12, 12}, plateValue);
  Examples::Report report(folder + "/bands");
  const std::vector<Coin> found = Coins::runPipeline(picture, report);
  EXPECT_EQ(found.size(), 8);
  double area = 0;
  for (const Coin& coin : found) area += coin.area;
  // Each object grows by a pixel on every side; in the inner corner of the angle it grows by one pixel less.
  EXPECT_TRUE(area >= 14 * 192 + 202 * 14 + 14 * 150 + 6 * 14 * 14 - 8 &&
              area <= 14 * 192 + 202 * 14 + 14 * 150 + 6 * 14 * 14 + 8);
}

/// The pixels that a ring encloses belong to the object.
TEST(Objects, HaveThePixelsThatARingEncloses) {
  Picture picture = emptyPicture();
  draw(picture, {60, 50, 80, 70}, plateValue);
  draw(picture, {66, 56, 68, 58}, backgroundValue);
  Examples::Report report(folder + "/ring");
  const std::vector<Coin> found = Coins::runPipeline(picture, report);
  EXPECT_TRUE(found.size() == 1 && found[0].area == 82 * 72);
}

TEST(Objects, AreTheCoinsOfTheScene) {
  Picture scene = Coins::drawScene();
  Examples::Report report(folder + "/scene");
  const std::vector<Coin> found = Coins::runPipeline(scene, report);
  EXPECT_EQ(found.size(), 24);
  for (const Coins::Disc& disc : Coins::sceneCoins()) {
    const auto coin = std::find_if(found.begin(), found.end(), [&](const Coin& c) {
      return disc.column >= c.box.column && disc.column < c.box.column + c.box.width &&
             disc.row >= c.box.row && disc.row < c.box.row + c.box.height;
    });
    EXPECT_TRUE(coin != found.end());
    if (coin == found.end()) continue;
    EXPECT_TRUE(coin->measures.diameter > 2 * disc.radius && coin->measures.diameter < 2 * disc.radius + 3);
  }
}

TEST(Objects, AreNoneInAnEmptyPicture) {
  Picture picture = emptyPicture(40, 30);
  Examples::Report report(folder + "/nothing");
  EXPECT_TRUE(Coins::runPipeline(picture, report).empty());
}

}  // namespace
