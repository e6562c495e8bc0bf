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
#include "zorvan/primitives/kernels/computervision/flood_window.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::FloodFill {
namespace {

/// The bounding box of the runs, and the number of their pixels on 32 bits.
struct FilledArea {
  std::int32_t minX, maxX, minY, maxY;
  std::uint32_t count;

  void includeColumns(std::int32_t left, std::int32_t right) {
    if (left < minX) minX = left;
    if (right > maxX) maxX = right;
  }
  void include(const FillSegment& run) {
    includeColumns(run.left, run.right);
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
      if (ZORVAN_PLANNED("followsColumns", followsColumns(image_.step)) && isInColumn(segment)) {
        if constexpr (Row::hasWindows) {
          followColumnApart(segment);
        } else {
          followColumn(segment);
        }
      }
      if constexpr (Row::hasWindows) {
        while (hasNearEnds(segment) && followRuns(segment)) {
        }
      }
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
  /// Whether the run is a single pixel and its parent's row needs no search: another such run may follow.
  /// A single pixel lies beside its parent, if it has one. Without windows a search costs less, so the parent
  /// must be such a pixel too.
  static bool isInColumn(const FillSegment& run) {
    if (run.left != run.right) return false;
    if constexpr (Row::hasWindows) return run.parentLeft <= run.parentRight;
    return run.parentLeft == run.left && run.parentRight == run.left;
  }

  /// Continues from such a run while the next row holds another one, which would be popped directly after its
  /// push, and leaves the last of them. The run that follows it, if any, is longer.
  [[gnu::always_inline]] void followColumn(FillSegment& run) {
    const FillPixels<typename Row::Pixel> row = row_;  // a copy, which no store to the image can change
    if (row.last == 0) return;
    // At an edge of the region the other neighbour is tested twice.
    constexpr std::int64_t pixelBytes = sizeof(typename Row::Pixel);
    const std::int64_t toLeft = run.left > 0 ? -pixelBytes : pixelBytes;
    const std::int64_t toRight = run.left < row.last ? pixelBytes : -pixelBytes;
    const auto isOld = [row](u8* p) { return row.isOld(p, 0); };

    const std::int64_t toNext = -std::int64_t{run.direction} * image_.step;
    const std::int32_t rowsLeft = run.direction < 0 ? roi_.height - 1 - run.y : run.y;
    u8* p = Row::at(image_.at(run.y), run.left);
    std::int32_t rows = 0;
    for (; rows < rowsLeft; ++rows) {
      p += toNext;
      if (!isOld(p) || isOld(p + toLeft) || isOld(p + toRight)) break;
      row.fill(p, 0);
    }
    if (rows == 0) return;
    run.y -= run.direction * rows;
    run.parentLeft = run.parentRight = run.left;
    area_.count += static_cast<std::uint32_t>(rows);
    area_.include(run);
  }

  /// Not inlined beside the windows, so that its loop has all registers.
  [[gnu::noinline]] void followColumnApart(FillSegment& run) { followColumn(run); }

  /// Whether the ends of a run lie near those of its parent. Those of its child probably do too.
  static bool hasNearEnds(const FillSegment& run) {
    const auto isNear = [](std::int32_t a, std::int32_t b) {
      return static_cast<std::uint32_t>(a - b + nearColumns) <= 2 * nearColumns;
    };
    return isNear(run.left, run.parentLeft) && isNear(run.right, run.parentRight) &&
           run.parentLeft <= run.parentRight;
  }

  /// Rows that lie in different pages are not prefetched by the processor itself.
  static constexpr int rowsAhead = 4;
  static void prefetchWindows(const u8* line, const EndWindows& windows, std::int64_t distance) {
    constexpr std::int64_t pixelBytes = sizeof(typename Row::Pixel), windowBytes = windowPixels * pixelBytes;
    const u8* const left = line + windows.left * pixelBytes;
    const u8* const rightEnd = line + windows.right * pixelBytes + windowBytes - 1;
    for (int byte = 0; byte < windowBytes; byte += 64) {
      prefetch(left + byte, distance);
      prefetch(rightEnd - byte, distance);
    }
  }

  /// Continues from such a run while the next row holds exactly one run beside it and its parent's row none:
  /// that one would be popped directly after its push. Leaves the last of them. True if the next one leaves
  /// the windows, so that other windows may follow it. Not inlined, like `followColumnApart`: each loop has
  /// all registers.
  [[gnu::noinline]] bool followRuns(FillSegment& run) {
    const std::int32_t rowsLeft = run.direction < 0 ? roi_.height - 1 - run.y : run.y;
    if (rowsLeft == 0) return false;
    const Row row = row_;
    const EndWindows windows = EndWindows::around(run.left, run.right, row.last);
    const std::int64_t rightPlace = windows.rightPlace();
    const std::int64_t between = windows.right - windows.left - rightPlace;
    // Beyond these places an end leaves its window.
    const std::int64_t least = windows.left == 0 ? 0 : 1;
    const std::int64_t most =
        rightPlace + (windows.right + windowPixels > row.last ? windowPixels - 1 : windowPixels - 2);
    const std::int64_t mostFirst = between == 0 ? most : rightPlace - 1;
    const std::int64_t leastEnd = between == 0 ? least : rightPlace;

    const std::int64_t toNext = -std::int64_t{run.direction} * image_.step;
    u8* line = image_.at(run.y);
    for (int ahead = 1; ahead <= rowsAhead; ++ahead) prefetchWindows(line, windows, ahead * toNext);
    const auto matchesOf = [&](u8* pixels) {
      return row.window(pixels, windows.left) | std::uint64_t{row.window(pixels, windows.right)}
                                                    << rightPlace;
    };

    std::uint64_t back = matchesOf(line - toNext), here = matchesOf(line);
    std::int64_t left = run.left - windows.left, parentLeft = run.parentLeft - windows.left;
    std::int64_t right = run.right - windows.left - between,
                 parentRight = run.parentRight - windows.left - between;
    std::int64_t minX = left, maxX = right, count = 0;
    std::int32_t rows = 0;
    bool leftWindow = false;
    for (; rows < rowsLeft; ++rows) {
      line += toNext;
      prefetchWindows(line, windows, rowsAhead * toNext);
      const std::uint64_t next = matchesOf(line);
      const std::int64_t first = firstOfRun(next, left), end = lastOfRun(next, right);
      const std::uint64_t besideParent =
          (bitsBefore(parentLeft) & ~bitsBefore(left)) | (bitsUpTo(right) & ~bitsUpTo(parentRight));
      const std::uint64_t gaps = ~next & ~bitsBefore(first) & bitsUpTo(end);
      if (((gaps | (back & besideParent)) != 0) | (first > end)) break;
      if ((first < least) | (first > mostFirst) | (end < leastEnd) | (end > most)) {
        leftWindow = rows != 0;
        break;
      }
      if (!row.isOldFrom(line, windows.left + windowPixels, windows.right, rowsAhead * toNext)) break;

      const std::int64_t pixels = end - first + between + 1;
      row.fillRun(line, windows.left + first, pixels);
      count += pixels;
      parentLeft = left;
      parentRight = right;
      left = first;
      right = end;
      back = here;
      here = next;
      minX = left < minX ? left : minX;
      maxX = right > maxX ? right : maxX;
    }
    if (rows == 0) return false;
    const auto columnOfFirst = [&](std::int64_t place) {
      return static_cast<std::int32_t>(place + windows.left);
    };
    const auto columnOfEnd = [&](std::int64_t place) {
      return static_cast<std::int32_t>(place + windows.left + between);
    };
    area_.count += static_cast<std::uint32_t>(count);
    run = {run.y - run.direction * rows, columnOfFirst(left),      columnOfEnd(right),
           columnOfFirst(parentLeft),    columnOfEnd(parentRight), run.direction};
    area_.include(run);
    area_.includeColumns(columnOfFirst(minX), columnOfEnd(maxX));
    return leftWindow;
  }

  /// Fills the runs of row `y` that reach into the columns `x` to `right`, and pushes them as children of
  /// `parent`. A run may go on beyond the columns on both sides, which is how a fill flows around obstacles.
  [[gnu::always_inline]] void scan(const FillSegment& parent, std::int32_t y, std::int64_t x,
                                   std::int64_t right, std::int32_t direction) {
    if constexpr (Row::hasWindows) {
      scanWindows(parent, y, x, right, direction);
    } else {
      scanPixels(parent, y, x, right, direction);
    }
  }

  [[gnu::always_inline]] void scanPixels(const FillSegment& parent, std::int32_t y, std::int64_t x,
                                         std::int64_t right, std::int32_t direction) {
    u8* const line = image_.at(y);
    const std::int64_t first = x;
    for (;;) {
      x = row_.find(line, x, right);
      if (x > right) return;
      // After the first column, the pixel before a found one does not hold the old value.
      const std::int64_t runLeft = x == first ? row_.extendLeft(line, x) : x;
      const std::int64_t runRight = row_.extendRight(line, x, right);
      push(parent, y, runLeft, runRight, direction);
      x = runRight + 2;
      if (x > right) return;
    }
  }

  /// Several short runs are taken from the bits of one window.
  [[gnu::always_inline]] void scanWindows(const FillSegment& parent, std::int32_t y, std::int64_t x,
                                          std::int64_t right, std::int32_t direction) {
    const Row row = row_;
    u8* const line = image_.at(y);
    // The window has columns on the left of the first one, where a run may begin.
    std::int64_t window = windowAround(x, row.last);
    std::uint64_t matches = row.window(line, window);
    std::uint64_t ahead = ~bitsBefore(x - window);
    if (const std::int64_t place = x - window; matches >> place & 1) {
      // Only this run can begin before the columns of the search.
      const std::int64_t before = highestSetBit((~matches & bitsBefore(place)) << 1 | 1);
      std::int64_t left = window + before;
      if (before == 0 && window != 0) left = row.startOfRun(line, window);
      x = endOf(row, line, window, matches, place);
      fillAndPush(row, parent, line, y, left, x, direction);
      x += 2;
      if (x > right) return;
      ahead = x - window < windowPixels ? ~bitsBefore(x - window) : 0;
    }
    for (;;) {
      const std::uint64_t found = matches & ahead;
      if (found == 0) {
        const std::int64_t behind = window + windowPixels;
        if (x < behind) x = behind;
        if (x > right) return;
        window = x < row.last - (windowPixels - 1) ? x : windowAround(row.last, row.last);
        matches = row.window(line, window);
        ahead = ~bitsBefore(x - window);
        continue;
      }
      const std::int64_t place = lowestSetBit(found);
      const std::int64_t left = window + place;
      if (left > right) return;
      x = endOf(row, line, window, matches, place);
      fillAndPush(row, parent, line, y, left, x, direction);
      x += 2;
      if (x > right) return;
      ahead = x - window < windowPixels ? ~bitsBefore(x - window) : 0;
    }
  }

  /// The last column of the run that contains `place` of a window.
  static std::int64_t endOf(const Row& row, u8* line, std::int64_t window, std::uint64_t matches,
                            std::int64_t place) {
    const auto others = static_cast<std::uint32_t>(~matches & ~bitsBefore(place));
    if (others != 0) return window + lowestSetBit(others) - 1;
    return row.endOfRun(line, window + windowPixels);
  }

  [[gnu::always_inline]] void fillAndPush(const Row& row, const FillSegment& parent, u8* line, std::int32_t y,
                                          std::int64_t left, std::int64_t right, std::int32_t direction) {
    row.fillRun(line, left, right - left + 1);
    push(parent, y, left, right, direction);
  }

  [[gnu::always_inline]] void push(const FillSegment& parent, std::int32_t y, std::int64_t left,
                                   std::int64_t right, std::int32_t direction) {
    stack_.push({y, static_cast<std::int32_t>(left), static_cast<std::int32_t>(right), parent.left,
                 parent.right, direction});
    area_.count += static_cast<std::uint32_t>(right - left + 1);
  }

  Row row_;
  Plane<u8> image_;
  Size roi_;
  FillStack stack_;
  FilledArea area_{};
};

}  // namespace
}  // namespace Zorvan::Primitives::FloodFill
