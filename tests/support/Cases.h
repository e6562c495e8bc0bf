#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/Guarded.h"
#include "tests/support/Options.h"
#include "tests/support/Pixels.h"
#include "tests/support/Random.h"
#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Test {

/// How far apart an image's rows lie: at the row's length, a pixel or some bytes more, all on one place, or
/// backward.
enum class StepKind { tight, onePixelMore, oddBytesMore, wholeLinesMore, zero, negative };

/// How one image of a call lies in memory and what it holds.
struct Layout {
  StepKind stepKind;
  Placement placement;
  Content content;

  int step(int rowBytes, int pixelBytes) const;
};

/// One call: the region, a layout for each image in order, and a seed for all bytes.
struct Case {
  Size roi;
  std::vector<Layout> images;
  std::uint64_t seed;

  std::string text() const;
};

/// What the cases of an entry range over. The defaults suit entries that work row by row on any step.
struct CaseRange {
  std::vector<StepKind> stepKinds = {StepKind::tight,        StepKind::tight,          StepKind::onePixelMore,
                                     StepKind::oddBytesMore, StepKind::wholeLinesMore, StepKind::zero,
                                     StepKind::negative};
  std::vector<int> moreWidths = {};  ///< limits of the entry, each tested with its neighbours
  int heights = 3;                   ///< heights from 1 to this
};

/// Widths from 1 to beyond twice the widest block, and the neighbours of the range's own limits; thinned out
/// below the full level.
std::vector<int> widthsOf(const CaseRange& range, Level level);

/// Widths up to 140 at every offset within a line, or a sample of them: what the tests with lowered limits go
/// through. `use(width, offset, random)`
void forEachOffset(const std::function<void(int width, int offset, Random& random)>& use);

/// Few rows mostly, many where they are short.
int drawnHeight(Random& random, int width);

/// Calls `use` with every case of the range at the level of the options: each width with several heights, and
/// for each of those several layouts, so that every step kind, placement and content meets every width class.
void forEachCase(const CaseRange& range, int imageCount, const std::function<void(const Case&)>& use);

}  // namespace Zorvan::Test
