#pragma once

// Integers and pairs of vectors that are loaded and stored like one vector.

#include "zorvan/primitives/kernels/simd/stores.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// The bytes of an integer.
template <class Integer>
struct Word {
  static constexpr int size = sizeof(Integer);
  Integer bits;

  static Word load(const void* p) { return {loadAs<Integer>(p)}; }
  void store(void* p) const { storeAs(p, bits); }
};
using Bytes1 = Word<u8>;
using Bytes2 = Word<u16>;
using Bytes4 = Word<std::uint32_t>;
using Bytes8 = Word<std::uint64_t>;

/// Keeps the compiler from moving a store across this place. Neighbouring stores to one cache line leave the
/// processor together; a scheduler that mixes lines costs a quarter of a copy's speed.
inline void keepStoreOrder() { asm volatile("" ::: "memory"); }

/// Two neighbouring vectors, both loaded before the first is stored.
template <class Half>
struct Twice {
  static constexpr int size = 2 * Half::size;
  Half low, high;

  static Twice load(const unsigned char* p) { return {Half::load(p), Half::load(p + Half::size)}; }
  static Twice loadAligned(const unsigned char* p) {
    return {Half::loadAligned(p), Half::loadAligned(p + Half::size)};
  }
  void store(void* p) const { storeHalves<Stores::plain>(p); }
  void storeAligned(void* p) const { storeHalves<Stores::aligned>(p); }
  void stream(void* p) const { storeHalves<Stores::streaming>(p); }

 private:
  template <Stores stores>
  [[gnu::always_inline]] void storeHalves(void* p) const {
    storeVector<stores>(low, p);
    keepStoreOrder();
    storeVector<stores>(high, static_cast<unsigned char*>(p) + Half::size);
  }
};

#ifdef __AVX512F__
/// One load of 64 bytes for two stores of 32: a processor that stores two halves of a cache line at once has
/// no room for two more loads beside them.
struct Halves64 {
  static constexpr int size = 64;
  Vector64 whole;

  static Halves64 load(const void* p) { return {Vector64::load(p)}; }
  void store(void* p) const { halves().store(p); }
  void storeAligned(void* p) const { halves().storeAligned(p); }
  void stream(void* p) const { halves().stream(p); }

 private:
  Twice<Vector32> halves() const {
    return {{_mm512_castsi512_si256(whole.bits)}, {_mm512_extracti64x4_epi64(whole.bits, 1)}};
  }
};
#elif defined(__AVX__)
using Halves64 = Twice<Vector32>;
#endif

}  // namespace
}  // namespace Zorvan::Primitives
