#pragma once

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {

/// During its lifetime queries of the largest cache return these values. A status other than 0 stands for a
/// processor that does not report its cache.
class [[gnu::visibility("hidden")]] ForcedCache {
 public:
  explicit ForcedCache(int bytes, int lineBytes = 64, int status = 0)
      : probe_(Primitives::cacheProbe), line_(Primitives::cacheLineBytes) {
    set({status == 0 ? bytes : -1, status}, status == 0 ? lineBytes : 0);
  }
  ~ForcedCache() { set(probe_, line_); }
  ForcedCache(const ForcedCache&) = delete;
  ForcedCache& operator=(const ForcedCache&) = delete;

 private:
  static void set(Primitives::CacheProbe probe, int line) {
    Primitives::cacheLineBytes = line;
    Primitives::cacheProbe = probe;
  }

  Primitives::CacheProbe probe_;
  int line_;
};

}  // namespace Zorvan::Test
