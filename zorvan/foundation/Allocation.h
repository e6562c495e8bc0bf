#pragma once

namespace Zorvan::Primitives {

/// Allocates `length` bytes that begin at a multiple of 64, or gives null if `length` is not positive, is too
/// large, or the heap is exhausted. The bytes hold what the heap left there. Only coreFree takes them back:
/// the block is not the heap's own.
void* coreMalloc(int length);

/// Gives back a block of coreMalloc. Null does nothing.
void coreFree(void* ptr);

}  // namespace Zorvan::Primitives
