#pragma once

// Roots of bytes, not scaled: looked up in registers of sixteen entries.

#include "zorvan/primitives/kernels/arithmetic/unary/root_tables.h"
#include "zorvan/primitives/kernels/simd/lane_operations.h"

namespace Zorvan::Primitives::Unary {
namespace {

#ifdef __SSSE3__
/// The roots of all bytes, from 0 to 16, by the byte's successor: from 16 on, sixteen successors with the
/// same high half then have two roots at most, the second one greater by 1. The first fifteen have a table of
/// their own.
struct RootsBySuccessor {
  // Indexed by the high half of the successor; entry 0 adds nothing to the small roots.
  alignas(64) u8 first[64] = {};      ///< the root of the first of sixteen
  alignas(64) u8 lastPlace[64] = {};  ///< the low half of the last one with this root
  // Indexed by the low half where the high one is 0.
  alignas(64) u8 small[64] = {};

  constexpr RootsBySuccessor() {
    for (int i = 0; i < 64; ++i) {
      const int entry = i % 16, sixteen = 16 * entry;
      lastPlace[i] = 15;
      if (entry == 0) continue;
      small[i] = scaledRoot(entry - 1, 0);
      first[i] = scaledRoot(sixteen - 1, 0);
      while (scaledRoot(sixteen + lastPlace[i] - 1, 0) != first[i]) --lastPlace[i];
    }
  }
};

struct RootOfByte {
  static constexpr RootsBySuccessor roots{};

  u8 pixel(u8 x) const { return rootTables()[0][x]; }

  template <class I>
  I lanes(I x) const {
    const auto entries = [](const u8* table, I index) { return shuffle_epi8(loadAs<I>(table), index); };
    const I successor = adds_epu8(x, broadcastBytes<I>(1));  // the root of 255 is that of 254
    const I high = srli_epi16<4>(successor) & broadcastBytes<I>(15), low = successor & broadcastBytes<I>(15);
    const I beyond = subs_epu8(low, entries(roots.lastPlace, high));
    const I root = add_epi8(entries(roots.first, high), min_epu8(beyond, broadcastBytes<I>(1)));
    // A shuffle returns 0 where the index has the highest bit: for all successors from 16 on.
    return root | entries(roots.small, adds_epu8(successor, broadcastBytes<I>(0x70)));
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Unary
