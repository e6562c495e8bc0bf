// The differences between the variants in the results of exported operations: a test for each row of the
// table in docs/variants.md, with the row's name, and one that everything else is the same to the bit.

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/EntryTests.h"
#include "zorvan/ipp.h"
#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;

constexpr int avx = 3, avx2 = 4, avx512 = 5;
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float largest = std::numeric_limits<float>::max();
const float nan = std::numeric_limits<float>::quiet_NaN();

/// An image with pixels of its own, `height` rows of equal length.
template <class T>
struct Pixels : std::vector<T> {
  using std::vector<T>::vector;
  IppIMemory<T> image(int height = 1) {
    return IppIMemory<T>::CreateContainer(this->data(), static_cast<int>(this->size()) / height, height);
  }
};

/// Irregular numbers of magnitudes up to `reach`.
Pixels<float> wave(int count, float reach) {
  Pixels<float> pixels;
  for (int i = 0; i < count; ++i) pixels.push_back(reach * std::sin(static_cast<float>(i * i % 9973)));
  return pixels;
}

Rect whole(int count, int height = 1) { return {0, 0, count / height, height}; }

void nanComparesAsGreater(int variant) {
  for (const int count : {1, 7, 40}) {
    Pixels<float> src(static_cast<std::size_t>(count), nan);
    Pixels<u8> dst(src.size(), 7);
    auto a = src.image();
    auto b = dst.image();
    for (const auto comparison : {eLess, eLessEqual, eEqual, eGreaterEqual, eGreater}) {
      Comparer<float>::Compare(a, b, whole(count), 100, comparison);
      const u8 expected = comparison >= eGreaterEqual && variant >= avx2 ? 255 : 0;
      EXPECT_EQ(dst, Pixels<u8>(src.size(), expected)) << comparison << " of " << count;
    }
  }
}

void unselectedPixelsOfSums(int variant) {
  constexpr int count = 48;
  for (const float added : {infinity, nan}) {
    Pixels<float> src(count, added), sums(count, 5);
    Pixels<u8> none(count, 0);
    auto a = src.image();
    auto b = sums.image();
    auto mask = none.image();
    IppIArithmetic<float>::AddWithMask(a, b, mask, whole(count));
    for (const float sum : sums) {
      if (variant < avx) {
        EXPECT_EQ(sum, 5);
      } else {
        EXPECT_TRUE(std::isnan(sum));
      }
    }
  }
  Pixels<float> src(count, 1), zeros(count, -0.0f);
  Pixels<u8> none(count, 0);
  auto a = src.image();
  auto b = zeros.image();
  auto mask = none.image();
  IppIArithmetic<float>::AddWithMask(a, b, mask, whole(count));
  for (const float zero : zeros) {
    EXPECT_EQ(zero, 0);
    if (variant >= avx) {
      EXPECT_FALSE(std::signbit(zero));
    }
  }
}

void floatQuotients(int variant) {
  constexpr int count = 4000;
  Pixels<float> divisors = wave(count, 3), numerators = wave(count + 1, 900), quotients(count);
  numerators.pop_back();
  for (float& divisor : divisors) divisor += divisor == 0;
  auto a = divisors.image(), b = numerators.image(), c = quotients.image();
  IppIArithmetic<float>::Divide(a, b, c, whole(count));
  for (std::size_t i = 0; i < count; ++i) {
    const double quotient = double{numerators[i]} / divisors[i];
    ASSERT_LE(std::abs(quotients[i] - quotient), std::abs(quotient) * 0x3.01p-24) << i;
    if (variant == avx512) {
      ASSERT_EQ(quotients[i], numerators[i] / divisors[i]) << i;
    }
  }
}

void byteQuotients(int) {
  Pixels<u8> divisors, numerators, quotients(255 * 256);
  for (int i = 0; i < 255 * 256; ++i) {
    divisors.push_back(static_cast<u8>(1 + i % 255));
    numerators.push_back(static_cast<u8>(i / 255));
  }
  auto a = divisors.image(), b = numerators.image(), c = quotients.image();
  IppIArithmetic<u8>::Divide(a, b, c, whole(255 * 256));
  for (std::size_t i = 0; i < quotients.size(); ++i) {
    ASSERT_LE(std::abs(quotients[i] - static_cast<double>(numerators[i]) / divisors[i]), 0.5) << i;
  }
}

void floatRoots(int variant) {
  Pixels<float> pixels = wave(4000, 1e6f), roots(4000);
  for (float& pixel : pixels) pixel = std::abs(pixel);
  auto a = pixels.image(), b = roots.image();
  IppIArithmetic<float>::SquareRoot(a, b, whole(4000));
  const double slack = (variant == avx512 ? 2.6 : 6.4) / (1 << 24);
  for (std::size_t i = 0; i < roots.size(); ++i) {
    const double root = std::sqrt(double{pixels[i]});
    ASSERT_LE(std::abs(roots[i] - root), slack * root) << pixels[i];
  }
}

void infiniteExtremes(int variant) {
  Pixels<float> above(40, infinity), below(40, -infinity);
  auto a = above.image(), b = below.image();
  EXPECT_EQ(Statistic<float>::Min(a, whole(40)), variant < avx2 ? largest : infinity);
  EXPECT_EQ(Statistic<float>::Max(b, whole(40)), variant < avx2 ? -largest : -infinity);
}

/// The next pixel of a lane replaces a NaN, and with it the extreme of the earlier pixels of the lane.
void nanInExtremes(int variant) {
  Pixels<float> column = {3, nan, 5};
  auto image = column.image(3);
  EXPECT_EQ(Statistic<float>::Min(image, whole(3, 3)), variant == avx512 ? 3 : 5);
  Pixels<float> last(128, 1.0f);
  std::fill(last.begin() + 64, last.end(), nan);
  auto two = last.image(2);
  EXPECT_TRUE(std::isnan(Statistic<float>::Max(two, whole(128, 2))));
}

void floatMeans(int) {
  Pixels<float> pixels = wave(30000, 1000);
  Pixels<u8> all(30000, 1);
  auto image = pixels.image(30);
  auto mask = all.image(30);
  double sum = 0, magnitudes = 0;
  for (const float pixel : pixels) {
    sum += double{pixel};
    magnitudes += std::abs(double{pixel});
  }
  const double mean = sum / 30000, magnitude = magnitudes / 30000;
  const double rounding = std::abs(mean) / (1 << 24);
  EXPECT_NEAR(Statistic<float>::Mean(image, whole(30000, 30)), mean, rounding + magnitude * 0x1p-45);
  EXPECT_NEAR(Statistic<float>::Mean(image, mask, whole(30000, 30)), mean,
              rounding + magnitude * 480 * 0x1p-24);
}

void meansOfLongRows(int variant) {
  Pixels<u16> pixels(40000, 65535);
  Pixels<u8> all(40000, 1);
  auto image = pixels.image();
  auto mask = all.image();
  // 40000 * 65535 is interpreted as signed 32 bits, and the low 16 bits of its mean are the result.
  const double wrapped = (40000.0 * 65535 - 0x1p32) / 40000;
  EXPECT_EQ(Statistic<u16>::Mean(image, mask, whole(40000)),
            variant < avx2 ? static_cast<u16>(static_cast<int>(wrapped)) : 65535);
  EXPECT_EQ(Statistic<u16>::Mean(image, whole(40000)), 65535);
  if (variant >= avx2) {
    Pixels<u16> longest(262000, 65535);
    Pixels<u8> selected(longest.size(), 1);
    auto longImage = longest.image();
    auto longMask = selected.image();
    EXPECT_EQ(Statistic<u16>::Mean(longImage, longMask, whole(262000)), 65535);
  }
}

void deviations(int) {
  Pixels<float> pixels = wave(30000, 1000);
  Pixels<u8> bytes, all(30000, 1);
  for (int i = 0; i < 30000; ++i) bytes.push_back(static_cast<u8>(i * i % 251));
  const auto expectNear = [&](const auto& values, const MeanStdDev& found, double slack) {
    double sum = 0, squares = 0;
    for (const auto value : values) sum += value;
    const double mean = sum / 30000;
    for (const auto value : values) squares += (value - mean) * (value - mean);
    const double deviation = std::sqrt(squares / 30000);
    EXPECT_NEAR(found.Mean, mean, slack * deviation);
    EXPECT_NEAR(found.StdDev, deviation, slack * deviation);
  };
  auto floats = pixels.image(30);
  auto ints = bytes.image(30);
  auto mask = all.image(30);
  const Rect rect = whole(30000, 30);
  expectNear(pixels, Statistic<float>::MeanAndStandardDeviationWithMask(floats, mask, rect), 1e-5);
  expectNear(bytes, Statistic<u8>::MeanAndStandardDeviationWithMask(ints, mask, rect), 1e-12);
}

void nanAmongPlaces(int variant) {
  Pixels<float> nans(90, nan);
  Pixels<u8> all(90, 1);
  auto image = nans.image(3);
  auto mask = all.image(3);
  const MinMaxIndex found = Statistic<float>::MinMaxIndexWithMask(image, mask);
  EXPECT_EQ(std::isnan(found.Min), variant < avx2);
  EXPECT_EQ(std::isnan(found.Max), variant < avx2);
  Pixels<float> rows = {9, 9, 9, 9, 9, 9, 9, 9, nan, nan, nan, nan, 5, 5, 5, 5};
  Pixels<u8> sixteen(16, 1);
  auto two = rows.image(2);
  auto mask2 = sixteen.image(2);
  if (variant <= avx) {
    EXPECT_EQ(Statistic<float>::MinMaxIndexWithMask(two, mask2).Max, variant == avx ? 9 : 5);
    Pixels<float> ones = {1, 1, 1, 1, 1, 1, 1, 1, nan, nan, nan, nan, 5, 5, 5, 5};
    auto twoOfOnes = ones.image(2);
    EXPECT_EQ(Statistic<float>::MinMaxIndexWithMask(twoOfOnes, mask2).Min, variant == avx ? 1 : 5);
  }
}

void floatLaplace(int) {
  constexpr int width = 60, height = 40;
  Pixels<float> pixels = wave(width * height, 1000), sums(width * height);
  auto a = pixels.image(height), b = sums.image(height);
  FilteringFunction::LaplaceBorder5x5<float>(a, b, eBorderReplicate, 0);
  const int kernel[5][5] = {
      {-1, -3, -4, -3, -1}, {-3, 0, 6, 0, -3}, {-4, 6, 20, 6, -4}, {-3, 0, 6, 0, -3}, {-1, -3, -4, -3, -1}};
  for (int row = 2; row < height - 2; ++row) {
    for (int column = 2; column < width - 2; ++column) {
      double sum = 0;
      for (int j = -2; j <= 2; ++j) {
        for (int i = -2; i <= 2; ++i) {
          sum +=
              kernel[j + 2][i + 2] * double{pixels[static_cast<std::size_t>((row + j) * width + column + i)]};
        }
      }
      ASSERT_NEAR(sums[static_cast<std::size_t>(row * width + column)], sum, 88 * 1000 * 25 * 0x1p-24);
    }
  }
}

/// The result near a NaN is not specified; pixels outside the mask around it do not depend on it.
void nanInMorphology(int) {
  Pixels<float> pixels(400, 3), dst(400);
  pixels[210] = nan;
  auto a = pixels.image(20), b = dst.image(20);
  IppIMorphology<float>::Dilate(a, b, whole(400, 20), {3, 3});
  for (int i = 0; i < 400; ++i) {
    const bool near = std::abs(i / 20 - 10) <= 1 && std::abs(i % 20 - 10) <= 1;
    const float found = dst[static_cast<std::size_t>(i)];
    EXPECT_TRUE(found == 3 || (near && std::isnan(found))) << i;
  }
}

/// Appends results of all other operations.
template <class T>
void appendTo(std::string& results, const Pixels<T>& pixels) {
  results.append(reinterpret_cast<const char*>(pixels.data()), pixels.size() * sizeof(T));
}

std::string resultsOfByteOperations() {
  constexpr int width = 83, height = 21, count = width * height;
  const Rect rect = {0, 0, width, height}, inner = {3, 5, 70, 15};
  Pixels<u8> first, second, dst(count);
  for (int i = 0; i < count; ++i) {
    first.push_back(static_cast<u8>(i * i % 251));
    second.push_back(static_cast<u8>(1 + i * 7 % 255));
  }
  auto a = first.image(height), b = second.image(height), c = dst.image(height);
  std::string results;
  const auto keep = [&](auto&& operation) {
    operation();
    appendTo(results, dst);
  };
  using Sums = IppIArithmetic<u8>;
  using Logic = IppILogical<u8>;
  using Shapes = IppIMorphology<u8>;
  keep([&] { Initializer::Fill<u8>(c, 9, inner); });
  keep([&] { Initializer::Copy(a, c, inner); });
  keep([&] { Initializer::CopyWithMask(b, c, a, inner); });
  keep([&] { Initializer::FillWithMask<u8>(c, a, 77, inner); });
  keep([&] { Sums::Add(a, b, c, rect); });
  keep([&] { Sums::AddC(c, 31, rect); });
  keep([&] { Sums::Subtract(a, b, c, rect); });
  keep([&] { Sums::Multiply(a, b, c, rect); });
  keep([&] { Sums::Square(a, c, rect); });
  keep([&] { Sums::SquareRoot(a, c, rect); });
  keep([&] { Logic::And(a, b, c, rect); });
  keep([&] { Logic::Or(a, b, c, rect); });
  keep([&] { Logic::Xor(a, b, c, rect); });
  keep([&] { Logic::Not(a, c, rect); });
  keep([&] { Shapes::Erode(a, c, rect, {3, 3}); });
  keep([&] { Shapes::Dilate(a, c, rect, {5, 2}); });
  keep([&] { Shapes::Open(a, c, rect, {4, 4}); });
  keep([&] { Shapes::Close(a, c, rect, {3, 7}); });
  keep([&] { FilteringFunction::LaplaceBorder3x3<u8>(a, c, eBorderConstant, 5); });
  keep([&] { FilteringFunction::LaplaceBorder5x5<u8>(a, c, eBorderReplicate, 5); });
  keep([&] { ComputerVision::FloodFill<u8>(c, {4, 4}, 3, rect); });
  const MinMaxIndex places = Statistic<u8>::MinMaxIndexWithMask(a, b);
  appendTo(results, Pixels<u8>{Statistic<u8>::Min(a, rect), Statistic<u8>::Max(b, inner),
                               Statistic<u8>::Mean(a, rect), Statistic<u8>::Mean(a, b, rect)});
  appendTo(results, Pixels<float>{places.Min, places.Max});
  appendTo(results, Pixels<int>{places.MinIndex.x, places.MinIndex.y, places.MaxIndex.x, places.MaxIndex.y});
  return results;
}

std::string resultsOfFloatOperations() {
  constexpr int width = 83, height = 21, count = width * height;
  const Rect rect = {0, 0, width, height};
  Pixels<float> first = wave(count, 300), second = wave(count + 5, 9), dst(count);
  second.resize(count);
  Pixels<int> numbers;
  for (const float pixel : first) numbers.push_back(static_cast<int>(pixel * 1e5f));
  Pixels<u8> bytes(count);
  auto a = first.image(height), b = second.image(height), c = dst.image(height);
  auto ints = numbers.image(height);
  auto mask = bytes.image(height);
  std::string results;
  const auto keep = [&](auto&& operation) {
    operation();
    appendTo(results, dst);
    appendTo(results, bytes);
  };
  using Sums = IppIArithmetic<float>;
  using Shapes = IppIMorphology<float>;
  for (const auto comparison : {eLess, eLessEqual, eEqual, eGreaterEqual, eGreater}) {
    keep([&] { Comparer<float>::Compare(a, mask, rect, 12, comparison); });
  }
  keep([&] { Sums::Add(a, b, c, rect); });
  keep([&] { Sums::AddC(c, 0.3f, rect); });
  keep([&] { Sums::Subtract(a, b, c, rect); });
  keep([&] { Sums::Multiply(a, b, c, rect); });
  keep([&] { Sums::Square(a, c, rect); });
  keep([&] { Sums::Absolute(a, c, rect); });
  keep([&] { Sums::AddWithMask(b, c, mask, rect); });
  keep([&] { Shapes::Erode(a, c, rect, {3, 3}); });
  keep([&] { Shapes::Open(a, c, rect, {2, 5}); });
  keep([&] { Shapes::Close(a, c, rect, {6, 6}); });
  keep([&] { Initializer::Convert<int, float>(ints, c, rect); });
  keep([&] { Initializer::Convert<int, u8>(ints, mask, rect); });
  const MinMaxIndex places = Statistic<float>::MinMaxIndexWithMask(a, mask);
  appendTo(results, Pixels<float>{places.Min, places.Max, Statistic<float>::Min(a, rect),
                                  Statistic<float>::Max(a, rect)});
  appendTo(results, Pixels<int>{places.MinIndex.x, places.MinIndex.y, places.MaxIndex.x, places.MaxIndex.y});
  return results;
}

void everythingElse(int variant) {
  const std::string bytes = resultsOfByteOperations(), floats = resultsOfFloatOperations();
  Primitives::variantIndex = 0;
  EXPECT_TRUE(resultsOfByteOperations() == bytes);
  EXPECT_TRUE(resultsOfFloatOperations() == floats);
  Primitives::variantIndex = variant;
}

}  // namespace

void registerEntryTests() {
  const auto add = [](const char* name, void (*body)(int)) {
    registerForEachVariant("VariantDifferences", name, [body](int variant) {
      const int selected = Primitives::variantIndex;
      Primitives::variantIndex = variant;
      body(variant);
      Primitives::variantIndex = selected;
    });
  };
  add("nanComparesAsGreater", nanComparesAsGreater);
  add("unselectedPixelsOfSums", unselectedPixelsOfSums);
  add("floatQuotients", floatQuotients);
  add("byteQuotients", byteQuotients);
  add("floatRoots", floatRoots);
  add("infiniteExtremes", infiniteExtremes);
  add("nanInExtremes", nanInExtremes);
  add("floatMeans", floatMeans);
  add("meansOfLongRows", meansOfLongRows);
  add("deviations", deviations);
  add("nanAmongPlaces", nanAmongPlaces);
  add("floatLaplace", floatLaplace);
  add("nanInMorphology", nanInMorphology);
  add("everythingElse", everythingElse);
}

}  // namespace Zorvan::Test
