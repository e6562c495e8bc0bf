#pragma once

// Blocks under a mask in 16-byte vectors: the four older variants.
//
// Adding 0x7F with saturation sets the top bit of exactly the mask bytes that are not zero; gathered, the top
// bits tell an empty block, which is left alone, from a full one, which is stored unread, and a mixed one.
// Each block reads and writes its own pixels only.

#include "zorvan/primitives/kernels/initializer/masked/masked_row.h"
#include "zorvan/primitives/kernels/simd/bits.h"

namespace Zorvan::Primitives {
namespace {

/// The top bit of each byte says whether its pixel is selected.
inline __m128i raiseMask(__m128i mask) { return _mm_adds_epu8(mask, _mm_set1_epi8(0x7F)); }

/// Of `value` the bytes that are selected, of `kept` the others. Bytes of `raised` count by their top bit.
#ifdef __SSE4_1__
inline __m128i spreadTopBits(__m128i raised) { return raised; }
inline __m128i blend(__m128i selected, __m128i value, __m128i kept) {
  return _mm_blendv_epi8(kept, value, selected);
}
#else
inline __m128i spreadTopBits(__m128i raised) { return _mm_cmpgt_epi8(_mm_setzero_si128(), raised); }
inline __m128i blend(__m128i selected, __m128i value, __m128i kept) {
  return _mm_or_si128(_mm_and_si128(selected, value), _mm_andnot_si128(selected, kept));
}
#endif

/// `selected` from `spreadTopBits`, widened to the pixels.
inline void blendInto(unsigned char* dst, __m128i selected, Vector16 value) {
  Vector16{blend(selected, value.bits, Vector16::load(dst).bits)}.store(dst);
}

/// 16 pixels of 8 bits, one blend.
struct BlendedBytes16 {
  static constexpr int pixels = 16;
  static constexpr int boundary = 16;

  template <class Store, class Source>
  static void run(Source source, unsigned char* dst, const unsigned char* mask) {
    const __m128i raised = raiseMask(Vector16::load(mask).bits);
    const int bits = _mm_movemask_epi8(raised);
    if (bits == 0) return;
    const auto value = source.template at<Vector16>(0);
    if (bits == 0xFFFF) return Store::put(value, dst);
    blendInto(dst, spreadTopBits(raised), value);
  }
};

/// 16 pixels of 16 bits: each mask byte doubled, two blends.
struct BlendedWords16 {
  static constexpr int pixels = 16;
  static constexpr int boundary = 16;

  template <class Store, class Source>
  static void run(Source source, unsigned char* dst, const unsigned char* mask) {
    const __m128i raised = raiseMask(Vector16::load(mask).bits);
    const int bits = _mm_movemask_epi8(raised);
    if (bits == 0) return;
    const auto low = source.template at<Vector16>(0);
    const auto high = source.template at<Vector16>(8);
    if (bits == 0xFFFF) {
      Store::put(low, dst);
      Store::put(high, dst + 16);
      return;
    }
    const __m128i selected = spreadTopBits(raised);
    blendInto(dst, _mm_unpacklo_epi8(selected, selected), low);
    blendInto(dst + 16, _mm_unpackhi_epi8(selected, selected), high);
  }
};

/// 16 pixels of any size; a mixed block goes pixel by pixel over the selected ones.
struct SparsePixels16 {
  static constexpr int pixels = 16;
  static constexpr int boundary = 16;

  template <class Store, class Source>
  static void run(Source source, unsigned char* dst, const unsigned char* mask) {
    using Pixel = typename Source::Pixel;
    constexpr int pixelBytes = sizeof(Pixel);
    int bits = _mm_movemask_epi8(raiseMask(Vector16::load(mask).bits));
    if (bits == 0) return;
    if (bits == 0xFFFF) {
      for (int i = 0; i < pixels; i += 16 / pixelBytes) {
        Store::put(source.template at<Vector16>(i), dst + i * pixelBytes);
      }
      return;
    }
    do {
      const int i = lowestSetBit(static_cast<unsigned>(bits));
      storeAs<Pixel>(dst + i * pixelBytes, source.pixel(i));
      bits &= bits - 1;
    } while (bits != 0);
  }
};

/// Row n has the lanes selected whose bits are set in n.
struct LanesOfNibble {
  std::uint32_t row[16][4];
  constexpr LanesOfNibble() : row{} {
    for (unsigned n = 0; n < 16; ++n) {
      for (unsigned lane = 0; lane < 4; ++lane) row[n][lane] = (n >> lane & 1) != 0 ? 0xFFFFFFFFu : 0;
    }
  }
};

/// 8 pixels of 32 bits: two blends, each selected by a nibble of the bit mask.
struct NibbleDwords8 {
  static constexpr int pixels = 8;
  static constexpr int boundary = 16;

  template <class Store, class Source>
  static void run(Source source, unsigned char* dst, const unsigned char* mask) {
    alignas(16) static constexpr LanesOfNibble lanes;
    const int bits =
        _mm_movemask_epi8(raiseMask(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(mask)))) & 0xFF;
    if (bits == 0) return;
    const auto low = source.template at<Vector16>(0);
    const auto high = source.template at<Vector16>(4);
    if (bits == 0xFF) {
      Store::put(low, dst);
      Store::put(high, dst + 16);
      return;
    }
    blendInto(dst, Vector16::loadAligned(lanes.row[bits & 15]).bits, low);
    blendInto(dst + 16, Vector16::loadAligned(lanes.row[bits >> 4]).bits, high);
  }
};

#ifdef __SSSE3__
/// 16 pixels of 32 bits, tested once more by quarters of 4; each mask byte shuffled to the 4 bytes of its
/// pixel.
struct ShuffledDwords16 {
  static constexpr int pixels = 16;
  static constexpr int boundary = 16;

  template <class Store, class Source>
  static void run(Source source, unsigned char* dst, const unsigned char* mask) {
    const __m128i raised = raiseMask(Vector16::load(mask).bits);
    const int bits = _mm_movemask_epi8(raised);
    if (bits == 0) return;
    if (bits == 0xFFFF) {
      for (int i = 0; i < pixels; i += 4) Store::put(source.template at<Vector16>(i), dst + 4 * i);
      return;
    }
    const __m128i selected = spreadTopBits(raised);
    __m128i spread = _mm_set_epi32(0x03030303, 0x02020202, 0x01010101, 0);
    for (int i = 0; i < pixels; i += 4) {
      const int quarter = bits >> i & 15;
      if (quarter == 15) {
        Store::put(source.template at<Vector16>(i), dst + 4 * i);
      } else if (quarter != 0) {
        blendInto(dst + 4 * i, _mm_shuffle_epi8(selected, spread), source.template at<Vector16>(i));
      }
      spread = _mm_add_epi8(spread, _mm_set1_epi8(4));
    }
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives
