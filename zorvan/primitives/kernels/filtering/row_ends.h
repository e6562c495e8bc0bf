#pragma once

// Loads of vectors around a pixel whose neighbours a row may not have: pixels beyond an end of the row are
// the nearest one, a constant, or real memory.

#include "zorvan/primitives/kernels/common/BorderWord.h"
#include "zorvan/primitives/kernels/common/Vectors.h"
#include "zorvan/primitives/kernels/common/border_copy.h"

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
  /// A band has more rows than the processor follows at once by itself.
  void fetchAhead(const unsigned char* p) const { __builtin_prefetch(p + 512); }

  template <int columns>
  V load(const unsigned char* p) const {
    return V::load(p + columns * std::int64_t{sizeof(T)});
  }
};

/// Loads at one end of a row, or at both where a vector is all of it. `left` and `right` tell where neighbours
/// are to be made.
template <class T, class V>
struct AtRowEnds {
  using Bits = typename RowEnds<T>::Bits;
  bool left, right;
  bool replicates;
  V constant;

  AtRowEnds(const RowEnds<T>& ends, bool first, bool last)
      : left(first && !ends.leftInMemory),
        right(last && !ends.rightInMemory),
        replicates(ends.replicates),
        constant(V::broadcast(ends.constant)) {}

  void fetchAhead(const unsigned char*) const {}

  template <int columns>
  V load(const unsigned char* p) const {
    constexpr int bytes = columns * static_cast<int>(sizeof(T));
    if constexpr (columns < 0) {
      if (left) return loadBehindEdge<-bytes>(p, edge(p));
    } else if constexpr (columns > 0) {
      if (right) return loadBeforeEdge<bytes>(p, edge(p + V::size - sizeof(T)));
    }
    return V::load(p + bytes);
  }

 private:
  V edge(const unsigned char* pixel) const {
    return replicates ? V::broadcast(loadAs<Bits>(pixel)) : constant;
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
