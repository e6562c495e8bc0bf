#pragma once

#include <cstdint>
#include <initializer_list>
#include <ostream>

#include "tests/frame/ExpectedFeatures.h"

namespace Zorvan::Test {

struct Outcome {
  int status;
  std::int32_t index;
  std::uint64_t enabled;
  bool operator==(const Outcome&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << "status " << outcome.status << " index " << outcome.index << " enabled " << std::hex
             << outcome.enabled << std::dec;
}

/// The selection from mask `m` on a processor of mask `h` in plain form, bit by bit and case by case.
inline Outcome expectedSelection(std::uint64_t m, std::uint64_t h) {
  int w = 0;
  if (m >> 63 == 1) {
    m -= bit(63);
  } else {
    for (int i = 36; i <= 62; ++i) {
      if (m >> i & 1) w = 50;
    }
    if ((m & (bit(8) | bit(15))) != 0 && (h >> 9 & 1) == 0) {
      m &= ~bit(8);
      m &= ~bit(15);
      w = 49;
    }
    const int zmm[] = {20, 21, 22, 23, 24, 25, 26, 27, 29, 30, 34, 35};
    if ((h >> 33 & 1) == 0) {
      for (const int i : zmm) {
        if (m >> i & 1) w = 49;
        m &= ~bit(i);
      }
    }
    for (int i = 0; i < 63; ++i) {
      if ((m >> i & 1) == 1 && (h >> i & 1) == 0) {
        w = 49;
        break;
      }
    }
  }
  const auto all = [m](std::initializer_list<int> bits) {
    for (const int i : bits) {
      if ((m >> i & 1) == 0) return false;
    }
    return true;
  };
  std::int32_t index = 0;
  std::uint64_t tier = 0x1;
  bool supported = true;
  if (all({20, 21, 24, 25, 26})) {
    index = 5, tier = 0x73081DF;
  } else if (all({20, 21, 22, 23})) {
    index = 4, tier = 0xF081DF;
  } else if (all({15})) {
    index = 4, tier = 0x81DF;
  } else if (all({8})) {
    index = 3, tier = 0x1DF;
  } else if (all({7})) {
    index = 2, tier = 0xDF;
  } else if (all({6})) {
    index = 1, tier = 0x5F;
  } else if (all({5})) {
    index = 1, tier = 0x3F;
  } else if (all({4})) {
    index = 1, tier = 0x1F;
  } else if (all({3})) {
    index = 0, tier = 0xF;
  } else if (all({2})) {
    index = 0, tier = 0x7;
  } else {
    supported = false;
    if (all({1})) tier = 0x3;
  }
  const int status = !supported ? 36 : (m & tier) == tier ? 0 : 51;
  return {w != 0 ? w : status, index, m | tier};
}

}  // namespace Zorvan::Test
