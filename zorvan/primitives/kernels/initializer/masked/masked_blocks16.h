#pragma once

// Blocks under a mask in 16-byte vectors: the four older variants.
//
// Adding 0x7F with saturation sets the top bit of exactly the mask bytes that are not zero. The top bits of a
// block show whether it is empty, full or mixed: an empty block is skipped, a full one is stored without a
// load. Each block reads and writes its own pixels only.

#include "zorvan/primitives/kernels/initializer/masked/blend.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_row.h"
#include "zorvan/primitives/kernels/simd/bits.h"
#include "zorvan/primitives/kernels/simd/partial.h"

namespace Zorvan::Primitives::Masked {
namespace {

/// 16 pixels of 8 bits, one blend.
struct ByteBlock16 {
  static constexpr int pixels = 16;
  static constexpr int boundary = 16;

  template <Stores stores, class Source>
  static void run(Source source, u8* dst, const u8* mask) {
    const __m128i raised = raiseMask(Vector16::load(mask).bits);
    blendVector<Vector16, stores>(source, dst, _mm_movemask_epi8(raised), 0xFFFF,
                                  [raised] { return spreadTopBits(raised); });
  }
};

/// 16 pixels of 16 bits: each mask byte doubled, two blends.
struct WordBlock16 {
  static constexpr int pixels = 16;
  static constexpr int boundary = 16;

  template <Stores stores, class Source>
  static void run(Source source, u8* dst, const u8* mask) {
    const __m128i raised = raiseMask(Vector16::load(mask).bits);
    const int bits = _mm_movemask_epi8(raised);
    if (bits == 0) return;
    const auto low = source.template at<Vector16>(0);
    const auto high = source.template at<Vector16>(8);
    if (bits == 0xFFFF) {
      storeVector<stores>(low, dst);
      storeVector<stores>(high, dst + 16);
      return;
    }
    const __m128i selected = spreadTopBits(raised);
    blendInto(dst, _mm_unpacklo_epi8(selected, selected), low);
    blendInto(dst + 16, _mm_unpackhi_epi8(selected, selected), high);
  }
};

/// 16 pixels of any size; a mixed block stores its selected pixels one by one.
struct SparseBlock16 {
  static constexpr int pixels = 16;
  static constexpr int boundary = 16;

  template <Stores stores, class Source>
  static void run(Source source, u8* dst, const u8* mask) {
    using Pixel = typename Source::Pixel;
    constexpr int pixelBytes = sizeof(Pixel);
    int bits = _mm_movemask_epi8(raiseMask(Vector16::load(mask).bits));
    if (bits == 0) return;
    if (bits == 0xFFFF) {
      for (int i = 0; i < pixels; i += 16 / pixelBytes) {
        storeVector<stores>(source.template at<Vector16>(i), dst + i * pixelBytes);
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

/// Row n selects the lanes whose bits are set in n.
struct LanesOfNibble {
  std::uint32_t row[16][4];
  constexpr LanesOfNibble() : row{} {
    for (unsigned n = 0; n < 16; ++n) {
      for (unsigned lane = 0; lane < 4; ++lane) row[n][lane] = (n >> lane & 1) != 0 ? 0xFFFFFFFFu : 0;
    }
  }
};

/// 8 pixels of 32 bits: two blends, each selected by a nibble of the bit mask.
struct NibbleBlock16 {
  static constexpr int pixels = 8;
  static constexpr int boundary = 16;

  template <Stores stores, class Source>
  static void run(Source source, u8* dst, const u8* mask) {
    alignas(16) static constexpr LanesOfNibble lanes;
    const int bits = _mm_movemask_epi8(raiseMask(loadLow<8>(mask))) & 0xFF;
    if (bits == 0) return;
    const auto low = source.template at<Vector16>(0);
    const auto high = source.template at<Vector16>(4);
    if (bits == 0xFF) {
      storeVector<stores>(low, dst);
      storeVector<stores>(high, dst + 16);
      return;
    }
    blendInto(dst, Vector16::loadAligned(lanes.row[bits & 15]).bits, low);
    blendInto(dst + 16, Vector16::loadAligned(lanes.row[bits >> 4]).bits, high);
  }
};

#ifdef __SSSE3__
/// `address` if any of the wanted bits is set, else `other`. Written as assembly, since compilers make a
/// branch of it, which is slow where masks are irregular.
inline u8* ifAny(int bits, int wanted, u8* address, u8* other) {
  asm("test %2, %1\n\tcmovz %3, %0" : "+r"(address) : "r"(bits), "ri"(wanted), "r"(other) : "cc");
  return address;
}

/// 16 pixels of 32 bits, a mixed block by quarters of 4 pixels; a shuffle copies each mask byte to the 4
/// bytes of its pixel. An empty quarter blends elsewhere.
struct ShuffledBlock16 {
  static constexpr int pixels = 16;
  static constexpr int boundary = 16;

  template <Stores stores, class Source>
  static void run(Source source, u8* dst, const u8* mask) {
    const __m128i raised = raiseMask(Vector16::load(mask).bits);
    const int bits = _mm_movemask_epi8(raised);
    if (bits == 0) return;
    if (bits == 0xFFFF) {
      for (int i = 0; i < pixels; i += 4) storeVector<stores>(source.template at<Vector16>(i), dst + 4 * i);
      return;
    }
    const __m128i selected = spreadTopBits(raised);
    __m128i spread = _mm_set_epi32(0x03030303, 0x02020202, 0x01010101, 0);
    alignas(16) u8 unused[16] = {};
    for (int i = 0; i < pixels; i += 4) {
      blendInto(ifAny(bits, 15 << i, dst + 4 * i, unused), _mm_shuffle_epi8(selected, spread),
                source.template at<Vector16>(i));
      spread = _mm_add_epi8(spread, _mm_set1_epi8(4));
    }
  }
};
#endif

}  // namespace
}  // namespace Zorvan::Primitives::Masked
