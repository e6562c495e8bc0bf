#pragma once

// Decodes cpuid leaf 2, in which older processors describe their caches by one descriptor byte each.
//
//   std::uint32_t regs[4];
//   coreCpuid(regs, 2, 0);
//   const MyRow* row = findLeaf2Row(packLeaf2(regs), myRows);   // null: not known
//
// The rows are the caller's own: any type with a member `descriptor`, largest cache first, ended by a
// descriptor of 0. Leaf2Caches.def lists the caches.
//
// Integer code without library calls, and internal linkage, since each variant's objects may include this.

#include <cstdint>

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Primitives {
namespace {

/// The registers that carry descriptors, packed; the first byte of words[0] is position 0. `last` is the
/// highest position that is looked at, 0 when there are no descriptors. Unused words are zero.
struct Leaf2Descriptors {
  std::uint32_t words[4];
  int last;
};

/// A low byte of EAX other than 1 asks for more rounds, which no processor that is looked for needs: no
/// descriptors then. A register with bit 31 set carries none.
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

/// The first row whose descriptor is found, or null. Position 0 is never looked at, since it holds the round
/// count. Where EAX carries no descriptors, position 0 is the low byte of another register, which is passed
/// over all the same, and the scan starts at the zero behind the packed bytes. `last` is at most 15.
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
