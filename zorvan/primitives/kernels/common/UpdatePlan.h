#pragma once

// Which images that are updated where they lie are asked for ahead of the loop. Pure, so that the limits can
// be tested on any machine.

#include <cstdint>

#include "zorvan/primitives/kernels/common/ImageLimits.h"

namespace Zorvan::Primitives {
namespace {

constexpr bool updatesAhead(bool inPlace, std::int64_t bytes) {
  return inPlace && bytes >= updateAheadFromBytes && bytes <= updateAheadUpToBytes;
}

}  // namespace
}  // namespace Zorvan::Primitives
