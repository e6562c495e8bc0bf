#pragma once

// Opening and closing: two passes through an image in the work memory, behind the work memory of the passes.
// The first pass takes the mask as given and sees what the border word says; the second takes the turned mask
// and sees only the image between, so sides in memory end at the first.
//
// The second pass follows the first in bands of rows, as soon as the rows are there that it reads, so that of
// the image between only a window of rows exists at a time, which stays in the caches. To the passes the rows
// beside a band are sides in memory.

#include "zorvan/primitives/kernels/common/plan_outcomes.h"
#include "zorvan/primitives/kernels/morphology/erode_dilate_kernels.h"

namespace Zorvan::Primitives {
namespace {

/// The second pass's word. A word without a kind passes only with all sides in memory; then nothing outside
/// has an influence.
constexpr bool planSecondBorder(int word, int& second) {
  const BorderWord given{word};
  if (isMorphBorderType(given.type())) {
    second = static_cast<int>(given.type());
    return true;
  }
  second = static_cast<int>(BorderType::defaultValue);
  return given.has(BorderWord::allInMemory);
}

/// The pixels from the first to behind the last that an operation may touch in an image.
struct Footprint {
  std::uintptr_t first, end;

  template <class T>
  Footprint(Plane<T> image, Size size, Reach reach)
      : first(addressOf(image.at(-reach.above, -reach.left))),
        end(addressOf(
            image.at(std::int64_t{size.height} - 1 + reach.below, std::int64_t{size.width} + reach.right))) {}
  bool meets(const Footprint& other) const { return first < other.end && other.first < end; }

 private:
  static std::uintptr_t addressOf(const void* pixel) { return reinterpret_cast<std::uintptr_t>(pixel); }
};

template <class V, class First, class Second, class T>
inline int morphTwice(const T* src, int srcStep, T* dst, int dstStep, Size roi, int borderType, T borderValue,
                      const MorphAdvSpec* spec, u8* buffer) {
  const int status = testMorphImages(src, srcStep, dst, dstStep, roi, spec, buffer);
  if (status != ippStsNoErr) return status;
  int secondBorder = 0;
  if (borderType > kLargestBorderWord || !planSecondBorder(borderType, secondBorder)) return ippStsBorderErr;

  const MorphAdvSpec both = loadAs<MorphAdvSpec>(spec);
  const MorphMask mask(both.first);
  const MorphMeasures<WrappingFigure> measures(roi, mask.size(), sizeof(T));
  T* const between = reinterpret_cast<T*>(buffer + 2 * std::int64_t{measures.bufferSize().value()});
  const int betweenStep = align32(measures.roiWidth * measures.pixelBytes).value();
  const Plane<const T> source{src, srcStep};
  const Plane<T> result{dst, dstStep}, window{between, betweenStep};
  const Reach reach = Reach::ofMask(mask.size());
  // A result that takes the place of its source may not be begun before all of that has been read.
  const Footprint readPixels(source, roi, planReadsBeside(borderType) ? reach : Reach{});
  const Footprint written(result, roi, Reach{});
  const int bands = readPixels.meets(written) ? 1 : planBands(roi, mask.size(), betweenStep);

  ZORVAN_NOTE_PLAN("planBands several", bands > 1);
  int made = 0, done = 0;  // rows of the image between and of the result
  for (int band = 1; band <= bands; ++band) {
    const int kept = made - done + (done == 0 ? 0 : reach.above);  // rows that the window holds already
    const int making = planBandEnd(roi.height, bands, band) - made;
    const int above = made == 0 ? 0 : BorderWord::aboveInMemory;
    const int below = band == bands ? 0 : BorderWord::belowInMemory;
    const int first =
        morph<V, First>(source.at(made, 0), srcStep, window.at(kept, 0), betweenStep, Size{roi.width, making},
                        borderType | above | below, borderValue, both.first, buffer, 0);
    if (first != ippStsNoErr) return first;
    made += making;

    const int doing = made - (band == bands ? 0 : reach.below) - done;
    const int second =
        morph<V, Second, T>(window.at(done == 0 ? 0 : reach.above, 0), betweenStep, result.at(done, 0),
                            dstStep, Size{roi.width, doing}, secondBorder | above | below, borderValue,
                            both.second, buffer, resultBytes(roi, sizeof(T)));
    if (second != ippStsNoErr) return second;
    done += doing;
    if (band < bands) {
      const std::int64_t read = std::int64_t{reach.above} + reach.below;
      copyRun(window.pixels, window.at(kept + making - read, 0), read * betweenStep);
    }
  }
  return ippStsNoErr;
}

}  // namespace

#define DEFINE(Name, First, Second, pixels, T)                                                            \
  template <class V>                                                                                      \
  int Routines<V>::ippiMorph##Name##Border_##pixels##_C1R(const T* src, int srcStep, T* dst, int dstStep, \
                                                          Size roi, int borderType, T borderValue,        \
                                                          const MorphAdvSpec* spec, u8* buffer) {         \
    return morphTwice<V, First, Second>(src, srcStep, dst, dstStep, roi, borderType, borderValue, spec,   \
                                        buffer);                                                          \
  }
DEFINE(Open, Erosion, Dilation, 8u, u8)
DEFINE(Open, Erosion, Dilation, 32f, float)
DEFINE(Close, Dilation, Erosion, 8u, u8)
DEFINE(Close, Dilation, Erosion, 32f, float)
#undef DEFINE

}  // namespace Zorvan::Primitives
