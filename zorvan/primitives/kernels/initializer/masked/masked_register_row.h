#pragma once

// Walks a row under a mask with mask registers: the newest variant.
//
// A store under a mask register is the blend. It neither reads nor writes an unselected pixel, so several
// blocks can be stored at once and one among them that is empty is still left alone, and a part of a block is
// a block with fewer bits. Such a store costs the same with 32 bytes as with 64, hence the wide ones. Reads
// and writes nothing outside the row.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_row.h"

#ifdef __AVX512BW__
namespace Zorvan::Primitives {
namespace {

/// The pixels of 64 bytes, and the mask register that names some of them.
template <class Pixel>
struct Store64;
template <>
struct Store64<std::uint8_t> {
  using Selected = __mmask64;
  static Selected among(__m512i mask) { return _mm512_test_epi8_mask(mask, mask); }
  static Selected ofAll(const void* mask) { return among(_mm512_loadu_si512(mask)); }
  static Selected ofFirst(std::int64_t pixels, const void* mask) {
    return among(_mm512_maskz_loadu_epi8(_bzhi_u64(~0ull, static_cast<unsigned>(pixels)), mask));
  }
  static bool isNone(Selected selected) { return _kortestz_mask64_u8(selected, selected) != 0; }
  static Vector64 load(const void* p, Selected selected) { return {_mm512_maskz_loadu_epi8(selected, p)}; }
  static void put(Vector64 v, void* p, Selected selected) { _mm512_mask_storeu_epi8(p, selected, v.bits); }
};
template <>
struct Store64<std::uint16_t> {
  using Selected = __mmask32;
  static Selected among(__m256i mask) { return _mm256_test_epi8_mask(mask, mask); }
  static Selected ofAll(const void* mask) { return among(Vector32::load(mask).bits); }
  static Selected ofFirst(std::int64_t pixels, const void* mask) {
    return among(_mm256_maskz_loadu_epi8(_bzhi_u32(~0u, static_cast<unsigned>(pixels)), mask));
  }
  static bool isNone(Selected selected) { return _kortestz_mask32_u8(selected, selected) != 0; }
  static Vector64 load(const void* p, Selected selected) { return {_mm512_maskz_loadu_epi16(selected, p)}; }
  static void put(Vector64 v, void* p, Selected selected) { _mm512_mask_storeu_epi16(p, selected, v.bits); }
};
template <>
struct Store64<std::uint32_t> {
  using Selected = __mmask16;
  static Selected among(__m128i mask) { return _mm_test_epi8_mask(mask, mask); }
  static Selected ofAll(const void* mask) { return among(Vector16::load(mask).bits); }
  static Selected ofFirst(std::int64_t pixels, const void* mask) {
    const unsigned first = _bzhi_u32(~0u, static_cast<unsigned>(pixels));
    return among(_mm_maskz_loadu_epi8(static_cast<__mmask16>(first), mask));
  }
  static bool isNone(Selected selected) { return _kortestz_mask16_u8(selected, selected) != 0; }
  static Vector64 load(const void* p, Selected selected) { return {_mm512_maskz_loadu_epi32(selected, p)}; }
  static void put(Vector64 v, void* p, Selected selected) { _mm512_mask_storeu_epi32(p, selected, v.bits); }
};

template <class Pixel, class Selected>
inline Vector64 selectedOf(ValueSource<Pixel> source, Selected) {
  return Vector64::broadcast(source.value);
}
template <class Pixel, class Selected>
inline Vector64 selectedOf(RowSource<Pixel> source, Selected selected) {
  return Store64<Pixel>::load(source.row, selected);
}

template <class Source, class Selected>
inline void putSelected(Source source, unsigned char* dst, Selected selected) {
  Store64<typename Source::Pixel>::put(selectedOf(source, selected), dst, selected);
}

/// Whole stores, and returns how many pixels that were. A store without a selected pixel still costs the
/// processor a look at its line: `skipping` spares it that, and the source's line too.
template <bool skipping, class Source>
inline std::int64_t maskedStores(Source source, unsigned char* dst, const unsigned char* mask,
                                 std::int64_t pixels) {
  using Stores = Store64<typename Source::Pixel>;
  constexpr std::int64_t pixelBytes = sizeof(typename Source::Pixel);
  constexpr std::int64_t perStore = 64 / pixelBytes;
  const auto store = [&](std::int64_t i) {
    const auto selected = Stores::ofAll(mask + i);
    if (skipping && Stores::isNone(selected)) return;
    putSelected(source.from(i), dst + i * pixelBytes, selected);
  };
  std::int64_t i = 0;
  for (; i + 4 * perStore <= pixels; i += 4 * perStore) {
    store(i);
    store(i + perStore);
    store(i + 2 * perStore);
    store(i + 3 * perStore);
  }
  for (; i + perStore <= pixels; i += perStore) store(i);
  return i;
}

/// One line of the policy: the longest row that goes pixel by pixel. The ends of a row are parts of a store.
template <int byPixelsUpTo>
struct RegisterForm {
  template <class Source>
  static void row(Source source, unsigned char* dst, const unsigned char* mask, const MaskedPlan& image) {
    using Stores = Store64<typename Source::Pixel>;
    constexpr int pixelBytes = sizeof(typename Source::Pixel);
    const std::int64_t pixels = image.pixels;
    const auto plan = planMaskedRow<pixelBytes, byPixelsUpTo>(pixels, bytesToBoundary(dst, 64));
    if (ZORVAN_PLANNED("planMaskedRow by pixels", plan.byPixels))
      return maskedPixels(source, dst, mask, pixels);

    if (plan.peel != 0) putSelected(source, dst, Stores::ofFirst(plan.peel, mask));
    std::int64_t done = plan.peel;
    const auto stores = ZORVAN_PLANNED("planSkipsEmptyStores", planSkipsEmptyStores<pixelBytes>(image))
                            ? maskedStores<true, Source>
                            : maskedStores<false, Source>;
    done += stores(source.from(done), dst + done * pixelBytes, mask + done, pixels - done);
    if (done == pixels) return;
    putSelected(source.from(done), dst + done * pixelBytes, Stores::ofFirst(pixels - done, mask + done));
  }
};

}  // namespace
}  // namespace Zorvan::Primitives
#endif
