#include "Heap.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

extern "C" {
void* __real_malloc(std::size_t bytes);
void __real_free(void* block);
}

namespace {

// Filled without the heap, which it describes.
struct State {
  bool watching;
  bool refusing;
  bool refusingNextNew;
  std::size_t requests;
  std::size_t lastBytes;
  std::size_t freed;
  std::array<void*, 64> blocks;
};

State state;

}  // namespace

extern "C" void* __wrap_malloc(std::size_t bytes) {
  if (!state.watching) return __real_malloc(bytes);
  void* const block = state.refusing ? nullptr : __real_malloc(bytes);
  state.lastBytes = bytes;
  state.blocks.at(state.requests++) = block;
  return block;
}

extern "C" void __wrap_free(void* block) {
  auto& blocks = state.blocks;
  const auto found = std::find(blocks.begin(), blocks.end(), block);
  if (state.watching && block != nullptr && found != blocks.end()) {
    *found = nullptr;
    ++state.freed;
  }
  __real_free(block);
}

void* operator new(std::size_t bytes) {
  if (state.refusingNextNew) {
    state.refusingNextNew = false;
    throw std::bad_alloc();
  }
  if (void* const block = __real_malloc(bytes)) return block;
  throw std::bad_alloc();
}

void operator delete(void* block) noexcept { __real_free(block); }
void operator delete(void* block, std::size_t) noexcept { __real_free(block); }

WatchedHeap::WatchedHeap() {
  state = State{};
  state.watching = true;
}

WatchedHeap::~WatchedHeap() { state = State{}; }

void WatchedHeap::refuse() { state.refusing = true; }
void WatchedHeap::refuseNextNew() { state.refusingNextNew = true; }

std::size_t WatchedHeap::requests() const { return state.requests; }
std::size_t WatchedHeap::lastBytes() const { return state.lastBytes; }
void* WatchedHeap::lastBlock() const {
  return state.requests == 0 ? nullptr : state.blocks[state.requests - 1];
}
std::size_t WatchedHeap::freed() const { return state.freed; }
