#pragma once

// Which images that an operation updates in place are prefetched. Pure, so that the limits can be tested on
// any machine.

#include <cstdint>

#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives {
namespace {

constexpr bool prefetchesInPlace(bool inPlace, std::int64_t bytes) {
  return inPlace && bytes >= prefetchInPlaceFromBytes && bytes <= prefetchInPlaceUpToBytes;
}

}  // namespace
}  // namespace Zorvan::Primitives
