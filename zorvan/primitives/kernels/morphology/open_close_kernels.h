#pragma once

// Opening and closing: two passes with an intermediate image, which lies in the work memory after that of the
// passes. The first pass has the mask as given and the caller's border word. The second pass has the rotated
// mask; sides in memory do not apply to it, since the intermediate image has none.
//
// The two passes alternate in bands of rows, so that only a window of the intermediate image exists at a time
// and stays in the caches. Within a pass, the rows above and below a band are sides in memory.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/morphology/erode_dilate_kernels.h"

namespace Zorvan::Primitives::Morphology {
namespace {

/// The border word of the second pass. A word without a type is valid only with all sides in memory; the
/// second pass then ignores all pixels outside.
constexpr bool planSecondBorder(int word, int& second) {
  const BorderWord given{word};
  if (isMorphBorderType(given.type())) {
    second = static_cast<int>(given.type());
    return true;
  }
  second = static_cast<int>(BorderType::defaultValue);
  return given.has(BorderWord::allInMemory);
}

/// The addresses that an operation may read or write in an image.
struct Footprint {
  std::uintptr_t first, end;

  template <class T>
  Footprint(Plane<T> image, Size size, Reach reach)
      : first(addressOf(image.at(-reach.above, -reach.left))),
        end(addressOf(
            image.at(std::int64_t{size.height} - 1 + reach.below, std::int64_t{size.width} + reach.right))) {}
  bool overlaps(const Footprint& other) const { return first < other.end && other.first < end; }

 private:
  static std::uintptr_t addressOf(const void* pixel) { return reinterpret_cast<std::uintptr_t>(pixel); }
};

template <class V, class First, class Second, class T>
int morphTwice(const T* src, int srcStep, T* dst, int dstStep, Size roi, int borderType, T borderValue,
               const MorphAdvSpec* spec, u8* buffer) {
  const int status = testMorphImages(src, srcStep, dst, dstStep, roi, spec, buffer);
  if (status != ippStsNoErr) return status;
  int secondBorder = 0;
  if (borderType > largestBorderWord || !planSecondBorder(borderType, secondBorder)) return ippStsBorderErr;

  const MorphAdvSpec both = loadAs<MorphAdvSpec>(spec);
  const MorphMask mask(both.first);
  const MorphMeasures<WrappingNumber> measures(roi, mask.size(), sizeof(T));
  T* const between = reinterpret_cast<T*>(buffer + 2 * std::int64_t{measures.bufferSize().value()});
  const int betweenStep = align32(measures.roiWidth * measures.pixelBytes).value();
  const Plane<const T> source{src, srcStep};
  const Plane<T> result{dst, dstStep}, window{between, betweenStep};
  const Reach reach = Reach::ofMask(mask.size());
  // A result that overlaps its source may be written only when the source has been read completely.
  const Footprint readPixels(source, roi, planReadsBeside(borderType) ? reach : Reach{});
  const Footprint written(result, roi, Reach{});
  const int bands = readPixels.overlaps(written) ? 1 : planBands(roi, mask.size(), betweenStep);

  ZORVAN_NOTE_PLAN("planBands several", bands > 1);
  const std::int64_t bytes = resultBytes(roi, sizeof(T));
  int made = 0, done = 0;  // rows of the intermediate image and of the result
  for (int band = 1; band <= bands; ++band) {
    const int kept = made - done + (done == 0 ? 0 : reach.above);  // rows in the window
    const int newRows = planBandEnd(roi.height, bands, band) - made;
    const int above = made == 0 ? 0 : BorderWord::aboveInMemory;
    const int below = band == bands ? 0 : BorderWord::belowInMemory;
    const int first = morph<V, First>(source.at(made, 0), srcStep, window.at(kept, 0), betweenStep,
                                      Size{roi.width, newRows}, borderType | above | below, borderValue,
                                      both.first, buffer, FarBytes{bytes, 0});
    if (first != ippStsNoErr) return first;
    made += newRows;

    const int resultRows = made - (band == bands ? 0 : reach.below) - done;
    const int second =
        morph<V, Second, T>(window.at(done == 0 ? 0 : reach.above, 0), betweenStep, result.at(done, 0),
                            dstStep, Size{roi.width, resultRows}, secondBorder | above | below, borderValue,
                            both.second, buffer, FarBytes{0, bytes});
    if (second != ippStsNoErr) return second;
    done += resultRows;
    if (band < bands) {
      const std::int64_t read = std::int64_t{reach.above} + reach.below;
      copyRun(window.pixels, window.at(kept + newRows - read, 0), read * betweenStep);
    }
  }
  return ippStsNoErr;
}

}  // namespace
}  // namespace Zorvan::Primitives::Morphology
