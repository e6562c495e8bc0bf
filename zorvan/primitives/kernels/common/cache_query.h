#pragma once

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Primitives {
namespace {

/// What the processor answered about its largest cache. `known` is false where the query failed; the kernels
/// then do without the figure.
struct CacheAnswer {
  bool known;
  int bytes;
};

/// Plans take the question as an argument: below their limits it is never asked, and tests can answer it.
inline CacheAnswer queryCacheSize() {
  int bytes = 0;
  const int status = coreGetCacheSize(&bytes);
  return {status == 0, bytes};
}

/// Line size in bytes of the same cache; not positive where it is not known.
inline int queryCacheLineSize() {
  int bytes = 0;
  coreGetCacheLineSize(&bytes);
  return bytes;
}

}  // namespace
}  // namespace Zorvan::Primitives
