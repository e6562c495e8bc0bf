// The stars that were drawn are found: all of them, each at its place, and the ten brightest in their order.

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "sky.h"
#include "stars.h"

namespace {

int failures = 0;

void expect(bool holds, const char* what, unsigned seed) {
  if (holds) return;
  ++failures;
  std::printf("sky %u: %s\n", seed, what);
}

void checkSky(unsigned seed) {
  Stars::Sky sky = Stars::drawSky(seed);
  const Stars::Result result = Stars::findStars(sky.picture);
  std::printf("sky %u: %zu stars drawn, %zu found\n", seed, sky.stars.size(), result.stars.size());
  expect(sky.stars.size() > 50, "too few stars to tell anything", seed);
  expect(result.stars.size() == sky.stars.size(), "another number of stars", seed);

  std::sort(sky.stars.begin(), sky.stars.end(),
            [](const auto& a, const auto& b) { return a.light > b.light; });
  for (const Stars::Star& star : result.stars) {
    const bool wasDrawn = std::any_of(sky.stars.begin(), sky.stars.end(), [&](const auto& drawn) {
      return std::abs(drawn.column - star.centre.x) <= 1 && std::abs(drawn.row - star.centre.y) <= 1;
    });
    expect(wasDrawn, "a star where none was drawn", seed);
  }
  // The light below the threshold is missing, and the brightest pixels are cut off at 255: the order of stars
  // that differ by less is left open.
  for (std::size_t i = 0; i < 10 && i < result.stars.size(); ++i) {
    const auto& star = result.stars[i];
    const auto drawn = std::find_if(sky.stars.begin(), sky.stars.end(), [&](const auto& d) {
      return std::abs(d.column - star.centre.x) <= 1 && std::abs(d.row - star.centre.y) <= 1;
    });
    if (drawn == sky.stars.end()) continue;
    expect(std::fabs(star.light / drawn->light - 1) < 0.2, "light that differs by more than a fifth", seed);
    expect(drawn->light > 0.9 * sky.stars[i].light, "a star among the brightest that is not", seed);
  }
}

}  // namespace

int main() {
  for (unsigned seed = 1; seed <= 5; ++seed) checkSky(seed);
  return failures == 0 ? 0 : 1;
}
