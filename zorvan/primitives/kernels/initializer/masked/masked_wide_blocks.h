#pragma once

// Blocks under a mask in 32-byte vectors, blended by byte masks.
//
// An empty block is left alone, a full one is stored unread. Each block reads and writes its own pixels only.

#include "zorvan/primitives/kernels/initializer/masked/masked_blocks.h"

namespace Zorvan::Primitives {
namespace {

#ifdef __AVX2__
inline void blendInto(unsigned char* dst, __m256i selected, Vector32 value) {
  Vector32{_mm256_blendv_epi8(Vector32::load(dst).bits, value.bits, selected)}.store(dst);
}

/// 32 pixels of 8 bits.
struct WideBytes32 {
  static constexpr int pixels = 32;
  static constexpr int boundary = 32;

  template <class Store, class Source>
  static void run(Source source, unsigned char* dst, const unsigned char* mask) {
    const __m256i raised = _mm256_adds_epu8(Vector32::load(mask).bits, _mm256_set1_epi8(0x7F));
    const int bits = _mm256_movemask_epi8(raised);
    if (bits == 0) return;
    const auto value = source.template at<Vector32>(0);
    if (bits == -1) return Store::put(value, dst);
    blendInto(dst, raised, value);
  }
};

/// 16 pixels of 16 bits.
struct WideWords16 {
  static constexpr int pixels = 16;
  static constexpr int boundary = 32;

  template <class Store, class Source>
  static void run(Source source, unsigned char* dst, const unsigned char* mask) {
    const __m128i raised = raiseMask(Vector16::load(mask).bits);
    const int bits = _mm_movemask_epi8(raised);
    if (bits == 0) return;
    const auto value = source.template at<Vector32>(0);
    if (bits == 0xFFFF) return Store::put(value, dst);
    blendInto(dst, _mm256_cvtepi8_epi16(raised), value);
  }
};

/// 32 pixels of 32 bits, tested once more by quarters of 8.
struct WideDwords32 {
  static constexpr int pixels = 32;
  static constexpr int boundary = 32;

  template <class Store, class Source>
  static void run(Source source, unsigned char* dst, const unsigned char* mask) {
    const __m256i raised = _mm256_adds_epu8(Vector32::load(mask).bits, _mm256_set1_epi8(0x7F));
    const int bits = _mm256_movemask_epi8(raised);
    if (bits == 0) return;
    if (bits == -1) {
      for (int i = 0; i < pixels; i += 8) Store::put(source.template at<Vector32>(i), dst + 4 * i);
      return;
    }
    for (int i = 0; i < pixels; i += 8) {
      const int quarter = bits >> i & 0xFF;
      if (quarter == 0) continue;
      const __m128i eight = raiseMask(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(mask + i)));
      blendInto(dst + 4 * i, _mm256_cvtepi8_epi32(eight), source.template at<Vector32>(i));
    }
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives
