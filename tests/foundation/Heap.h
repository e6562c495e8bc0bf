#pragma once

#include <cstddef>

/// The program's heap, watched: the linker sends the calls of malloc and free in the library and the tests
/// here. One thread watches at a time.
class WatchedHeap {
 public:
  WatchedHeap();
  ~WatchedHeap();
  WatchedHeap(const WatchedHeap&) = delete;
  WatchedHeap& operator=(const WatchedHeap&) = delete;

  /// Lets the heap refuse whatever is asked of it.
  void refuse();

  /// Lets the next operator new raise, which is how shared_ptr asks for its counts.
  void refuseNextNew();

  std::size_t requests() const;   ///< How often malloc has been called.
  std::size_t lastBytes() const;  ///< What the last call asked for.
  void* lastBlock() const;        ///< What the last call returned.
  std::size_t freed() const;      ///< How often a block of the watched calls has been given back.
};
