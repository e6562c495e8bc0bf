#pragma once

// Asking for what a reduction comes to some steps later. The processor's own prefetcher stops at page
// borders, and a reduction does too little work per byte to hide the restart.

#include "zorvan/primitives/kernels/common/Vectors.h"
#include "zorvan/primitives/kernels/statistic/ReadAheadPlan.h"

namespace Zorvan::Primitives {
namespace {

/// Asks for lines of the image. A hint only: it touches no memory as far as the program can tell, also beyond
/// the image.
class ReadAhead {
 public:
  explicit ReadAhead(std::int64_t distance) : distance_(distance) {}

  /// For what is read from `p` on.
  void operator()(const void* p, int bytes = 64) const {
    for (int line = 0; line < bytes; line += 64) ask(reinterpret_cast<std::uintptr_t>(p) + distance_ + line);
  }

 private:
  /// Spelled out: the compiler sees no effect in a function of prefetches alone, and leaves calls of it out.
  static void ask(std::uintptr_t line) {
    asm volatile("prefetcht0 %0" : : "m"(*reinterpret_cast<const char*>(line)));
  }

  std::int64_t distance_;
};

struct NoReadAhead {
  void operator()(const void*, int = 64) const {}
};

/// `walk` with what it calls at each step for what it reads there: short rows feel even the question whether
/// there is anything to ask for. `pixelBytes` are those of all images that are read.
template <class Walk>
inline auto readingAhead(Size roi, int pixelBytes, Walk walk) {
  const int distance = planReadAhead(roi, pixelBytes);
  return distance == 0 ? walk(NoReadAhead()) : walk(ReadAhead(distance));
}

}  // namespace
}  // namespace Zorvan::Primitives
