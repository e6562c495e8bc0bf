#pragma once

// Which pixels a mask selects, as lanes and as bits. A pixel is selected where its mask byte is not zero.
//
// Nothing branches on the mask, so statistics take the same time for scattered and for solid masks.

#include "zorvan/primitives/kernels/simd/lane_operations.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/vectors.h"
#include "zorvan/primitives/kernels/statistic/prefetch_rows.h"

namespace Zorvan::Primitives::Statistic {
namespace {

/// All bits set where the byte is zero.
template <class I>
inline I unselected(I mask) {
  return cmpeq_epi8(mask, zeroes<I>());
}

/// The 16 bytes, each 0 or 255, as bits.
inline unsigned bitsOf(__m128i bytes) { return static_cast<unsigned>(_mm_movemask_epi8(bytes)); }

/// All bits set where the pixel is selected, else none.
inline std::int32_t selectedBits(u8 mask) { return -static_cast<std::int32_t>(mask != 0); }

/// The first four bytes, each 0 or 255, as lanes of 32 bits.
inline __m128i bytesToDwords(__m128i bytes) {
  bytes = _mm_unpacklo_epi8(bytes, bytes);
  return _mm_unpacklo_epi16(bytes, bytes);
}

#ifdef __AVX2__
/// The number of zeros among 32 bytes, each 0 or 255.
inline int countClear(__m256i bytes) {
  return 32 - _mm_popcnt_u32(static_cast<unsigned>(_mm256_movemask_epi8(bytes)));
}
/// All bits of a 32-bit lane set where the byte is zero, for the first eight mask bytes.
inline __m256i unselectedDwords(__m128i mask) {
  return _mm256_cmpeq_epi32(_mm256_cvtepu8_epi32(mask), _mm256_setzero_si256());
}
#endif

#ifdef __AVX512BW__
/// A bit for each byte that is not zero.
inline __mmask64 selectedBytes(__m512i mask) { return _mm512_test_epi8_mask(mask, mask); }

/// Calls `use(column, bits)` for every 64 pixels of a row, with a bit for each selected pixel. Bits after the
/// row's end are clear.
template <class Use>
inline void forEachSelection(const u8* mask, std::int64_t pixels, Use use) {
  std::int64_t c = 0;
  for (; c + 64 <= pixels; c += 64) use(c, selectedBytes(Vector64::load(mask + c).bits));
  if (c != pixels) use(c, selectedBytes(loadMasked(firstLanes<__mmask64>(pixels - c), mask + c)));
}

inline int countOf(__mmask64 selected) { return static_cast<int>(_mm_popcnt_u64(selected)); }

/// Sixteen of the 64 bits.
template <int part>
inline __mmask16 sixteenOf(__mmask64 selected) {
  return static_cast<__mmask16>(selected >> (16 * part));
}
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Statistic
