#pragma once

// In builds with the address sanitizer, memory that is allocated and yet nobody's.

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define ZORVAN_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZORVAN_ADDRESS_SANITIZER
#endif
#endif

#ifdef ZORVAN_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace Zorvan::Primitives {

#ifdef ZORVAN_ADDRESS_SANITIZER
/// From now on the sanitizer reports accesses to the bytes.
inline void forbidAccess(const char* begin, const char* end) {
  ASAN_POISON_MEMORY_REGION(begin, static_cast<std::size_t>(end - begin));
}
/// Takes that back.
inline void allowAccess(const void* begin, std::size_t bytes) { ASAN_UNPOISON_MEMORY_REGION(begin, bytes); }
#else
inline void forbidAccess(const char*, const char*) {}
inline void allowAccess(const void*, std::size_t) {}
#endif

}  // namespace Zorvan::Primitives
