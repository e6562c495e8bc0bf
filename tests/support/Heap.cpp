#include "tests/support/Heap.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

extern "C" {
void* __real_malloc(std::size_t bytes);
void __real_free(void* block);
}

namespace {

// Allocates nothing itself.
struct State {
  bool watching;
  bool refusing;
  bool refusingNextNew;
  std::size_t firstRefused;
  std::size_t refusedCount;
  std::size_t allRequests;
  std::size_t requests;
  std::size_t lastBytes;
  void* lastBlock;
  std::size_t freed;
  std::array<void*, 256> blocks;     // of malloc; null if unused
  std::array<void*, 256> newBlocks;  // of operator new
};

State state;

using Blocks = std::array<void*, 256>;

/// Counts a request, and returns whether it is to be refused.
bool refusesNext() {
  const std::size_t number = state.allRequests++;
  return number >= state.firstRefused && number - state.firstRefused < state.refusedCount;
}

void hold(Blocks& blocks, void* block) {
  if (block == nullptr) return;
  const auto place = std::find(blocks.begin(), blocks.end(), nullptr);
  if (place == blocks.end()) std::abort();
  *place = block;
}

/// Returns whether `block` was in the list.
bool giveBack(Blocks& blocks, void* block) {
  if (!state.watching || block == nullptr) return false;
  const auto place = std::find(blocks.begin(), blocks.end(), block);
  if (place == blocks.end()) return false;
  *place = nullptr;
  return true;
}

std::size_t heldOf(const Blocks& blocks) {
  return blocks.size() - static_cast<std::size_t>(std::count(blocks.begin(), blocks.end(), nullptr));
}

}  // namespace

extern "C" void* __wrap_malloc(std::size_t bytes) {
  if (!state.watching) return __real_malloc(bytes);
  const bool refused = refusesNext() || state.refusing;
  void* const block = refused ? nullptr : __real_malloc(bytes);
  ++state.requests;
  state.lastBytes = bytes;
  state.lastBlock = block;
  hold(state.blocks, block);
  return block;
}

extern "C" void __wrap_free(void* block) {
  if (giveBack(state.blocks, block)) ++state.freed;
  __real_free(block);
}

void* operator new(std::size_t bytes) {
  if (!state.watching) {
    if (void* const block = __real_malloc(bytes)) return block;
    throw std::bad_alloc();
  }
  const bool refused = refusesNext() || state.refusingNextNew;
  state.refusingNextNew = false;
  void* const block = refused ? nullptr : __real_malloc(bytes);
  if (block == nullptr) throw std::bad_alloc();
  hold(state.newBlocks, block);
  return block;
}

void operator delete(void* block) noexcept {
  giveBack(state.newBlocks, block);
  __real_free(block);
}
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

WatchedHeap::WatchedHeap() {
  state = State{};
  state.watching = true;
}

WatchedHeap::~WatchedHeap() { state = State{}; }

void WatchedHeap::refuse() { state.refusing = true; }
void WatchedHeap::refuseNextNew() { state.refusingNextNew = true; }
void WatchedHeap::refuseSome(std::size_t first, std::size_t count) {
  state.firstRefused = first;
  state.refusedCount = count;
}

std::size_t WatchedHeap::requests() const { return state.requests; }
std::size_t WatchedHeap::lastBytes() const { return state.lastBytes; }
void* WatchedHeap::lastBlock() const { return state.lastBlock; }
std::size_t WatchedHeap::freed() const { return state.freed; }
std::size_t WatchedHeap::allRequests() const { return state.allRequests; }
std::size_t WatchedHeap::liveBlocks() const { return heldOf(state.blocks) + heldOf(state.newBlocks); }
