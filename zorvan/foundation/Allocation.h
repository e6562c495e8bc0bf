#pragma once

namespace Zorvan::Primitives {

constexpr int allocationAlignmentBytes = 64;

/// Allocates `length` bytes aligned to 64 bytes. Returns null if `length` is not positive or too large, or if
/// the heap is exhausted. The bytes are not initialised. Only coreFree can free them.
void* coreMalloc(int length);

/// Frees a block of coreMalloc. Null does nothing.
void coreFree(void* ptr);

}  // namespace Zorvan::Primitives
