#pragma once

#include <cstddef>

/// Watches the program's heap: the linker redirects the calls of malloc and free in the library and the
/// tests, and the program defines operator new and delete. One thread watches at a time.
class WatchedHeap {
 public:
  WatchedHeap();
  ~WatchedHeap();
  WatchedHeap(const WatchedHeap&) = delete;
  WatchedHeap& operator=(const WatchedHeap&) = delete;

  /// Makes malloc refuse every request.
  void refuse();

  /// Makes the next operator new throw, with which shared_ptr allocates its count.
  void refuseNextNew();

  /// Makes `count` requests fail from the one with the number `first` on, counted from 0 over malloc and
  /// operator new.
  void refuseSome(std::size_t first, std::size_t count);

  std::size_t requests() const;     ///< How often malloc has been called.
  std::size_t lastBytes() const;    ///< Of the last request.
  void* lastBlock() const;          ///< Of the last request.
  std::size_t freed() const;        ///< How many blocks of malloc have been freed.
  std::size_t allRequests() const;  ///< How often malloc and operator new have been called.
  std::size_t liveBlocks() const;   ///< Blocks of either that have not been freed.
};
