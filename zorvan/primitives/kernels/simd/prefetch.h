#pragma once

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// Asks for the line so many bytes behind `p`, which a loop comes to some steps later. The processor's own
/// prefetcher stops at page borders, and loops that do little work per byte cannot hide its restart. A hint
/// only: it touches no memory as far as the program can tell, also beyond the image. Spelled out: a compiler
/// sees no effect in a function of prefetches alone, and leaves calls of it out.
inline void prefetch(const void* p, std::int64_t distance = 2048) {
  const std::uintptr_t line = reinterpret_cast<std::uintptr_t>(p) + static_cast<std::uintptr_t>(distance);
  asm volatile("prefetcht0 %0" : : "m"(*reinterpret_cast<const char*>(line)));
}

}  // namespace
}  // namespace Zorvan::Primitives
