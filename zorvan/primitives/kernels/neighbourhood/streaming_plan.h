#pragma once

// Which results of neighbourhood operations may take streaming stores. Pure, so that the limit can be tested.

#include <cstdint>

#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives {
namespace {

/// Streaming stores fill whole cache lines, one after the other: the processor's few write-combining buffers
/// cannot hold incomplete lines of several rows.
constexpr int streamedBlockBytes = 64;

/// Whether a result is large enough for the vectors that it is stored in, and all its rows have the same
/// offset from a block's boundary.
constexpr bool mayStream(std::int64_t resultBytes, std::int64_t dstStep, int vectorBytes) {
  return resultBytes >= (vectorBytes == streamedBlockBytes ? streamFromBytes : streamPartsFromBytes) &&
         dstStep % streamedBlockBytes == 0;
}

}  // namespace
}  // namespace Zorvan::Primitives
