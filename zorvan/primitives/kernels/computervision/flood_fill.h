#pragma once

// Scan-line flood fill over the 4-connected area around a seed, with a stack of runs in the caller's memory.
//
// A filled pixel no longer holds the old value, so no pixel is counted twice and no second image is needed. A
// run's neighbours are searched in the next row along its whole length, and in its parent's row only where it
// is longer than its parent. Interface contract: the work memory is large enough for the stack; its height is
// not tested.

#include "zorvan/primitives/frame/ConnectedComp.h"
#include "zorvan/primitives/kernels/common/arguments.h"
#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/common/plane.h"
#include "zorvan/primitives/kernels/computervision/flood_fill_plan.h"
#include "zorvan/primitives/kernels/computervision/flood_pixels.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::FloodFill {
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

/// The runs whose neighbours are still to be searched, the last one first. That one stays in registers until
/// another is pushed: along a line of short runs each is popped directly after its push.
class FillStack {
 public:
  explicit FillStack(u8* buffer)
      : bottom_(reinterpret_cast<FillSegment*>(buffer + bytesToBoundary(buffer, fillStackAlignmentBytes))),
        top_(bottom_) {}

  [[gnu::always_inline]] void push(const FillSegment& run) {
    if (lastIsInRegisters_) *top_++ = last_;
    last_ = run;
    lastIsInRegisters_ = true;
  }

  /// False if the stack is empty.
  [[gnu::always_inline]] bool pop(FillSegment& run) {
    if (lastIsInRegisters_) {
      run = last_;
      lastIsInRegisters_ = false;
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
  bool lastIsInRegisters_ = false;
};

/// `Row` finds pixels and fills runs along a row.
template <class Row>
class Filler {
 public:
  Filler(const Row& row, Plane<u8> image, Size roi, u8* buffer)
      : row_(row), image_(image), roi_(roi), stack_(buffer) {}

  FilledArea run(Point seed) {
    // The seed's run is filled pixel by pixel in every form.
    const FillPixels<typename Row::Pixel>& pixels = row_;
    u8* const line = image_.at(seed.y);
    const auto left = static_cast<std::int32_t>(pixels.extendLeft(line, seed.x));
    const auto right = static_cast<std::int32_t>(pixels.extendRight(line, seed.x));
    area_ = {left, right, seed.y, seed.y, static_cast<std::uint32_t>(right - left + 1)};
    if (roi_.height < 2) return area_;

    // No column of the row that takes the parent's place is examined yet.
    FillSegment segment{seed.y, left, right, right + 1, right, seed.y == roi_.height - 1 ? -1 : 1};
    do {
      area_.include(segment);
      if (ZORVAN_PLANNED("followsColumns", followsColumns(image_.step)) && isInColumn(segment))
        followColumn(segment);
      const std::int32_t next = segment.y - segment.direction;
      const std::int32_t back = segment.y + segment.direction;
      if (static_cast<std::uint32_t>(next) < static_cast<std::uint32_t>(roi_.height)) {
        scan(segment, next, segment.left, segment.right, segment.direction);
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
  /// Whether the run and its parent are the same single pixel of two rows: another such run probably follows,
  /// and the parent's row needs no search.
  static bool isInColumn(const FillSegment& run) {
    return run.left == run.right && run.parentLeft == run.left && run.parentRight == run.left;
  }

  /// Continues from such a run while the next row holds another one, which would be popped directly after its
  /// push, and leaves the last of them. The run that follows it, if any, is longer.
  [[gnu::always_inline]] void followColumn(FillSegment& run) {
    if (row_.last == 0) return;
    // At an edge of the region the other neighbour is tested twice.
    constexpr std::int64_t pixelBytes = sizeof(typename Row::Pixel);
    const std::int64_t toLeft = run.left > 0 ? -pixelBytes : pixelBytes;
    const std::int64_t toRight = run.left < row_.last ? pixelBytes : -pixelBytes;
    const auto isOld = [this](u8* p) { return row_.isOld(p, 0); };

    const std::int64_t toNext = -std::int64_t{run.direction} * image_.step;
    const std::int32_t rowsLeft = run.direction < 0 ? roi_.height - 1 - run.y : run.y;
    u8* p = Row::at(image_.at(run.y), run.left);
    std::int32_t rows = 0;
    for (; rows < rowsLeft; ++rows) {
      p += toNext;
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
    u8* const line = image_.at(y);
    const std::int64_t first = x;
    for (;;) {
      x = row_.find(line, x, right);
      if (x > right) return;
      // After the first column, the pixel before a found one does not hold the old value.
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
  Plane<u8> image_;
  Size roi_;
  FillStack stack_;
  FilledArea area_{};
};

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
