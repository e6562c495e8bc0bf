#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "tests/support/Guarded.h"
#include "tests/support/Options.h"
#include "tests/support/Pixels.h"
#include "tests/support/Random.h"
#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Test {

/// The stride of an image: the row's length, a pixel or some bytes more, zero, or negative.
enum class StepType { tight, onePixelMore, oddBytesMore, wholeLinesMore, zero, negative };

/// The position of one image of a call in memory, and its content.
struct Layout {
  StepType stepType;
  Placement placement;
  Content content;

  int step(int rowBytes, int pixelBytes) const;
};

/// One call: the region, a layout for each image in order, and a seed for all bytes.
struct Case {
  Size roi;
  std::vector<Layout> images;
  std::uint64_t seed;
  /// The number of an earlier image, or its own, for each image: equal numbers are one image. Without numbers
  /// all images are different.
  std::vector<int> identity = {};

  std::string text() const;
};

/// The range of the cases of an entry. The defaults suit entries that accept any step.
struct CaseRange {
  std::vector<StepType> stepTypes = {StepType::tight,        StepType::tight,          StepType::onePixelMore,
                                     StepType::oddBytesMore, StepType::wholeLinesMore, StepType::zero,
                                     StepType::negative};
  std::vector<int> moreWidths = {};  ///< limits of the entry, each tested with its neighbours
  int heights = 3;                   ///< heights from 1 to this
};

/// Widths from 1 to more than twice the largest block, and those around the range's own limits; a sample of
/// them below the full level.
std::vector<int> widthsOf(const CaseRange& range, Level level);

/// Calls `use` with widths up to 140 at every offset within a line, or a sample of them, for tests with
/// lowered limits.
void forEachOffset(const std::function<void(int width, int offset, Random& random)>& use);

/// Draws from these bytes from now on, and from the seed of the options when they are used up.
void drawCasesFrom(std::span<const unsigned char> bytes);

/// Calls `use` with numbers to draw one case from, as often as the level of the options asks for, each time
/// with a drawn cache.
void forEachDraw(const std::function<void(Random& random)>& use);

/// Random sizes, small ones more often than large ones.
Size drawnSize(Random& random);

/// Mostly few rows, many if they are short.
int drawnHeight(Random& random, int width);

/// Calls `use` with every case of the range at the level of the options: each width with several heights, and
/// for each of those several layouts, so that every stride, placement and content occurs with all widths.
void forEachCase(const CaseRange& range, int imageCount, const std::function<void(const Case&)>& use);

}  // namespace Zorvan::Test
