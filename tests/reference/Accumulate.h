#pragma once

#include <cstdint>

#include "tests/reference/Images.h"
#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"

// The variants agree on the pixels that the mask selects, and there are two treatments of the others. The
// definition of the entry leaves them unchanged.

namespace Zorvan::Reference {

template <class T>
int testAccumulate(const T* src, int srcStep, const u8* mask, int maskStep, const float* srcDst,
                   int srcDstStep, Size roi) {
  const std::int64_t width = roi.width;
  const int size = sizeof(T);
  if (src == nullptr || mask == nullptr || srcDst == nullptr) return -8;
  if (roi.width < 1 || roi.height < 1) return -6;
  if (srcStep < width * size) return -16;
  if (size == 2 && srcStep % 2 != 0) return -108;
  if (maskStep < width) return -16;
  if (srcDstStep < width * 4) return -16;
  if (srcDstStep % 4 != 0) return -108;
  if (srcStep % size != 0) return -108;
  return 0;
}

/// `sum(row, column, pixel, selected, before)` for every pixel.
template <class T, class Sum>
int accumulate(const T* src, int srcStep, const u8* mask, int maskStep, float* srcDst, int srcDstStep,
               Size roi, Sum sum) {
  const int status = testAccumulate(src, srcStep, mask, maskStep, srcDst, srcDstStep, roi);
  if (status != 0) return status;
  for (int r = 0; r < roi.height; ++r) {
    for (int c = 0; c < roi.width; ++c) {
      const float before = get(srcDst, srcDstStep, r, c);
      const bool selected = get(mask, maskStep, r, c) != 0;
      const float pixel = static_cast<float>(get(src, srcStep, r, c));
      sum(r, c, pixel, selected, before);
    }
  }
  return 0;
}

/// The oldest three variants: 0.0 is added to pixels in groups of four from the first 16-byte boundary on;
/// single pixels before and after these are skipped.
template <class T>
int accumulateSelecting(const T* src, int srcStep, const u8* mask, int maskStep, float* srcDst,
                        int srcDstStep, Size roi) {
  return accumulate(src, srcStep, mask, maskStep, srcDst, srcDstStep, roi,
                    [=](int r, int c, float pixel, bool selected, float before) {
                      const auto row = reinterpret_cast<std::uintptr_t>(srcDst) +
                                       static_cast<std::uintptr_t>(std::int64_t{r} * srcDstStep);
                      const int peel = row % 4 == 0 ? static_cast<int>((16 - row % 16) % 16 / 4) : 0;
                      const bool isSingle = c < peel || c >= peel + (roi.width - peel) / 4 * 4;
                      if (selected) {
                        put(srcDst, srcDstStep, r, c, before + pixel);
                      } else if (!isSingle) {
                        put(srcDst, srcDstStep, r, c, before + 0.0F);
                      }
                    });
}

/// The newest three: the source times 1.0 or 0.0 is added to every pixel.
template <class T>
int accumulateWeighting(const T* src, int srcStep, const u8* mask, int maskStep, float* srcDst,
                        int srcDstStep, Size roi) {
  return accumulate(src, srcStep, mask, maskStep, srcDst, srcDstStep, roi,
                    [=](int r, int c, float pixel, bool selected, float before) {
                      put(srcDst, srcDstStep, r, c, before + pixel * (selected ? 1.0F : 0.0F));
                    });
}

}  // namespace Zorvan::Reference
