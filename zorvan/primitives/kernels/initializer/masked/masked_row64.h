#pragma once

// Processes a row under a mask with mask registers: the newest variant.
//
// A store under a mask register is the blend. It neither reads nor writes an unselected pixel, so an empty
// block needs no test, and an end of a row is a block with fewer lanes. Such a store costs the same with 32
// bytes as with 64, therefore 64. Reads and writes nothing outside the row.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_row.h"
#include "zorvan/primitives/kernels/simd/partial.h"
#include "zorvan/primitives/kernels/simd/prefetch.h"

#ifdef __AVX512BW__
namespace Zorvan::Primitives::Masked {
namespace {

inline __mmask64 selectedOf(__m512i mask) { return _mm512_test_epi8_mask(mask, mask); }
inline __mmask32 selectedOf(__m256i mask) { return _mm256_test_epi8_mask(mask, mask); }
inline __mmask16 selectedOf(__m128i mask) { return _mm_test_epi8_mask(mask, mask); }

inline bool isNone(__mmask64 selected) { return _kortestz_mask64_u8(selected, selected) != 0; }
inline bool isNone(__mmask32 selected) { return _kortestz_mask32_u8(selected, selected) != 0; }
inline bool isNone(__mmask16 selected) { return _kortestz_mask16_u8(selected, selected) != 0; }

/// The selected pixels of 64 bytes.
template <class Pixel>
inline MaskOf<Pixel> selectedOfAll(const u8* mask) {
  if constexpr (sizeof(Pixel) == 1) return selectedOf(Vector64::load(mask).bits);
  if constexpr (sizeof(Pixel) == 2) return selectedOf(Vector32::load(mask).bits);
  if constexpr (sizeof(Pixel) == 4) return selectedOf(Vector16::load(mask).bits);
}
template <class Pixel>
inline MaskOf<Pixel> selectedOfFirst(std::int64_t pixels, const u8* mask) {
  return selectedOf(loadMaskedBytes(firstLanes<MaskOf<Pixel>>(pixels), mask));
}

template <class Pixel>
inline void storeSelected(ValueSource<Pixel> source, u8* dst, MaskOf<Pixel> selected) {
  storeMasked(selected, dst, Vector64::broadcast(source.value).bits);
}
template <class Pixel>
inline void storeSelected(RowSource<Pixel> source, u8* dst, MaskOf<Pixel> selected) {
  storeMasked(selected, dst, loadMasked(selected, source.row));
}

/// Processes whole stores and returns the number of their pixels. A store without a selected pixel still
/// costs the processor a look-up of its cache line: to skip it avoids that, and the load from the source.
template <MaskedStores form, class Source>
inline std::int64_t maskedStores(Source source, u8* dst, const u8* mask, std::int64_t pixels) {
  using Pixel = typename Source::Pixel;
  constexpr std::int64_t pixelBytes = sizeof(Pixel);
  constexpr std::int64_t perStore = 64 / pixelBytes, perIteration = 4 * perStore;
  constexpr std::int64_t distance = MaskedStoreLimits::prefetchDistance;
  const auto store = [&]<bool prefetching>(std::int64_t i) {
    const auto selected = selectedOfAll<Pixel>(mask + i);
    if (form != MaskedStores::all && isNone(selected)) return;
    if (prefetching) prefetchForWrite(dst + i * pixelBytes + distance);
    storeSelected(source.from(i), dst + i * pixelBytes, selected);
  };
  std::int64_t i = 0;
  const auto storeUntil = [&]<bool prefetching>(std::int64_t end) {
    for (; i + perIteration <= end; i += perIteration) {
      for (int j = 0; j < 4; ++j) store.template operator()<prefetching>(i + j * perStore);
    }
  };
  // No lines after the row: they may belong to another thread.
  if (form == MaskedStores::prefetched) storeUntil.template operator()<true>(pixels - distance / pixelBytes);
  storeUntil.template operator()<false>(pixels);
  for (; i + perStore <= pixels; i += perStore) store.template operator()<false>(i);
  return i;
}

template <class Source>
using MaskedStoresFunction = std::int64_t(Source source, u8* dst, const u8* mask, std::int64_t pixels);

template <class Source>
inline MaskedStoresFunction<Source>* maskedStoresOf(MaskedStores form) {
  switch (form) {
    case MaskedStores::all:
      return maskedStores<MaskedStores::all, Source>;
    case MaskedStores::selected:
      return maskedStores<MaskedStores::selected, Source>;
    default:
      return maskedStores<MaskedStores::prefetched, Source>;
  }
}

/// A row by mask registers, its ends by stores of fewer lanes. Rows of up to `byPixelsUpTo` pixels are
/// processed pixel by pixel.
template <int byPixelsUpTo>
struct RowByMaskRegisters {
  template <class Source>
  static void run(Source source, u8* dst, const u8* mask, const MaskedPlan& image) {
    using Pixel = typename Source::Pixel;
    constexpr int pixelBytes = sizeof(Pixel);
    const std::int64_t pixels = image.pixels;
    const auto plan = planMaskedRow<pixelBytes, byPixelsUpTo>(pixels, bytesToBoundary(dst, 64));
    if (ZORVAN_PLANNED("planMaskedRow by pixels", plan.byPixels))
      return maskedPixels(source, dst, mask, pixels);

    if (plan.peel != 0) storeSelected(source, dst, selectedOfFirst<Pixel>(plan.peel, mask));
    std::int64_t done = plan.peel;
    const auto stores = maskedStoresOf<Source>(
        ZORVAN_PLANNED("planMaskedStores", planMaskedStores<pixelBytes, Source::bytesRead>(image)));
    done += stores(source.from(done), dst + done * pixelBytes, mask + done, pixels - done);
    if (done == pixels) return;
    storeSelected(source.from(done), dst + done * pixelBytes,
                  selectedOfFirst<Pixel>(pixels - done, mask + done));
  }
};

}  // namespace
}  // namespace Zorvan::Primitives::Masked
#endif
