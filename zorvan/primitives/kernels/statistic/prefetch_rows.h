#pragma once

// Prefetches of reductions.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"
#include "zorvan/primitives/kernels/statistic/prefetch_plan.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// Prefetches the lines that lie a distance after what is loaded.
class Prefetch {
 public:
  explicit Prefetch(std::int64_t distance) : distance_(distance) {}

  /// `bytes` are loaded from `p` on.
  void operator()(const void* p, int bytes = 64) const {
    for (int line = 0; line < bytes; line += 64) prefetch(p, distance_ + line);
  }

 private:
  std::int64_t distance_;
};

struct NoPrefetch {
  void operator()(const void*, int = 64) const {}
};

/// Calls `loop` with a `Prefetch` or a `NoPrefetch`, since even a test for each vector slows short rows down.
/// `pixelBytes` is the sum over all images that are read.
template <class Loop>
inline auto withPrefetch(PrefetchDistances distances, Size roi, int pixelBytes, Loop loop) {
  const int distance = planPrefetch(roi, pixelBytes, distances);
  return ZORVAN_PLANNED("planPrefetch none", distance == 0) ? loop(NoPrefetch()) : loop(Prefetch(distance));
}
template <class Loop>
inline auto withPrefetch(Size roi, int pixelBytes, Loop loop) {
  return withPrefetch(usualDistances, roi, pixelBytes, loop);
}

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
