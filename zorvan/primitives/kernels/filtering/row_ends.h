#pragma once

// Loads of vectors at a distance of some columns from a pixel, also across an end of the row: pixels beyond
// it are the nearest pixel, a constant, or memory.

#include "zorvan/primitives/kernels/neighbourhood/border_word.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/short_runs.h"
#include "zorvan/primitives/kernels/simd/vectors.h"

namespace Zorvan::Primitives::Laplace {
namespace {

/// The vector at `p - bytes`, with the first `bytes` taken from `edge`, whose pixels are all equal. Reads
/// nothing before `p`.
template <int bytes>
inline Vector16 loadAfterEdge(const unsigned char* p, Vector16 edge) {
  const __m128i here = Vector16::load(p).bits;
#ifdef __SSSE3__
  return {_mm_alignr_epi8(here, edge.bits, 16 - bytes)};
#else
  return {_mm_or_si128(_mm_slli_si128(here, bytes), _mm_srli_si128(edge.bits, 16 - bytes))};
#endif
}
/// The vector at `p + bytes`, with the last `bytes` taken from `edge`. Reads nothing after the vector at `p`.
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
template <int bytes>
inline Vector32 loadAfterEdge(const unsigned char* p, Vector32 edge) {
  return joinHalves(loadAfterEdge<bytes>(p, lowHalf(edge)), Vector16::load(p + 16 - bytes));
}
template <int bytes>
inline Vector32 loadBeforeEdge(const unsigned char* p, Vector32 edge) {
  return joinHalves(Vector16::load(p + bytes), loadBeforeEdge<bytes>(p + 16, lowHalf(edge)));
}
#endif

#ifdef __AVX512BW__
template <int bytes>
inline Vector64 loadAfterEdge(const unsigned char* p, Vector64 edge) {
  return {loadMasked(~0ull << bytes, p - bytes, edge.bits)};
}
template <int bytes>
inline Vector64 loadBeforeEdge(const unsigned char* p, Vector64 edge) {
  return {loadMasked(~0ull >> bytes, p + bytes, edge.bits)};
}
#endif

/// The same vector, kept in a register. Compilers would load it again for each use, and loads that cross
/// cache lines are what the filters do most.
template <class V>
inline V inRegister(V vector) {
  asm("" : "+v"(vector.bits));
  return vector;
}

/// The border to the left and right of each row.
template <class T>
struct RowEnds {
  using Bits = typename PixelBits<sizeof(T)>::type;
  bool leftInMemory, rightInMemory;
  bool replicates;
  Bits constant;
};

/// Loads inside a row: all neighbours are in it.
template <class T, class V>
struct InsideRow {
  template <int columns>
  V load(const unsigned char* p) const {
    return V::load(p + columns * std::int64_t{sizeof(T)});
  }
};

/// Loads at the first or the last vector of a row, or at its only one.
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
      if (!leftInMemory) return loadAfterEdge<-bytes>(p, edge(p));
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
}  // namespace Zorvan::Primitives::Laplace
