// The stars that were drawn are found: all of them, each at its place, and the ten brightest in their order.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "sky.h"
#include "stars.h"

namespace {

class DrawnSky : public testing::TestWithParam<unsigned> {};

TEST_P(DrawnSky, HasTheStarsThatAreFound) {
  Stars::Sky sky = Stars::drawSky(GetParam());
  const Stars::Result result = Stars::findStars(sky.picture);
  EXPECT_GT(sky.stars.size(), 50U);
  EXPECT_EQ(result.stars.size(), sky.stars.size());

  std::sort(sky.stars.begin(), sky.stars.end(),
            [](const auto& a, const auto& b) { return a.light > b.light; });
  for (std::size_t i = 0; i < result.stars.size(); ++i) {
    const auto& star = result.stars[i];
    const auto drawn = std::find_if(sky.stars.begin(), sky.stars.end(), [&](const auto& d) {
      return std::abs(d.column - star.centre.x) <= 1 && std::abs(d.row - star.centre.y) <= 1;
    });
    ASSERT_NE(drawn, sky.stars.end())
        << "no star was drawn in column " << star.centre.x << ", row " << star.centre.y;
    // The light below the threshold is missing, and the brightest pixels are cut off at 255: the order of
    // stars that differ by less is left open.
    if (i < 10) {
      EXPECT_NEAR(star.light / drawn->light, 1, 0.2);
      EXPECT_GT(drawn->light, 0.9 * sky.stars[i].light) << "not one of the brightest";
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Five, DrawnSky, testing::Range(1U, 6U));

}  // namespace
