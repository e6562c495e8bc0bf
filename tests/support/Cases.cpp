#include "tests/support/Cases.h"

#include <gtest/gtest.h>
#include <algorithm>

#include <set>

#include "tests/support/Cache.h"
#include "tests/support/Limits.h"

namespace Zorvan::Test {
namespace {

constexpr int placementShifts[] = {0, 1, 2, 3, 4, 8, 12, 15, 16, 17, 20, 31, 32, 33, 48, 63};

Placement placementOf(Random& random) {
  switch (random.below(4)) {
    case 0:
      return {Placement::Edge::front, 0};
    case 1:
      return {Placement::Edge::back, 0};
    default:
      return {Placement::Edge::inside, random.oneOf(placementShifts)};
  }
}

int layoutsPerSize(Level level) {
  switch (level) {
    case Level::few:
      return 2;
    case Level::quick:
      return 3;
    default:
      return 14;
  }
}

const char* nameOf(StepType type) {
  constexpr const char* names[] = {"tight", "one pixel more", "odd bytes more", "whole lines more",
                                   "zero",  "negative"};
  return names[static_cast<int>(type)];
}

const char* nameOf(Content content) {
  constexpr const char* names[] = {"random", "half empty", "runs",   "special values",
                                   "empty",  "full",       "blocks", "given"};
  return names[static_cast<int>(content)];
}

std::string nameOf(Placement placement) {
  if (placement.edge == Placement::Edge::front) return "after a page's start";
  if (placement.edge == Placement::Edge::back) return "before a page's end";
  return "shifted by " + std::to_string(placement.shift);
}

Layout layoutOf(Random& random, const CaseRange& range, bool tight) {
  return {tight ? StepType::tight : random.oneOf(range.stepTypes), placementOf(random),
          drawnContent(random, allContents)};
}

/// A cache for nothing, little or everything, or an unknown one.
struct DrawnCache {
  int bytes, status;

  std::string text() const {
    return status != 0 ? "cache unknown" : "cache of " + std::to_string(bytes) + " bytes";
  }
};
constexpr DrawnCache caches[] = {{0, 0}, {512, 0}, {1 << 30, 0}, {0, 37}};

std::span<const unsigned char> bytesOfCases;

/// All images at the offset with strides of whole lines, so that all rows have the same offset; then any
/// layout.
void forEachCaseOfAllOffsets(const CaseRange& range, int imageCount,
                             const std::function<void(const Case&)>& use) {
  forEachOffset([&](int width, int offset, Random& random) {
    for (const bool alike : {true, false}) {
      const DrawnCache drawn = random.oneOf(caches);
      const ForcedCache cache(drawn.bytes, 64, drawn.status);
      Case c{{width, drawnHeight(random, width)}, {}, random.next()};
      const bool tight = !alike && random.below(3) == 0;
      for (int image = 0; image < imageCount; ++image) {
        Layout layout = layoutOf(random, range, tight);
        if (alike) {
          layout.stepType = StepType::wholeLinesMore;
          layout.placement = {Placement::Edge::inside, offset};
        }
        c.images.push_back(layout);
      }
      const testing::ScopedTrace trace(__FILE__, __LINE__, drawn.text());
      use(c);
    }
  });
}

}  // namespace

int Layout::step(int rowBytes, int pixelBytes) const {
  switch (stepType) {
    case StepType::tight:
      return rowBytes;
    case StepType::onePixelMore:
      return rowBytes + pixelBytes;
    case StepType::oddBytesMore:
      return (rowBytes + 7) | 1;
    case StepType::wholeLinesMore:
      return (rowBytes + (limitsAreLowered ? 63 : 127)) / 64 * 64;  // fewer bytes reach more paths
    case StepType::zero:
      return 0;
    case StepType::negative:
      return -(rowBytes + 3 * pixelBytes);
  }
  return rowBytes;
}

std::string Case::text() const {
  std::string text = "region " + std::to_string(roi.width) + " by " + std::to_string(roi.height);
  for (const Layout& layout : images) {
    text += "\n  image: step " + std::string(nameOf(layout.stepType)) + ", " + nameOf(layout.placement) +
            ", " + nameOf(layout.content);
  }
  if (!identity.empty()) text += "\n  equal numbers are one image:";
  for (const int image : identity) text += " " + std::to_string(image);
  return text + "\n  seed " + std::to_string(seed);
}

std::vector<int> widthsOf(const CaseRange& range, Level level) {
  std::set<int> widths;
  const int last = level == Level::full ? 300 : 140;
  const int stride = level == Level::few ? 7 : level == Level::quick ? 3 : 1;
  for (int width = 1; width <= last; width += width < 20 && level != Level::few ? 1 : stride)
    widths.insert(width);
  for (const int block : {16, 32, 64, 128, 256}) {
    for (const int width : {block - 1, block, block + 1}) widths.insert(width);
  }
  for (const int limit : range.moreWidths) {
    for (const int width : {limit - 1, limit, limit + 1}) {
      if (width > 0) widths.insert(width);
    }
  }
  return {widths.begin(), widths.end()};
}

bool allOffsetsWereUsed = false;

void forEachOffset(const std::function<void(int width, int offset, Random& random)>& use) {
  constexpr int lineBytes = 64, lastWidth = 140, sample = 400;
  Random random(options().seed);
  if (!options().everyOffset) {
    for (int i = 0; i < sample; ++i) use(1 + random.below(lastWidth), random.below(lineBytes), random);
    return;
  }
  for (int width = 1; width <= lastWidth; ++width) {
    for (int offset = 0; offset < lineBytes; ++offset) use(width, offset, random);
  }
  allOffsetsWereUsed = true;
}

void drawCasesFrom(std::span<const unsigned char> bytes) { bytesOfCases = bytes; }

void forEachDraw(const std::function<void(Random& random)>& use) {
  const Level level = options().level;
  const int rounds = level == Level::few     ? 10
                     : level == Level::quick ? 100
                     : level == Level::full  ? 1000
                                             : options().rounds;
  Random random(options().seed, bytesOfCases);
  for (int round = 0; round < rounds; ++round) {
    const DrawnCache drawn = random.oneOf(caches);
    const ForcedCache cache(drawn.bytes, 64, drawn.status);
    const testing::ScopedTrace trace(__FILE__, __LINE__, drawn.text());
    use(random);
  }
}

Size drawnSize(Random& random) {
  const int mostBits = limitsAreLowered ? 8 : 11;
  const int width = 1 + random.below(1 << (1 + random.below(mostBits)));
  const int height = 1 + random.below(1 << (1 + random.below(5)));
  return {width, height};
}

int drawnHeight(Random& random, int width) {
  const int most = random.below(4) != 0 ? 9 : width < 24 ? 70 : 24;
  return 1 + random.below(most);
}

void forEachCase(const CaseRange& range, int imageCount, const std::function<void(const Case&)>& use) {
  const Level level = options().level;
  const auto useLayouts = [&](Random& random, Size roi, bool tight) {
    Case c{roi, {}, random.next()};
    for (int image = 0; image < imageCount; ++image) c.images.push_back(layoutOf(random, range, tight));
    use(c);
  };
  if (level == Level::fuzz) {
    return forEachDraw([&](Random& random) {
      const Size roi = drawnSize(random);
      useLayouts(random, roi, random.below(4) == 0);
    });
  }
  if (limitsAreLowered) return forEachCaseOfAllOffsets(range, imageCount, use);
  Random random(options().seed);
  for (const int width : widthsOf(range, level)) {
    for (int height = 1; height <= range.heights; ++height) {
      for (int i = 0; i < layoutsPerSize(level); ++i) {
        useLayouts(random, {width, height}, i == 0);  // all tight: only then can rows run as one
      }
    }
  }
}

}  // namespace Zorvan::Test
