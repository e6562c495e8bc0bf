#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Zorvan::Test {

/// Readable memory between two unreadable pages.
class Arena {
 public:
  explicit Arena(std::size_t bytes);
  ~Arena();
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;

  unsigned char* begin() const { return begin_; }
  unsigned char* end() const { return end_; }
  std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }

 private:
  unsigned char* begin_;
  unsigned char* end_;
};

/// Where a block lies in its arena: right behind the unreadable page, right in front of the other one, or a
/// number of bytes behind a 64-byte boundary away from both.
struct Placement {
  enum class Edge { front, back, inside } edge;
  int shift;  ///< for `inside`
};

/// Bytes under watch, with what lies around them up to the unreadable pages. Two blocks of one size,
/// placement and seed hold the same bytes, also around them. Blocks share the arenas of their `slot`: one
/// block for each slot is alive at a time.
class Block {
 public:
  Block(int slot, std::size_t bytes, Placement placement, std::uint64_t seed);

  unsigned char* data() const { return data_; }
  std::size_t size() const { return size_; }

  /// True if the other block, made alike, holds the same bytes inside and around.
  bool sameBytes(const Block& other) const;

  /// Where the first difference lies and what stands there, as text.
  std::string difference(const Block& other) const;

 private:
  unsigned char* watchBegin_;
  unsigned char* watchEnd_;
  unsigned char* data_;
  std::size_t size_;
};

}  // namespace Zorvan::Test
