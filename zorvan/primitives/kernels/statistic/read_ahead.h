#pragma once

#include "zorvan/primitives/kernels/common/Vectors.h"

namespace Zorvan::Primitives {
namespace {

/// Asks for the line that a reduction comes to some steps later. The processor's own prefetcher stops at page
/// borders; a reduction does too little work per byte to hide the restart. A hint only: it touches no memory
/// as far as the program can tell, also beyond the image.
inline void readAhead(const void* p) {
  constexpr std::uintptr_t distanceBytes = 2048;
  _mm_prefetch(reinterpret_cast<const char*>(reinterpret_cast<std::uintptr_t>(p) + distanceBytes),
               _MM_HINT_T0);
}

}  // namespace
}  // namespace Zorvan::Primitives
