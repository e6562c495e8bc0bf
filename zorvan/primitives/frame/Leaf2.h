#pragma once

// Decodes cpuid leaf 2, in which older processors describe each of their caches by one descriptor byte.
//
//   std::uint32_t regs[4];
//   coreCpuid(regs, 2, 0);
//   const MyRow* row = findLeaf2Row(packLeaf2(regs), myRows);   // null if unknown
//
// The rows are the caller's own: any type with a member `descriptor`, largest cache first, ended by a
// descriptor of 0. Leaf2Caches.def lists the caches.
//
// Integer code without library calls, and internal linkage, since each variant's objects may include this.

#include <cstdint>

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Primitives {
namespace {

/// The registers with descriptors, packed; the first byte of words[0] is position 0. `last` is the highest
/// position that is searched, 0 if there are no descriptors. Unused words are zero.
struct Leaf2Descriptors {
  std::uint32_t words[4];
  int last;
};

/// A low byte of EAX other than 1 means that cpuid has to be called again, which none of the known processors
/// needs: no descriptors then. A register with bit 31 set has none.
constexpr Leaf2Descriptors packLeaf2(const std::uint32_t* regs) {
  Leaf2Descriptors packed;  // set word by word, since a compiler may call memset for an initialiser
  for (std::uint32_t& word : packed.words) word = 0;
  packed.last = 0;
  if ((regs[Eax] & 0xFF) != 1) return packed;
  int words = 0;
  for (int reg = Eax; reg <= Edx; ++reg) {
    if (regs[reg] == 0 || regs[reg] >> 31 != 0) continue;
    packed.words[words++] = regs[reg];
    packed.last += reg == Eax ? 3 : 4;
  }
  return packed;
}

/// The first row whose descriptor is found, or null. Position 0 is not searched, since it holds the number of
/// calls. If EAX has no descriptors, position 0 is the low byte of another register, which is not searched
/// either, and the search starts at the zero after the packed bytes. `last` is at most 15.
template <class Row>
constexpr const Row* findLeaf2Row(const Leaf2Descriptors& packed, const Row* rows) {
  for (const Row* row = rows; row->descriptor != 0; ++row) {
    for (int position = packed.last; position >= 1; --position) {
      if ((packed.words[position / 4] >> 8 * (position % 4) & 0xFF) == row->descriptor) return row;
    }
  }
  return nullptr;
}

}  // namespace
}  // namespace Zorvan::Primitives
