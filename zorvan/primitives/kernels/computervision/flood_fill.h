#pragma once

// Scan-line flood fill over the 4-connected area around a seed, with a stack of runs in the caller's memory.
//
// A pixel is done when it no longer holds the old value, so nothing is counted twice and no second image is
// needed. A run's neighbours are looked for in the row ahead along its whole length, and in the row it was
// reached from only where it sticks out beyond its parent. The stack's height is not tested: the memory is
// taken to be large enough.

#include "zorvan/primitives/frame/ConnectedComp.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/computervision/flood_fill_plan.h"
#include "zorvan/primitives/kernels/computervision/flood_pixels.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// The bounding box of the runs, and the number of their pixels on 32 bits.
struct FilledArea {
  std::int32_t minX, maxX, minY, maxY;
  std::uint32_t count;

  void include(const FillSegment& run) {
    if (run.left < minX) minX = run.left;
    if (run.right > maxX) maxX = run.right;
    if (run.y < minY) minY = run.y;
    if (run.y > maxY) maxY = run.y;
  }
};

/// The runs whose neighbours are still to be looked for, the last one first. That one is held back from
/// memory until another is pushed: along a line of short runs each is popped as soon as it was pushed.
class FillStack {
 public:
  explicit FillStack(u8* buffer)
      : bottom_(reinterpret_cast<FillSegment*>(buffer + bytesToBoundary(buffer, fillStackAlignmentBytes))),
        top_(bottom_) {}

  [[gnu::always_inline]] void push(const FillSegment& run) {
    if (holdsLast_) *top_++ = last_;
    last_ = run;
    holdsLast_ = true;
  }

  /// False if there is none left.
  [[gnu::always_inline]] bool pop(FillSegment& run) {
    if (holdsLast_) {
      run = last_;
      holdsLast_ = false;
      return true;
    }
    if (top_ == bottom_) return false;
    run = *--top_;
    return true;
  }

 private:
  FillSegment* bottom_;
  FillSegment* top_;
  FillSegment last_{};
  bool holdsLast_ = false;
};

/// `Row` knows how pixels are found and runs filled along a row.
template <class Row>
class FloodFill {
 public:
  FloodFill(const Row& row, void* image, int step, Size roi, u8* buffer)
      : row_(row), image_(static_cast<unsigned char*>(image)), step_(step), roi_(roi), stack_(buffer) {}

  FilledArea run(Point seed) {
    // The seed's run is walked pixel by pixel in every form.
    const FillPixels<typename Row::Pixel>& pixels = row_;
    unsigned char* const line = rowAt(image_, step_, seed.y);
    const auto left = static_cast<std::int32_t>(pixels.extendLeft(line, seed.x));
    const auto right = static_cast<std::int32_t>(pixels.extendRight(line, seed.x));
    area_ = {left, right, seed.y, seed.y, static_cast<std::uint32_t>(right - left + 1)};
    if (roi_.height < 2) return area_;

    // Nothing of the row that this run counts as reached from is known.
    FillSegment segment{seed.y, left, right, right + 1, right, seed.y == roi_.height - 1 ? -1 : 1};
    do {
      area_.include(segment);
      if (ZORVAN_PLANNED("followsColumns", followsColumns(step_)) && isInColumn(segment))
        followColumn(segment);
      const std::int32_t ahead = segment.y - segment.direction;
      const std::int32_t back = segment.y + segment.direction;
      if (static_cast<std::uint32_t>(ahead) < static_cast<std::uint32_t>(roi_.height)) {
        scan(segment, ahead, segment.left, segment.right, segment.direction);
      }
      if (segment.left < segment.parentLeft) {
        scan(segment, back, segment.left, std::int64_t{segment.parentLeft} - 1, -segment.direction);
      }
      if (segment.parentRight < segment.right) {
        scan(segment, back, std::int64_t{segment.parentRight} + 1, segment.right, -segment.direction);
      }
    } while (stack_.pop(segment));
    return area_;
  }

 private:
  /// Whether the run and its parent are the same single pixel of two rows: another such run is likely ahead,
  /// and nothing is left to look at behind.
  static bool isInColumn(const FillSegment& run) {
    return run.left == run.right && run.parentLeft == run.left && run.parentRight == run.left;
  }

  /// Goes on from such a run while the row ahead holds another one, which would be pushed and popped with
  /// nothing in between, and leaves the last of them. What is ahead of that one is longer, or nothing.
  [[gnu::always_inline]] void followColumn(FillSegment& run) {
    if (row_.last == 0) return;
    // Where the region ends on one side the other neighbour is asked twice.
    constexpr std::int64_t pixelBytes = sizeof(typename Row::Pixel);
    const std::int64_t toLeft = run.left > 0 ? -pixelBytes : pixelBytes;
    const std::int64_t toRight = run.left < row_.last ? pixelBytes : -pixelBytes;
    const auto isOld = [this](unsigned char* p) { return row_.isOld(p, 0); };

    const std::int64_t toPrefetch = -std::int64_t{run.direction} * step_;
    const std::int32_t rowsAhead = run.direction < 0 ? roi_.height - 1 - run.y : run.y;
    unsigned char* p = Row::at(rowAt(image_, step_, run.y), run.left);
    std::int32_t rows = 0;
    for (; rows < rowsAhead; ++rows) {
      p += toPrefetch;
      if (!isOld(p) || isOld(p + toLeft) || isOld(p + toRight)) break;
      row_.fill(p, 0);
    }
    if (rows == 0) return;
    run.y -= run.direction * rows;
    area_.count += static_cast<std::uint32_t>(rows);
    area_.include(run);
  }

  /// Fills the runs of row `y` that reach into the columns `x` to `right`, and pushes them as children of
  /// `parent`. A run may go on beyond the columns on both sides, which is how a fill flows around obstacles.
  [[gnu::always_inline]] void scan(const FillSegment& parent, std::int32_t y, std::int64_t x,
                                   std::int64_t right, std::int32_t direction) {
    unsigned char* const line = rowAt(image_, step_, y);
    const std::int64_t first = x;
    for (;;) {
      x = row_.find(line, x, right);
      if (x > right) return;
      // Behind the first column, the one before a found pixel is known not to hold the old value.
      const std::int64_t runLeft = x == first ? row_.extendLeft(line, x) : x;
      const std::int64_t runRight = row_.extendRight(line, x, right);
      stack_.push({y, static_cast<std::int32_t>(runLeft), static_cast<std::int32_t>(runRight), parent.left,
                   parent.right, direction});
      area_.count += static_cast<std::uint32_t>(runRight - runLeft + 1);
      x = runRight + 2;
      if (x > right) return;
    }
  }

  Row row_;
  unsigned char* image_;
  int step_;
  Size roi_;
  FillStack stack_;
  FilledArea area_{};
};

}  // namespace
}  // namespace Zorvan::Primitives
