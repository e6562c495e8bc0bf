#pragma once

// What a logical operation reads: one row and a constant, or two rows. Every form of walking takes either and
// asks it for the results at an offset, in the width that it is about to store.

#include <cstdint>

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

template <class Vector, bool aligned>
inline Vector loadRow(const u8* address) {
  if constexpr (aligned) {
    return Vector::loadAligned(address);
  } else {
    return Vector::load(address);
  }
}

/// A row, each byte xor a constant. `aligned`: the row starts on a boundary of the vectors asked for.
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
    return {Xor::of(loadRow<Vector, aligned>(src + i).bits, Vector::broadcast(constant).bits)};
  }
#ifdef __AVX2__
  __m256i fourByteGroups(std::int64_t i, __m256i lanes) const {
    return Xor::of(_mm256_maskload_epi32(reinterpret_cast<const int*>(src + i), lanes),
                   Vector32::broadcast(constant).bits);
  }
#endif
#ifdef __AVX512F__
  __m512i bytes(std::int64_t i, __mmask64 lanes) const {
    return Xor::of(_mm512_maskz_loadu_epi8(lanes, src + i), Vector64::broadcast(constant).bits);
  }
#endif
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
    return {Op::of(loadRow<Vector, aligned1>(src1 + i).bits, loadRow<Vector, aligned2>(src2 + i).bits)};
  }
#ifdef __AVX2__
  __m256i fourByteGroups(std::int64_t i, __m256i lanes) const {
    return Op::of(_mm256_maskload_epi32(reinterpret_cast<const int*>(src1 + i), lanes),
                  _mm256_maskload_epi32(reinterpret_cast<const int*>(src2 + i), lanes));
  }
#endif
#ifdef __AVX512F__
  __m512i bytes(std::int64_t i, __mmask64 lanes) const {
    return Op::of(_mm512_maskz_loadu_epi8(lanes, src1 + i), _mm512_maskz_loadu_epi8(lanes, src2 + i));
  }
#endif
};

}  // namespace
}  // namespace Zorvan::Primitives::Bitwise
