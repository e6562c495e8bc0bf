#pragma once

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Primitives {
namespace {

/// The size of the processor's largest cache. `known` is false if the query failed.
struct CacheAnswer {
  bool known;
  int bytes;
};

/// Plans take the query as an argument: below their limits they never call it, and tests replace it.
inline CacheAnswer queryCacheSize() {
  int bytes = 0;
  const int status = coreGetCacheSize(&bytes);
  return {status == 0, bytes};
}

/// The line size of the same cache in bytes; not positive if it is unknown.
inline int queryCacheLineSize() {
  int bytes = 0;
  coreGetCacheLineSize(&bytes);
  return bytes;
}

}  // namespace
}  // namespace Zorvan::Primitives
