#pragma once

// Roots of bytes, scaled up by 2^k and saturated: table k for k from 0 to 7. Tables from k = 5 on end where
// the results begin to saturate.

#include "zorvan/foundation/PixelTypes.h"

namespace Zorvan::Primitives::Unary {
namespace {

/// min(255, sqrt(x) * 2^k to nearest). There are no ties: the square of half an odd integer is not an
/// integer.
constexpr u8 scaledRoot(int x, int k) {
  const int square = x << (2 * k);
  int root = 0;
  while (root < 255 && square > root * root + root) ++root;
  return static_cast<u8>(root);
}

template <int k, int entries>
struct RootTable {
  u8 entry[entries];

  constexpr RootTable() : entry() {
    for (int x = 0; x < entries; ++x) entry[x] = scaledRoot(x, k);
  }
};

/// The addresses of the eight tables.
inline const u8* const* rootTables() {
  static constexpr RootTable<0, 256> k0;
  static constexpr RootTable<1, 256> k1;
  static constexpr RootTable<2, 256> k2;
  static constexpr RootTable<3, 256> k3;
  static constexpr RootTable<4, 256> k4;
  static constexpr RootTable<5, 64> k5;
  static constexpr RootTable<6, 16> k6;
  static constexpr RootTable<7, 4> k7;
  static constexpr const u8* tables[] = {k0.entry, k1.entry, k2.entry, k3.entry,
                                         k4.entry, k5.entry, k6.entry, k7.entry};
  return tables;
}

/// The last byte that table k, from 5 on, has an entry for.
constexpr int lastOfRootTable(int k) { return (1 << (2 * (8 - k))) - 1; }

}  // namespace
}  // namespace Zorvan::Primitives::Unary
