#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace Zorvan::Test {

/// A small generator with a full period (splitmix64): the same seed gives the same numbers everywhere. With
/// bytes, which it reads first, every number can be chosen; each number takes as few of them as it needs.
class Random {
 public:
  explicit Random(std::uint64_t seed, std::span<const unsigned char> bytes = {})
      : state_(seed * 0x9E3779B97F4A7C15u + 0x1234567), bytes_(bytes) {}

  std::uint64_t next() { return draw(8); }
  /// A number from 0 to `limit` - 1.
  int below(int limit) {
    const std::size_t needed = limit <= 1 << 8 ? 1 : limit <= 1 << 16 ? 2 : 4;
    return static_cast<int>(draw(needed) % static_cast<std::uint64_t>(limit));
  }

  template <class List>
  const auto& oneOf(const List& list) {
    return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
  }

 private:
  std::uint64_t draw(std::size_t needed) {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return bytes_.empty() ? z ^ (z >> 31) : read(needed);
  }
  std::uint64_t read(std::size_t needed) {
    const std::size_t count = needed < bytes_.size() ? needed : bytes_.size();
    std::uint64_t number = 0;
    std::memcpy(&number, bytes_.data(), count);
    bytes_ = bytes_.subspan(count);
    return number;
  }

  std::uint64_t state_;
  std::span<const unsigned char> bytes_;
};

inline void fillRandom(unsigned char* data, std::size_t bytes, std::uint64_t seed) {
  Random random(seed);
  for (; bytes >= 8; data += 8, bytes -= 8) {
    const std::uint64_t word = random.next();
    std::memcpy(data, &word, 8);
  }
  const std::uint64_t word = random.next();
  std::memcpy(data, &word, bytes);
}

}  // namespace Zorvan::Test
