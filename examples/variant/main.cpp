// Which variant does the library run here, and how does that affect results? Prints the processor, its
// features, the variant and the cache as the library detects them, and results that differ by variant
// (docs/variants.md lists them all).
//
// The exported classes do not reveal the variant. This program is linked with the library's objects, and
// calls the functions that the first call of an operation runs.

#include <cpuid.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "zorvan/ipp.h"
#include "zorvan/primitives/frame/Processor.h"
#include "zorvan/primitives/frame/Variants.h"

namespace {

using namespace Zorvan;
using namespace Zorvan::Ipp::Image;
namespace Library = Zorvan::Primitives;

struct NamedFeature {
  const char* name;
  std::uint64_t bit;
};
constexpr NamedFeature features[] = {
#define FEATURE(name, ...) {#name, Library::name},
#define DERIVED_FEATURE(name, ...) {#name, Library::name},
#include "zorvan/primitives/frame/Features.def"
};

/// The name that the processor reports, empty if it has none.
std::string processorName() {
  char text[49] = "";
  if (static_cast<unsigned>(__get_cpuid_max(0x80000000, nullptr)) < 0x80000004) return text;
  for (unsigned leaf = 0; leaf < 3; ++leaf) {
    unsigned registers[4];
    __cpuid(0x80000002 + leaf, registers[0], registers[1], registers[2], registers[3]);
    std::memcpy(text + 16 * leaf, registers, 16);
  }
  return text + std::strspn(text, " ");
}

std::string vendor() {
  std::uint32_t registers[4];
  Library::coreCpuid(registers, 0, 0);
  std::string text;
  for (const auto part : {Library::Ebx, Library::Edx, Library::Ecx}) {
    text.append(reinterpret_cast<const char*>(&registers[part]), 4);
  }
  return text;
}

/// Selects the variant like the first call of an operation, or the named variant if the processor supports
/// it.
bool select(const char* name) {
  Library::coreSelectVariant();
  if (name == nullptr) return true;
  for (int i = 0; i <= Library::variantIndex; ++i) {
    if (Library::variantNames[i] == std::string(name)) {
      Library::variantIndex = i;
      return true;
    }
  }
  return false;
}

void printProcessor() {
  std::printf("Processor  %s (%s)\n", processorName().c_str(), vendor().c_str());
  std::uint64_t mask = 0;
  Library::coreQueryFeatures(&mask);
  std::printf("Features  ");
  for (const NamedFeature& feature : features) {
    if (mask & feature.bit) std::printf(" %s", feature.name + std::strlen("Feature"));
  }
  std::printf("\nVariant    %s\n", Library::variantNames[Library::variantIndex]);
}

void printCache() {
  std::int32_t size = 0, line = 0;
  const int status = Library::coreGetCacheSize(&size);
  Library::coreGetCacheLineSize(&line);
  if (status == 0) {
    std::printf("Cache      %d KiB in lines of %d bytes: the largest one\n", size / 1024, line);
    std::printf("           Results of about its size and more are written by streaming stores.\n");
  } else {
    std::printf("Cache      not known (status %d)\n", status);
    std::printf("           Streaming stores begin at fixed sizes, or are not used.\n");
  }
}

template <class T>
IppIMemory<T> wrap(std::vector<T>& pixels) {
  return IppIMemory<T>::CreateContainer(pixels.data(), static_cast<int>(pixels.size()), 1);
}

void printLine(const char* what, const std::string& result) {
  std::printf("  %-66s %s\n", what, result.c_str());
}

std::string text(double value) {
  char digits[32];
  std::snprintf(digits, sizeof digits, "%.6g", value);
  return digits;
}

/// The share of `results` that are not the nearest float, and the largest error in units of the last place.
template <class Exact>
std::string precision(const std::vector<float>& results, Exact exact) {
  int others = 0;
  double worst = 0;
  for (std::size_t i = 0; i < results.size(); ++i) {
    const float nearest = static_cast<float>(exact(i));
    const double unit =
        std::nextafter(std::abs(nearest), std::numeric_limits<float>::infinity()) - std::abs(nearest);
    others += results[i] != nearest;
    worst = std::max(worst, std::abs(results[i] - exact(i)) / unit);
  }
  return others == 0
             ? "always the nearest float"
             : text(100.0 * others / static_cast<double>(results.size())) + " % are not the nearest float, " +
                   text(std::round(worst * 10) / 10) + " units of the last place at most";
}

void printSpecialValues() {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr std::size_t count = 64;
  const Rect row = {0, 0, count, 1};

  std::vector<float> nans(count, nan), infinities(count, infinity), sums(count, 5.0f);
  std::vector<u8> mask(count);
  auto nanImage = wrap(nans), infinite = wrap(infinities), sum = wrap(sums);
  auto maskImage = wrap(mask);
  Comparer<float>::Compare(nanImage, maskImage, row, 100, eGreater);
  printLine("A NaN pixel is greater than any number (Compare):", mask[0] != 0 ? "yes" : "no");
  mask.assign(count, 0);
  IppIArithmetic<float>::AddWithMask(infinite, sum, maskImage, row);
  printLine("An infinity that is not selected changes the sum (AddWithMask):", sums[0] == 5 ? "no" : "yes");
  printLine("The minimum of nothing but infinities (Min):", text(Statistic<float>::Min(infinite, row)));
}

void printSums() {
  std::vector<u16> words(40000, 65535);
  std::vector<u8> all(words.size(), 1);
  auto image = wrap(words);
  auto mask = wrap(all);
  printLine("The mean of 40000 selected pixels of 65535 in one row (Mean):",
            text(Statistic<u16>::Mean(image, mask, image.SizeToRoi())));
}

void printPrecision() {
  std::vector<float> divisors, numerators;
  for (int i = 0; i < 100000; ++i) {
    divisors.push_back(1.0f + static_cast<float>(i) * 0.37f);
    numerators.push_back(100000.0f - static_cast<float>(i) * 0.11f);
  }
  std::vector<float> results(divisors.size());
  auto a = wrap(divisors), b = wrap(numerators), c = wrap(results);
  IppIArithmetic<float>::Divide(a, b, c, a.SizeToRoi());
  printLine("Quotients of floats (Divide):",
            precision(results, [&](std::size_t i) { return double{numerators[i]} / divisors[i]; }));
  IppIArithmetic<float>::SquareRoot(a, c, a.SizeToRoi());
  printLine("Roots of floats (SquareRoot):",
            precision(results, [&](std::size_t i) { return std::sqrt(double{divisors[i]}); }));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 2 || !select(argc == 2 ? argv[1] : nullptr)) {
    std::fprintf(stderr, "Use: which_variant [VariantSse2, ... up to the one that the processor gets]\n");
    return 2;
  }
  printProcessor();
  printCache();
  std::printf("What differs by variant:\n");
  printSpecialValues();
  printSums();
  printPrecision();
}
