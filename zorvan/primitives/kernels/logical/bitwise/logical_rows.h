#pragma once

// The operands of a logical operation: one row and a constant, or two rows. Every loop takes either of them,
// and computes the result at an offset in the width that it stores.

#include <cstdint>

#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Bitwise {
namespace {

struct And {
  template <class Bits>
  static Bits of(Bits a, Bits b) {
    return static_cast<Bits>(a & b);
  }
};
struct Or {
  template <class Bits>
  static Bits of(Bits a, Bits b) {
    return static_cast<Bits>(a | b);
  }
};
struct Xor {
  template <class Bits>
  static Bits of(Bits a, Bits b) {
    return static_cast<Bits>(a ^ b);
  }
};

/// A row, each byte xor a constant. `aligned`: the row starts on a boundary of the vectors.
template <bool aligned = false>
struct XoredRow {
  const u8* src;
  u8 constant;

  void prefetch(std::int64_t i) const { Primitives::prefetch(src + i); }
  template <class Word>
  Word word(std::int64_t i) const {
    constexpr std::uint64_t everyByte = 0x0101010101010101;
    return Xor::of(loadAs<Word>(src + i), static_cast<Word>(everyByte * constant));
  }
  template <class Vector>
  Vector vector(std::int64_t i) const {
    return {Xor::of(loadVector<Vector, aligned>(src + i).bits, Vector::broadcast(constant).bits)};
  }
  template <class Vector, class Lanes>
  Vector masked(std::int64_t i, Lanes lanes) const {
    return {Xor::of(loadMasked(lanes, src + i), Vector::broadcast(constant).bits)};
  }
};

/// Two rows, combined byte by byte.
template <class Op, bool aligned1 = false, bool aligned2 = false>
struct CombinedRows {
  const u8* src1;
  const u8* src2;

  void prefetch(std::int64_t i) const { Primitives::prefetch(src1 + i), Primitives::prefetch(src2 + i); }
  template <class Word>
  Word word(std::int64_t i) const {
    return Op::of(loadAs<Word>(src1 + i), loadAs<Word>(src2 + i));
  }
  template <class Vector>
  Vector vector(std::int64_t i) const {
    return {Op::of(loadVector<Vector, aligned1>(src1 + i).bits, loadVector<Vector, aligned2>(src2 + i).bits)};
  }
  template <class Vector, class Lanes>
  Vector masked(std::int64_t i, Lanes lanes) const {
    return {Op::of(loadMasked(lanes, src1 + i), loadMasked(lanes, src2 + i))};
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Bitwise
