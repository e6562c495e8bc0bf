#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "tests/reference/Accumulate.h"
#include "tests/support/EntryTests.h"
#include "tests/support/FloatAgreement.h"

namespace Zorvan::Test {
namespace {

constexpr int firstWeighting = 3;  // the index of the first variant that adds every pixel with a weight
constexpr float infinity = std::numeric_limits<float>::infinity();

template <class T>
using Accumulate = int(const T* src, int srcStep, const u8* mask, int maskStep, float* srcDst, int srcDstStep,
                       Size roi);

template <class T>
Accumulate<T>* referenceOf(int variant) {
  return variant < firstWeighting ? &Reference::accumulateSelecting<T> : &Reference::accumulateWeighting<T>;
}

Accumulate<float>* floatsOf(int variant) { return Primitives::table.ippiAdd_32f_C1IMR.routine[1 + variant]; }
Accumulate<u16>* wordsOf(int variant) { return Primitives::table.ippiAdd_16u32f_C1IMR.routine[1 + variant]; }
Accumulate<u8>* bytesOf(int variant) { return Primitives::table.ippiAdd_8u32f_C1IMR.routine[1 + variant]; }

template <class T>
void registerAccumulation(const std::string& name, const CheckRules& rules,
                          const Primitives::Row<Accumulate<T>>& row) {
  registerDrawnCases("Accumulate", name, [rules, &row](int variant) {
    checkEntry<FloatsAgree<AnyNan>>(referenceOf<T>(variant), row.routine[1 + variant], rules);
  });
}

bool isNegativeZero(float x) { return x == 0 && std::signbit(x); }

/// Unselected pixels in every place of rows of all lengths up to two of the longest iterations.
void unselectedPixels(int variant) {
  struct Pixel {
    float src, before;
  };
  const Pixel pixels[] = {{1, -0.0F}, {-1, -0.0F}, {0.0F, -0.0F}, {-0.0F, -0.0F},   {infinity, 5},
                          {NAN, 5},   {-1, 0.0F},  {7, NAN},      {infinity, -0.0F}};
  const bool weighting = variant >= firstWeighting;
  for (int width = 1; width <= 70; ++width) {
    for (int shift = 0; shift < 16; ++shift) {
      for (const auto& [src, before] : pixels) {
        alignas(64) float accumulator[70 + 16];
        const std::vector<float> source(static_cast<std::size_t>(width), src);
        const std::vector<u8> mask(static_cast<std::size_t>(width), 0);
        std::fill_n(accumulator, 86, before);
        ASSERT_EQ(floatsOf(variant)(source.data(), 4 * width, mask.data(), width, accumulator + shift,
                                    4 * width, {width, 1}),
                  0);
        const int peel = (16 - shift) % 4;
        const int grouped = width > peel ? (width - peel) / 4 * 4 : 0;
        for (int i = 0; i < 86; ++i) {
          const int x = i - shift;
          const bool inside = x >= 0 && x < width;
          const bool added = inside && (weighting || (x >= peel && x < peel + grouped));
          float expected = before;
          if (added) expected = before + (weighting ? src * 0.0F : 0.0F);
          if (std::isnan(expected)) {
            ASSERT_TRUE(std::isnan(accumulator[i])) << x << " of " << width;
          } else {
            ASSERT_EQ(accumulator[i], expected) << x << " of " << width;
            ASSERT_EQ(isNegativeZero(accumulator[i]), isNegativeZero(expected))
                << "source " << src << ", pixel " << x << " of " << width << ", shift " << shift;
          }
        }
      }
    }
  }
}

/// Signalling NaNs that a zero mask skips keep their bits; an addition would make them quiet.
void skippedPixelsKeepTheirBits(int variant) {
  if (variant >= firstWeighting) GTEST_SKIP() << "adds every pixel with a weight";
  constexpr std::uint32_t signalling = 0x7F800001;
  alignas(16) std::uint32_t accumulator[8];
  std::fill_n(accumulator, 8, signalling);
  const float src[3] = {1, 2, 3};
  const u8 mask[3] = {};
  for (const int first : {0, 1, 2, 3, 5}) {
    auto* const pixels = reinterpret_cast<unsigned char*>(accumulator + first);
    ASSERT_EQ(floatsOf(variant)(src, 12, mask, 3, reinterpret_cast<float*>(pixels), 12, {3, 1}), 0);
  }
  for (const std::uint32_t word : accumulator) EXPECT_EQ(word, signalling);
}

/// The extremes of both integer types are converted exactly; a sum rounds as a float.
void exactConversion(int variant) {
  for (const int width : {1, 15, 16, 33, 200}) {
    const auto n = static_cast<std::size_t>(width);
    const std::vector<u8> mask(n, 1), bytes(n, 255);
    const std::vector<u16> words(n, 65535);
    std::vector<float> sums(n, 0.5F);
    ASSERT_EQ(bytesOf(variant)(bytes.data(), width, mask.data(), width, sums.data(), 4 * width, {width, 1}),
              0);
    EXPECT_EQ(sums, std::vector<float>(n, 255.5F));
    ASSERT_EQ(
        wordsOf(variant)(words.data(), 2 * width, mask.data(), width, sums.data(), 4 * width, {width, 1}), 0);
    EXPECT_EQ(sums, std::vector<float>(n, 65790.5F));
    std::fill(sums.begin(), sums.end(), 16777216.0F);
    const std::vector<float> ones(n, 1.0F);
    ASSERT_EQ(
        floatsOf(variant)(ones.data(), 4 * width, mask.data(), width, sums.data(), 4 * width, {width, 1}), 0);
    EXPECT_EQ(sums, std::vector<float>(n, 16777216.0F));
  }
}

/// Long rows of whole iterations: the first begins on a line, the others do not.
void rowsAtDifferentOffsets(int variant) {
  constexpr int width = 192, height = 5;
  for (const int more : {0, 4, 32, 60}) {
    const auto step = static_cast<std::size_t>(width + more / 4);
    const std::vector<float> src(width * height, 2);
    std::vector<u8> mask(width * height);
    for (std::size_t i = 0; i < mask.size(); ++i) mask[i] = i % 3 == 0 ? 0 : 1;
    alignas(64) float sums[(width + 15) * height];
    std::fill(std::begin(sums), std::end(sums), 1.0F);
    ASSERT_EQ(floatsOf(variant)(src.data(), 4 * width, mask.data(), width, sums, 4 * static_cast<int>(step),
                                {width, height}),
              0);
    for (std::size_t i = 0; i < step * height; ++i) {
      const std::size_t row = i / step, column = i % step;
      const float expected = column >= width || mask[row * width + column] == 0 ? 1 : 3;
      ASSERT_EQ(sums[i], expected) << "row " << row << ", column " << column << ", " << more << " bytes more";
    }
  }
}

/// Steps on both sides of their minima, and the status that comes first where several are invalid.
void badSteps(int variant) {
  constexpr int w = 6;
  const std::vector<u8> bytes(200, 1), mask(200, 1);
  const std::vector<u16> words(200, 1);
  const std::vector<float> floats(200, 1);
  std::vector<float> sums(200, 3);
  const auto ofBytes = [&](int srcStep, int maskStep, int step) {
    return bytesOf(variant)(bytes.data(), srcStep, mask.data(), maskStep, sums.data(), step, {w, 2});
  };
  const auto ofWords = [&](int srcStep, int maskStep, int step) {
    return wordsOf(variant)(words.data(), srcStep, mask.data(), maskStep, sums.data(), step, {w, 2});
  };
  const auto ofFloats = [&](int srcStep, int maskStep, int step) {
    return floatsOf(variant)(floats.data(), srcStep, mask.data(), maskStep, sums.data(), step, {w, 2});
  };
  for (const int bad : {w - 1, 0, -w, INT_MIN}) {
    EXPECT_EQ(ofBytes(bad, w, 4 * w + 2), -16);
    EXPECT_EQ(ofBytes(w, bad, 4 * w + 2), -16);
    EXPECT_EQ(ofWords(2 * w, bad, 4 * w + 2), -16);
    EXPECT_EQ(ofFloats(4 * w + 1, bad, 4 * w + 2), -16);
  }
  for (const int bad : {4 * w - 1, 4 * w - 2, 4 * w - 4, 0, -4 * w, INT_MIN}) {
    EXPECT_EQ(ofBytes(w, w, bad), -16);
    EXPECT_EQ(ofWords(2 * w, w, bad), -16);
    EXPECT_EQ(ofFloats(4 * w + 1, w, bad), -16);
    EXPECT_EQ(ofFloats(bad, w, 4 * w + 2), -16);
  }
  for (const int more : {1, 2, 3, 5}) {
    EXPECT_EQ(ofBytes(w, w, 4 * w + more), -108);
    EXPECT_EQ(ofWords(2 * w, w, 4 * w + more), -108);
    EXPECT_EQ(ofFloats(4 * w, w, 4 * w + more), -108);
    EXPECT_EQ(ofFloats(4 * w + more, w, 4 * w), -108);
  }
  EXPECT_EQ(ofWords(2 * w - 1, w, 4 * w), -16);
  EXPECT_EQ(ofWords(2 * w - 2, w, 4 * w), -16);
  EXPECT_EQ(ofWords(2 * w + 1, w - 1, 4 * w - 4), -108);  // the source's step is tested first
  EXPECT_EQ(sums, std::vector<float>(200, 3));
  EXPECT_EQ(ofBytes(w + 1, w + 3, 4 * w + 4), 0);
  EXPECT_EQ(ofWords(2 * w + 2, w + 1, 4 * w), 0);
  EXPECT_EQ(ofFloats(4 * w + 4, w + 1, 4 * w + 8), 0);
}

/// Four times the width does not fit into 32 bits: every step is too short.
void widthsBeyondAnyStep(int variant) {
  float pixel = 3;
  const u8 mask = 1;
  const Size roi{(1 << 30) + 1, 1};
  EXPECT_EQ(floatsOf(variant)(&pixel, 4, &mask, INT_MAX, &pixel, 4, roi), -16);
  EXPECT_EQ(floatsOf(variant)(&pixel, INT_MAX, &mask, INT_MAX, &pixel, INT_MAX, roi), -16);
  EXPECT_EQ(bytesOf(variant)(&mask, INT_MAX, &mask, INT_MAX, &pixel, 4, roi), -16);
  const u16 word = 1;
  EXPECT_EQ(wordsOf(variant)(&word, 2, &mask, INT_MAX, &pixel, 4, roi), -16);
  EXPECT_EQ(pixel, 3);
}

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
  CheckRules rules;
  using enum StepType;
  rules.range.stepTypes = {tight, tight, onePixelMore, onePixelMore, wholeLinesMore, oddBytesMore};
  rules.range.moreWidths = {180, 196};
#define ACCUMULATION(name, ...) registerAccumulation(#name, rules, Primitives::table.name);
#define ENTRY(...) ACCUMULATION(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Accumulate.def"
#undef ENTRY
#undef ACCUMULATION

  registerForEachVariant("Accumulate", "UnselectedPixels", unselectedPixels);
  registerForEachVariant("Accumulate", "SkippedPixelsKeepTheirBits", skippedPixelsKeepTheirBits);
  registerForEachVariant("Accumulate", "ExactConversion", exactConversion);
  registerForEachVariant("Accumulate", "RowsAtDifferentOffsets", rowsAtDifferentOffsets);
  registerForEachVariant("Accumulate", "BadSteps", badSteps);
  registerForEachVariant("Accumulate", "WidthsBeyondAnyStep", widthsBeyondAnyStep);
}
