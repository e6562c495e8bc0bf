#pragma once

// Prefetches. Hints only: they cannot fault, touch no memory as far as the program can tell, also beyond an
// image, and processors that do not know one skip it. Spelled out, since a compiler sees no effect in a
// function that does nothing else, and removes calls of it.

#include <cstdint>

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// The line `distance` bytes after `p`, for reading. The hardware's prefetcher stops at page boundaries, and
/// loops that do little work per byte cannot hide its restart.
inline void prefetch(const void* p, std::int64_t distance = 2048) {
  const std::uintptr_t line = reinterpret_cast<std::uintptr_t>(p) + static_cast<std::uintptr_t>(distance);
  asm volatile("prefetcht0 %0" : : "m"(*reinterpret_cast<const char*>(line)));
}

/// The line at `p`, for reading, in a loop that does other work: an asm statement would change how compilers
/// inline and unroll it.
[[gnu::always_inline]] inline void prefetchLine(const void* p) { __builtin_prefetch(p); }

/// The line at `p`, in a state in which it can be written; in the older variants for reading, since not all
/// of their processors know the other instruction.
inline void prefetchForWrite(const void* p) {
#ifdef __AVX2__
  asm volatile("prefetchw %0" : : "m"(*static_cast<const char*>(p)));
#else
  prefetch(p, 0);
#endif
}

}  // namespace
}  // namespace Zorvan::Primitives
