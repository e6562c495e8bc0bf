#pragma once

// Reductions that ask for what they come to some steps later.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"
#include "zorvan/primitives/kernels/statistic/prefetch_plan.h"

namespace Zorvan::Primitives {
namespace {

/// Asks for lines of the image.
class ReadAhead {
 public:
  explicit ReadAhead(std::int64_t distance) : distance_(distance) {}

  /// For what is read from `p` on.
  void operator()(const void* p, int bytes = 64) const {
    for (int line = 0; line < bytes; line += 64) prefetch(p, distance_ + line);
  }

 private:
  std::int64_t distance_;
};

struct NoReadAhead {
  void operator()(const void*, int = 64) const {}
};

/// `walk` with what it calls at each step for what it reads there: short rows feel even the question whether
/// there is anything to ask for. `pixelBytes` are those of all images that are read.
template <class Walk>
inline auto readingAhead(ReadAheadDistances distances, Size roi, int pixelBytes, Walk walk) {
  const int distance = planReadAhead(roi, pixelBytes, distances);
  return ZORVAN_PLANNED("planReadAhead not at all", distance == 0) ? walk(NoReadAhead())
                                                                   : walk(ReadAhead(distance));
}
template <class Walk>
inline auto readingAhead(Size roi, int pixelBytes, Walk walk) {
  return readingAhead(usualDistances, roi, pixelBytes, walk);
}

}  // namespace
}  // namespace Zorvan::Primitives
