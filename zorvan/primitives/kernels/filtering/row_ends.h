#pragma once

// Loads of vectors around a pixel whose neighbours a row may not have: pixels beyond an end of the row are
// the nearest one, a constant, or real memory.

#include "zorvan/primitives/kernels/neighbourhood/border_word.h"
#include "zorvan/primitives/kernels/simd/short_runs.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives {
namespace {

/// The vector at `p - bytes`, its first `bytes` those of `edge`, which are all alike: nothing in front of `p`
/// is read.
template <int bytes>
inline Vector16 loadBehindEdge(const unsigned char* p, Vector16 edge) {
  const __m128i here = Vector16::load(p).bits;
#ifdef __SSSE3__
  return {_mm_alignr_epi8(here, edge.bits, 16 - bytes)};
#else
  return {_mm_or_si128(_mm_slli_si128(here, bytes), _mm_srli_si128(edge.bits, 16 - bytes))};
#endif
}
/// The vector at `p + bytes`, its last `bytes` those of `edge`: nothing behind the vector at `p` is read.
template <int bytes>
inline Vector16 loadBeforeEdge(const unsigned char* p, Vector16 edge) {
  const __m128i here = Vector16::load(p).bits;
#ifdef __SSSE3__
  return {_mm_alignr_epi8(edge.bits, here, bytes)};
#else
  return {_mm_or_si128(_mm_srli_si128(here, bytes), _mm_slli_si128(edge.bits, 16 - bytes))};
#endif
}

#ifdef __AVX__
inline Vector32 joinHalves(Vector16 first, Vector16 second) {
  return {_mm256_insertf128_si256(_mm256_castsi128_si256(first.bits), second.bits, 1)};
}
template <int bytes>
inline Vector32 loadBehindEdge(const unsigned char* p, Vector32 edge) {
  return joinHalves(loadBehindEdge<bytes>(p, Vector16{_mm256_castsi256_si128(edge.bits)}),
                    Vector16::load(p + 16 - bytes));
}
template <int bytes>
inline Vector32 loadBeforeEdge(const unsigned char* p, Vector32 edge) {
  return joinHalves(Vector16::load(p + bytes),
                    loadBeforeEdge<bytes>(p + 16, Vector16{_mm256_castsi256_si128(edge.bits)}));
}
#endif

#ifdef __AVX512BW__
template <int bytes>
inline Vector64 loadBehindEdge(const unsigned char* p, Vector64 edge) {
  return {_mm512_mask_loadu_epi8(edge.bits, ~0ull << bytes, p - bytes)};
}
template <int bytes>
inline Vector64 loadBeforeEdge(const unsigned char* p, Vector64 edge) {
  return {_mm512_mask_loadu_epi8(edge.bits, ~0ull >> bytes, p + bytes)};
}
#endif

/// The same vector in a register. Compilers would rather load it again for each of its uses, and loads across
/// the boundaries of lines are what a filter has most of.
template <class V>
inline V held(V vector) {
  asm("" : "+v"(vector.bits));
  return vector;
}

/// What lies to the left and to the right of each row.
template <class T>
struct RowEnds {
  using Bits = typename PixelBits<sizeof(T)>::type;
  bool leftInMemory, rightInMemory;
  bool replicates;
  Bits constant;
};

/// Loads inside a row: all neighbours are there.
template <class T, class V>
struct InsideRow {
  template <int columns>
  V load(const unsigned char* p) const {
    return V::load(p + columns * std::int64_t{sizeof(T)});
  }
};

/// Loads at the first or the last vector of a row, or at one that is all of it.
template <class T, class V, bool first, bool last>
struct AtRowEnds {
  bool leftInMemory, rightInMemory, replicates;
  V constant;

  explicit AtRowEnds(const RowEnds<T>& ends)
      : leftInMemory(ends.leftInMemory),
        rightInMemory(ends.rightInMemory),
        replicates(ends.replicates),
        constant(V::broadcast(ends.constant)) {}

  template <int columns>
  V load(const unsigned char* p) const {
    constexpr int bytes = columns * static_cast<int>(sizeof(T));
    if constexpr (first && columns < 0) {
      if (!leftInMemory) return loadBehindEdge<-bytes>(p, edge(p));
    } else if constexpr (last && columns > 0) {
      if (!rightInMemory) return loadBeforeEdge<bytes>(p, edge(p + V::size - sizeof(T)));
    }
    return V::load(p + bytes);
  }

 private:
  V edge(const unsigned char* pixel) const {
    return replicates ? V::broadcast(loadAs<typename RowEnds<T>::Bits>(pixel)) : constant;
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
