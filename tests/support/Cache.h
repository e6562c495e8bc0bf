#pragma once

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {

/// While it lives, the processor's answers about its largest cache are these. A status other than 0 is the
/// answer of a processor that cannot tell.
class ForcedCache {
 public:
  explicit ForcedCache(int bytes, int lineBytes = 64, int status = 0)
      : bytes_(Primitives::cacheSizeBytes),
        line_(Primitives::cacheLineBytes),
        state_(Primitives::cacheProbeState) {
    set(status == 0 ? bytes : -1, status == 0 ? lineBytes : 0, status);
  }
  ~ForcedCache() { set(bytes_, line_, state_); }
  ForcedCache(const ForcedCache&) = delete;
  ForcedCache& operator=(const ForcedCache&) = delete;

 private:
  static void set(int bytes, int line, int state) {
    Primitives::cacheSizeBytes = bytes;
    Primitives::cacheLineBytes = line;
    Primitives::cacheProbeState = state;
  }

  int bytes_;
  int line_;
  int state_;
};

}  // namespace Zorvan::Test
