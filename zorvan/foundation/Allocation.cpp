// The only source that uses the heap directly. An aligned block is one heap block with the aligned address
// inside it; the word below the aligned address holds the address that the heap returned:
//
//     base                     aligned, a multiple of 64
//      |<----- 8 to 71 bytes ---->|
//      |        padding    | base | length bytes ... |

#include "zorvan/foundation/Allocation.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "zorvan/foundation/Wrapping.h"
#include "zorvan/foundation/address_sanitizer.h"

namespace Zorvan::Primitives {

namespace {

// The padding of the alignment, the stored word, and one.
constexpr int overheadBytes = (allocationAlignmentBytes - 1) + 8 + 1;

}  // namespace

void* coreMalloc(int length) {
  if (length <= 0) return nullptr;
  const std::int32_t blockBytes = wrappedSum(length, overheadBytes);
  if (blockBytes < length) return nullptr;
  void* const base = std::malloc(static_cast<std::size_t>(blockBytes));
  if (base == nullptr) return nullptr;

  const auto address = reinterpret_cast<std::uintptr_t>(base);
  const std::uintptr_t alignedAddress = (address + (allocationAlignmentBytes - 1) + sizeof(void*)) &
                                        ~std::uintptr_t{allocationAlignmentBytes - 1};
  char* const begin = static_cast<char*>(base);
  char* const aligned = begin + (alignedAddress - address);
  reinterpret_cast<void**>(aligned)[-1] = base;
  // The sanitizer knows the heap block only, and would accept accesses before and after the aligned one.
  forbidAccess(begin, aligned);
  forbidAccess(aligned + length, begin + blockBytes);
  return aligned;
}

void coreFree(void* ptr) {
  if (ptr == nullptr) return;
  void** const stored = static_cast<void**>(ptr) - 1;
  allowAccess(stored, sizeof *stored);
  std::free(*stored);
}

}  // namespace Zorvan::Primitives
