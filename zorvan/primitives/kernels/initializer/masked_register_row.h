#pragma once

// Walks a row under a mask with mask registers: the newest variant.
//
// A store under a mask register is the blend. It neither reads nor writes an unselected pixel, so several
// blocks can be stored at once and one among them that is empty is still left alone, and a part of a block is
// a block with fewer bits. Such a store costs the same with 32 bytes as with 64, hence the wide ones. Reads
// and writes nothing outside the row.

#include "zorvan/primitives/kernels/initializer/masked_row.h"

#ifdef __AVX512BW__
namespace Zorvan::Primitives {
namespace {

/// 64 bytes of pixels: loads and stores of those that the low bits of `selected` name.
template <class Pixel>
struct Selected;
template <>
struct Selected<std::uint8_t> {
  static Vector64 load(const void* p, __mmask64 selected) { return {_mm512_maskz_loadu_epi8(selected, p)}; }
  static void store(Vector64 v, void* p, __mmask64 selected) { _mm512_mask_storeu_epi8(p, selected, v.bits); }
};
template <>
struct Selected<std::uint16_t> {
  static Vector64 load(const void* p, __mmask64 selected) {
    return {_mm512_maskz_loadu_epi16(static_cast<__mmask32>(selected), p)};
  }
  static void store(Vector64 v, void* p, __mmask64 selected) {
    _mm512_mask_storeu_epi16(p, static_cast<__mmask32>(selected), v.bits);
  }
};
template <>
struct Selected<std::uint32_t> {
  static Vector64 load(const void* p, __mmask64 selected) {
    return {_mm512_maskz_loadu_epi32(static_cast<__mmask16>(selected), p)};
  }
  static void store(Vector64 v, void* p, __mmask64 selected) {
    _mm512_mask_storeu_epi32(p, static_cast<__mmask16>(selected), v.bits);
  }
};

template <class Pixel>
inline Vector64 selectedOf(ValueSource<Pixel> source, std::int64_t, __mmask64) {
  return Vector64::broadcast(source.value);
}
template <class Pixel>
inline Vector64 selectedOf(RowSource<Pixel> source, std::int64_t i, __mmask64 selected) {
  return Selected<Pixel>::load(source.row + i * std::int64_t{sizeof(Pixel)}, selected);
}

/// Up to 64 pixels.
template <class Source>
inline void maskedPart(Source source, unsigned char* dst, const unsigned char* mask, std::int64_t pixels) {
  using Pixel = typename Source::Pixel;
  constexpr int perStore = 64 / sizeof(Pixel);
  const __m512i bytes = _mm512_maskz_loadu_epi8(_bzhi_u64(~0ull, static_cast<unsigned>(pixels)), mask);
  __mmask64 selected = _mm512_test_epi8_mask(bytes, bytes);
  for (std::int64_t i = 0; i < pixels; i += perStore, selected >>= perStore % 64) {
    Selected<Pixel>::store(selectedOf(source, i, selected), dst + i * std::int64_t{sizeof(Pixel)}, selected);
  }
}

/// The pixels of 32 or 64 mask bytes.
template <int pixels, class Source>
inline void maskedTurn(Source source, unsigned char* dst, const unsigned char* mask) {
  using Pixel = typename Source::Pixel;
  constexpr int perStore = 64 / sizeof(Pixel);
  __mmask64 selected;
  bool all;
  if constexpr (pixels == 32) {
    const __m256i bytes = Vector32::load(mask).bits;
    const __mmask32 bits = _mm256_test_epi8_mask(bytes, bytes);
    if (_kortestz_mask32_u8(bits, bits)) return;
    all = _kortestc_mask32_u8(bits, bits);
    selected = bits;
  } else {
    const __m512i bytes = Vector64::load(mask).bits;
    selected = _mm512_test_epi8_mask(bytes, bytes);
    if (_kortestz_mask64_u8(selected, selected)) return;
    all = _kortestc_mask64_u8(selected, selected);
  }
  if (all) {
#pragma GCC unroll 2
    for (int i = 0; i < pixels; i += perStore) {
      source.template at<Vector64>(i).store(dst + i * static_cast<int>(sizeof(Pixel)));
    }
  } else {
#pragma GCC unroll 2
    for (int i = 0; i < pixels; i += perStore) {
      Selected<Pixel>::store(selectedOf(source, i, selected >> i), dst + i * static_cast<int>(sizeof(Pixel)),
                             selected >> i);
    }
  }
}

/// One line of the policy: the pixels of a turn (a block or several), what happens to a row's head before the
/// boundary, and the longest row that goes pixel by pixel.
template <int pixelsOfTurn, MaskedEnd headEnd, int byPixelsUpToPixels>
struct RegisterForm {
  static constexpr int turnPixels = pixelsOfTurn;
  static constexpr MaskedEnd head = headEnd;
  static constexpr int byPixelsUpTo = byPixelsUpToPixels;

  template <class Source>
  static void row(Source source, unsigned char* dst, const unsigned char* mask, std::int64_t pixels) {
    constexpr int pixelBytes = sizeof(typename Source::Pixel);
    const auto plan = planMaskedRow<pixelBytes, byPixelsUpTo>(pixels, bytesToBoundary(dst, 32));
    if (plan.byPixels) return maskedPixels(source, dst, mask, pixels);

    const auto skip = [&](std::int64_t done) {
      source = source.from(done);
      dst += done * pixelBytes;
      mask += done;
      pixels -= done;
    };
    if (plan.head != 0) {
      if constexpr (head == MaskedEnd::byBlock) {
        maskedPart(source, dst, mask, plan.head);
      } else {
        maskedPixels(source, dst, mask, plan.head);
      }
      skip(plan.head);
    }
    if (plan.onBoundary && !isAligned(dst, 64) && pixels >= turnPixels) {
      maskedPart(source, dst, mask, 32 / pixelBytes);  // to a line of the cache, for the wide stores
      skip(32 / pixelBytes);
    }
    while (pixels >= turnPixels) {
      maskedTurn<turnPixels>(source, dst, mask);
      skip(turnPixels);
    }
    if (pixels != 0) maskedPart(source, dst, mask, pixels);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
#endif
