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

/// The position of a block in its arena: directly after the first unreadable page, directly before the last,
/// or a number of bytes after a 64-byte boundary that is far from both.
struct Placement {
  enum class Edge { front, back, inside } edge;
  int shift;  ///< for `inside`
};

/// Bytes between unreadable pages, with the bytes around them. Two blocks of the same size, placement and
/// seed have the same bytes, also around them. Blocks of one `slot` share an arena: only one of them may be
/// in use at a time.
class Block {
 public:
  Block(int slot, std::size_t bytes, Placement placement, std::uint64_t seed);

  unsigned char* data() const { return data_; }
  std::size_t size() const { return size_; }

  /// True if the other block, of the same size and placement, has the same bytes inside and around.
  bool sameBytes(const Block& other) const;

  /// A text with the position of the first difference and the bytes there.
  std::string difference(const Block& other) const;

 private:
  unsigned char* watchBegin_;
  unsigned char* watchEnd_;
  unsigned char* data_;
  std::size_t size_;
};

}  // namespace Zorvan::Test
