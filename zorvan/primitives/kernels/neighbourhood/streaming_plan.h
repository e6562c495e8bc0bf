#pragma once

// Which results of neighbourhood operations may take streaming stores. Pure, so that the limit can be tested.

#include <cstdint>

#include "zorvan/primitives/kernels/common/image_limits.h"

namespace Zorvan::Primitives {
namespace {

/// Streaming stores are of whole cache lines: the processor's few write-combining buffers cannot hold
/// incomplete lines of several rows.
constexpr int streamedBlockBytes = 64;

/// Whether a result is large enough, and all its rows have the same offset from a block's boundary.
constexpr bool mayStream(std::int64_t resultBytes, std::int64_t dstStep) {
  return resultBytes >= streamFromBytes && dstStep % streamedBlockBytes == 0;
}

}  // namespace
}  // namespace Zorvan::Primitives
