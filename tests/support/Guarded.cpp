#include "tests/support/Guarded.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <stdexcept>

#include "tests/support/Random.h"

namespace Zorvan::Test {
namespace {

/// Bytes before and after a block that a call must not change.
constexpr std::size_t marginBytes = 192;

std::size_t pageSize() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }

Arena& arenaOf(int slot, std::size_t bytes) {
  static std::map<int, std::unique_ptr<Arena>> arenas;
  auto& arena = arenas[slot];
  if (!arena || arena->size() < bytes) arena = std::make_unique<Arena>(std::max(bytes, std::size_t{1} << 16));
  return *arena;
}

unsigned char* place(const Arena& arena, std::size_t bytes, Placement placement) {
  switch (placement.edge) {
    case Placement::Edge::front:
      return arena.begin();
    case Placement::Edge::back:
      return arena.end() - bytes;
    case Placement::Edge::inside:
      return arena.begin() + 256 + placement.shift;
  }
  throw std::logic_error("no such placement");
}

}  // namespace

Arena::Arena(std::size_t bytes) {
  const std::size_t page = pageSize();
  const std::size_t inside = (bytes + page - 1) / page * page;
  void* all = mmap(nullptr, inside + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (all == MAP_FAILED) throw std::bad_alloc();
  begin_ = static_cast<unsigned char*>(all) + page;
  end_ = begin_ + inside;
  if (mprotect(begin_, inside, PROT_READ | PROT_WRITE) != 0) throw std::runtime_error("mprotect failed");
}

Arena::~Arena() { munmap(begin_ - pageSize(), size() + 2 * pageSize()); }

Block::Block(int slot, std::size_t bytes, Placement placement, std::uint64_t seed) : size_(bytes) {
  const Arena& arena = arenaOf(slot, bytes + 1024);
  data_ = place(arena, bytes, placement);
  watchBegin_ = data_ - std::min<std::size_t>(marginBytes, static_cast<std::size_t>(data_ - arena.begin()));
  watchEnd_ = data_ + bytes +
              std::min<std::size_t>(marginBytes, static_cast<std::size_t>(arena.end() - (data_ + bytes)));
  fillRandom(watchBegin_, static_cast<std::size_t>(watchEnd_ - watchBegin_), seed);
}

bool Block::sameBytes(const Block& other) const {
  return std::memcmp(watchBegin_, other.watchBegin_, static_cast<std::size_t>(watchEnd_ - watchBegin_)) == 0;
}

std::string Block::difference(const Block& other) const {
  const auto [mine, theirs] = std::mismatch(watchBegin_, watchEnd_, other.watchBegin_);
  if (mine == watchEnd_) return "no difference";
  const std::ptrdiff_t offset = mine - data_;
  const bool inside = offset >= 0 && offset < static_cast<std::ptrdiff_t>(size_);
  std::string text = "first difference at byte " + std::to_string(offset) +
                     (inside ? "" : " (outside the block)") + " of " + std::to_string(size_) +
                     "\n  expected:";
  const auto dump = [&](const unsigned char* from, const unsigned char* end) {
    for (int i = 0; i < 16 && from + i < end; ++i) {
      char digits[4];
      std::snprintf(digits, sizeof digits, " %02x", from[i]);
      text += digits;
    }
  };
  dump(mine, watchEnd_);
  text += "\n  actual:  ";
  dump(theirs, other.watchEnd_);
  return text;
}

}  // namespace Zorvan::Test
