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

/// The pixels that are tested at once: several blocks.
constexpr int turnPixels = 64;

/// Up to a turn.
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

/// 64 pixels. Full and empty ones leave the straight line: they come in long runs, and a mixed one has the
/// most to do.
template <class Source>
inline void maskedTurn(Source source, unsigned char* dst, const unsigned char* mask) {
  using Pixel = typename Source::Pixel;
  constexpr int pixelBytes = sizeof(Pixel);
  constexpr int perStore = 64 / pixelBytes;
  const __m512i bytes = Vector64::load(mask).bits;
  const __mmask64 selected = _mm512_test_epi8_mask(bytes, bytes);
  if (_kortestz_mask64_u8(selected, selected)) [[unlikely]]
    return;
  if constexpr (perStore < turnPixels) {  // saves shifts of the mask; one store is the same either way
    if (_kortestc_mask64_u8(selected, selected)) [[unlikely]] {
      for (int i = 0; i < turnPixels; i += perStore)
        source.template at<Vector64>(i).store(dst + i * pixelBytes);
      return;
    }
  }
  for (int i = 0; i < turnPixels; i += perStore) {
    const __mmask64 here = selected >> i;
    Selected<Pixel>::store(selectedOf(source, i, here), dst + i * pixelBytes, here);
  }
}

/// One line of the policy: the longest row that goes pixel by pixel. The ends of a row are parts of a turn.
template <int byPixelsUpTo>
struct RegisterForm {
  template <class Source>
  static void row(Source source, unsigned char* dst, const unsigned char* mask, std::int64_t pixels) {
    constexpr std::int64_t pixelBytes = sizeof(typename Source::Pixel);
    const auto plan = planMaskedRow<pixelBytes, byPixelsUpTo>(pixels, bytesToBoundary(dst, 64));
    if (plan.byPixels) return maskedPixels(source, dst, mask, pixels);

    if (plan.head != 0) maskedPart(source, dst, mask, plan.head);
    std::int64_t i = plan.head;
    const auto turn = [&](std::int64_t at) { maskedTurn(source.from(at), dst + at * pixelBytes, mask + at); };
    for (; i + 2 * turnPixels <= pixels; i += 2 * turnPixels) {
      turn(i);
      turn(i + turnPixels);
    }
    if (i + turnPixels <= pixels) {
      turn(i);
      i += turnPixels;
    }
    if (i != pixels) maskedPart(source.from(i), dst + i * pixelBytes, mask + i, pixels - i);
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
#endif
