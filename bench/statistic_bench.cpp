#include <limits>

#include "bench/families.h"
#include "bench/plain_statistic.h"
#include "zorvan/operations/statistic/Statistic.h"

namespace Zorvan::Bench {

namespace {

using Ipp::Image::IppIMemory;
using Ipp::Image::Statistic;

/// Pixels without the extreme value that ends a search early.
template <class T>
struct Endless : Read<T> {
  static void prepare(T* pixels, Size size, std::uint32_t seed) {
    makeNoise(pixels, size, seed);
    for (std::int64_t i = 0; i < pixelsOf(size); ++i) {
      if (pixels[i] == std::numeric_limits<T>::max()) pixels[i] -= T(1);
    }
  }
};

template <class T>
void addUnmasked(Suite& suite, const char* pixels) {
  suite.add<Endless<T>>(
      "min", pixels, [](IppIMemory<T>& image, Rect rect) { use(Statistic<T>::Min(image, rect)); },
      [](const T* image, Size size) { use(Plain::minimum(image, size)); });
  suite.add<Endless<T>>(
      "max", pixels, [](IppIMemory<T>& image, Rect rect) { use(Statistic<T>::Max(image, rect)); },
      [](const T* image, Size size) { use(Plain::maximum(image, size)); });
  suite.add<Endless<T>>(
      "mean", pixels, [](IppIMemory<T>& image, Rect rect) { use(Statistic<T>::Mean(image, rect)); },
      [](const T* image, Size size) { use(Plain::mean(image, size)); });
}

template <class T>
void addMaskedMean(Suite& suite, const char* pixels) {
  suite.add<Read<T>, RandomMask>(
      "mean_mask", pixels,
      [](IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect) {
        use(Statistic<T>::Mean(image, mask, rect));
      },
      [](const T* image, const u8* mask, Size size) { use(Plain::meanMask(image, mask, size)); });
}

template <class T>
void addMasked(Suite& suite, const char* pixels) {
  addMaskedMean<T>(suite, pixels);
  suite.add<Read<T>, RandomMask>(
      "meanstd_mask", pixels,
      [](IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect) {
        use(Statistic<T>::MeanAndStandardDeviationWithMask(image, mask, rect));
      },
      [](const T* image, const u8* mask, Size size) { use(Plain::meanDeviationMask(image, mask, size)); });
  suite.add<Read<T>, RandomMask>(
      "minmaxloc_mask", pixels,
      [](IppIMemory<T>& image, IppIMemory<u8>& mask, Rect rect) {
        use(Statistic<T>::MinMaxIndexWithMask(image, mask, rect));
      },
      [](const T* image, const u8* mask, Size size) { use(Plain::extremesMask(image, mask, size)); });
}

}  // namespace

void addStatistic(Suite& suite) {
  addUnmasked<u8>(suite, "u8");
  addUnmasked<u16>(suite, "u16");
  addUnmasked<float>(suite, "f32");
  addMasked<u8>(suite, "u8");
  addMaskedMean<u16>(suite, "u16");
  addMasked<float>(suite, "f32");
}

}  // namespace Zorvan::Bench
