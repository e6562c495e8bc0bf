#pragma once

// Blocks under a mask in 32-byte vectors, blended by byte masks.
//
// An empty block is skipped, a full one is stored without a load. Each block reads and writes its own pixels
// only.

#include "zorvan/primitives/kernels/initializer/masked/masked_blocks16.h"

namespace Zorvan::Primitives::Masked {
namespace {

#ifdef __AVX2__
/// 32 pixels of 8 bits.
struct ByteBlock32 {
  static constexpr int pixels = 32;
  static constexpr int boundary = 32;

  template <Stores stores, class Source>
  static void run(Source source, u8* dst, const u8* mask) {
    const __m256i raised = _mm256_adds_epu8(Vector32::load(mask).bits, _mm256_set1_epi8(0x7F));
    blendVector<Vector32, stores>(source, dst, _mm256_movemask_epi8(raised), -1, [raised] { return raised; });
  }
};

/// 16 pixels of 16 bits.
struct WordBlock32 {
  static constexpr int pixels = 16;
  static constexpr int boundary = 32;

  template <Stores stores, class Source>
  static void run(Source source, u8* dst, const u8* mask) {
    const __m128i raised = raiseMask(Vector16::load(mask).bits);
    blendVector<Vector32, stores>(source, dst, _mm_movemask_epi8(raised), 0xFFFF,
                                  [raised] { return _mm256_cvtepi8_epi16(raised); });
  }
};

/// 32 pixels of 32 bits, a mixed block by quarters of 8 pixels.
struct DwordBlock32 {
  static constexpr int pixels = 32;
  static constexpr int boundary = 32;

  template <Stores stores, class Source>
  static void run(Source source, u8* dst, const u8* mask) {
    const __m256i raised = _mm256_adds_epu8(Vector32::load(mask).bits, _mm256_set1_epi8(0x7F));
    const int bits = _mm256_movemask_epi8(raised);
    if (bits == 0) return;
    if (bits == -1) {
      for (int i = 0; i < pixels; i += 8) storeVector<stores>(source.template at<Vector32>(i), dst + 4 * i);
      return;
    }
    for (int i = 0; i < pixels; i += 8) {
      const int quarter = bits >> i & 0xFF;
      if (quarter == 0) continue;
      const __m128i eight = raiseMask(loadLow<8>(mask + i));
      blendInto(dst + 4 * i, _mm256_cvtepi8_epi32(eight), source.template at<Vector32>(i));
    }
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Masked
