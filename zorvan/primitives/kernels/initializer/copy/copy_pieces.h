#pragma once

// The pieces that copies are made of, and the place in a row that moves on with them.

#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// A piece as wide as an integer.
template <class Integer>
struct Word {
  static constexpr int size = sizeof(Integer);
  Integer bits;

  static Word load(const void* p) { return {loadAs<Integer>(p)}; }
  void store(void* p) const { storeAs(p, bits); }
};
using Bytes1 = Word<std::uint8_t>;
using Bytes2 = Word<std::uint16_t>;
using Bytes4 = Word<std::uint32_t>;
using Bytes8 = Word<std::uint64_t>;

/// Keeps the compiler from moving a store across this place. Neighbouring stores to one cache line leave the
/// processor together; a scheduler that mixes lines costs a quarter of a copy's speed.
inline void keepStoreOrder() { asm volatile("" ::: "memory"); }

/// Two pieces side by side, loaded as a whole before the first is stored.
template <class Half>
struct Twice {
  static constexpr int size = 2 * Half::size;
  Half low, high;

  static Twice load(const unsigned char* p) { return {Half::load(p), Half::load(p + Half::size)}; }
  static Twice loadAligned(const unsigned char* p) {
    return {Half::loadAligned(p), Half::loadAligned(p + Half::size)};
  }
  void store(unsigned char* p) const {
    low.store(p);
    keepStoreOrder();
    high.store(p + Half::size);
  }
  void storeAligned(unsigned char* p) const {
    low.storeAligned(p);
    keepStoreOrder();
    high.storeAligned(p + Half::size);
  }
  void stream(unsigned char* p) const {
    low.stream(p);
    keepStoreOrder();
    high.stream(p + Half::size);
  }
};

#ifdef __AVX512F__
/// One load of 64 bytes for two stores of 32: a processor that stores two halves of a cache line at once has
/// no room for two more loads beside them.
struct WideBytes64 {
  static constexpr int size = 64;
  Vector64 whole;

  static WideBytes64 load(const unsigned char* p) { return {Vector64::load(p)}; }
  Twice<Vector32> halves() const {
    return {{_mm512_castsi512_si256(whole.bits)}, {_mm512_extracti64x4_epi64(whole.bits, 1)}};
  }
  void store(unsigned char* p) const { halves().store(p); }
  void storeAligned(unsigned char* p) const { halves().storeAligned(p); }
  void stream(unsigned char* p) const { halves().stream(p); }
};
#elif defined(__AVX__)
using WideBytes64 = Twice<Vector32>;
#endif
#ifdef __AVX__
using WideBytes256 = Twice<Twice<WideBytes64>>;
#endif

struct PlainStores {
  template <class Piece>
  static void put(Piece piece, unsigned char* dst) {
    piece.store(dst);
  }
};
struct AlignedStores {
  template <class Piece>
  static void put(Piece piece, unsigned char* dst) {
    piece.storeAligned(dst);
  }
};
struct StreamingStores {
  template <class Piece>
  static void put(Piece piece, unsigned char* dst) {
    piece.stream(dst);
  }
};

/// The rest of a row that is being copied from its start.
struct CopyRun {
  const unsigned char* src;
  unsigned char* dst;
  std::int64_t length;

  void skip(std::int64_t bytes) {
    src += bytes;
    dst += bytes;
    length -= bytes;
  }
  template <class Piece, class Stores = PlainStores>
  void take() {
    Stores::put(Piece::load(src), dst);
    skip(Piece::size);
  }
  /// Whole pieces while they fit.
  template <class Piece, class Stores = PlainStores>
  void takeAll() {
    while (length >= Piece::size) take<Piece, Stores>();
  }
  /// The same for a source that is aligned like the destination.
  template <class Piece, class Stores>
  void takeAllAligned() {
    for (; length >= Piece::size; skip(Piece::size)) Stores::put(Piece::loadAligned(src), dst);
  }
  /// `count` bytes in pieces of different powers of two, in the order that they are named.
  template <class... Pieces>
  void takeBits(std::int64_t count) {
    ((count & Pieces::size ? take<Pieces>() : void()), ...);
  }
  /// Copies a piece and moves on to the next multiple of `boundary`, no farther than the piece reaches.
  template <class Piece>
  void alignByPiece(std::int64_t boundary) {
    if (const std::int64_t peel = bytesToBoundary(dst, boundary); peel != 0) {
      Piece::load(src).store(dst);
      skip(peel);
    }
  }
  /// Ends the row with a piece that overlaps what went before.
  template <class Piece>
  void takeLast() {
    Piece::load(src + length - Piece::size).store(dst + length - Piece::size);
    length = 0;
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
