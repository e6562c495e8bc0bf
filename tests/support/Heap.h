#pragma once

#include <cstddef>

/// The program's heap, watched: the linker sends the calls of malloc and free in the library and the tests
/// here, and operator new and delete are the program's own. One thread watches at a time.
class WatchedHeap {
 public:
  WatchedHeap();
  ~WatchedHeap();
  WatchedHeap(const WatchedHeap&) = delete;
  WatchedHeap& operator=(const WatchedHeap&) = delete;

  /// Lets malloc refuse whatever is asked of it.
  void refuse();

  /// Lets the next operator new raise, which is how shared_ptr asks for its counts.
  void refuseNextNew();

  /// Lets `count` requests be refused from the one with the number `first` on, which counts both malloc and
  /// operator new from 0.
  void refuseSome(std::size_t first, std::size_t count);

  std::size_t requests() const;     ///< How often malloc has been called.
  std::size_t lastBytes() const;    ///< What the last call asked for.
  void* lastBlock() const;          ///< What the last call returned.
  std::size_t freed() const;        ///< How often a block of those calls has been given back.
  std::size_t allRequests() const;  ///< How often malloc and operator new have been called.
  std::size_t heldBlocks() const;   ///< Blocks of either that have not been given back.
};
