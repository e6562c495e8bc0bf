#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Zorvan::Test {

/// A small generator with a full period (splitmix64): the same seed gives the same numbers everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15u + 0x1234567) {}

  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  /// A number from 0 to `limit` - 1.
  int below(int limit) { return static_cast<int>(next() % static_cast<std::uint64_t>(limit)); }

  template <class List>
  const auto& oneOf(const List& list) {
    return list[next() % std::size(list)];
  }

 private:
  std::uint64_t state_;
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
