#pragma once

#include <atomic>
#include <cstdint>

namespace Zorvan::Primitives {

/// A process-wide figure. Threads that answer the same question at once store the same value, so relaxed
/// order is all that is needed, and a read stays one load.
template <class T>
class ProcessWide {
 public:
  constexpr explicit ProcessWide(T value) : value_(value) {}
  ProcessWide(const ProcessWide&) = delete;
  ProcessWide& operator=(const ProcessWide&) = delete;

  operator T() const { return value_.load(std::memory_order_relaxed); }
  T operator=(T value) {
    value_.store(value, std::memory_order_relaxed);
    return value;
  }

 private:
  std::atomic<T> value_;
};

extern ProcessWide<std::int32_t> variantIndex;

int coreSelectVariant();
int coreGetCacheSize(int* size);
void coreGetCacheLineSize(int* line);

}  // namespace Zorvan::Primitives
