#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "tests/reference/Compare.h"
#include "tests/support/EntryTests.h"

namespace Zorvan::Test {
namespace {

template <class T>
using Compare = int(const T* src, int srcStep, T value, u8* dst, int dstStep, Size roi, int comparison);

template <class T>
Compare<T>* compareOf(int variant) {
  const auto word = static_cast<std::size_t>(1 + variant);
  if constexpr (std::is_same_v<T, u8>) return Primitives::table.ippiCompareC_8u_C1R.routine[word];
  if constexpr (std::is_same_v<T, s16>) return Primitives::table.ippiCompareC_16s_C1R.routine[word];
  if constexpr (std::is_same_v<T, u16>) return Primitives::table.ippiCompareC_16u_C1R.routine[word];
  if constexpr (std::is_same_v<T, float>) return Primitives::table.ippiCompareC_32f_C1R.routine[word];
}

constexpr int firstWithNanAbove = 4;

Compare<float>* floatReferenceOf(int variant) {
  return variant >= firstWithNanAbove ? Reference::compareWithNanAbove : Reference::ippiCompareC_32f_C1R;
}

/// Floats have a reference by variant. Overload resolution prefers this to the form for all entries.
void registerEntry(const std::string& family, const std::string& name, const CheckRules& rules,
                   Compare<float>* /*reference*/, const Primitives::Row<Compare<float>>& row) {
  registerDrawnCases(family, name, [rules, &row](int variant) {
    checkEntry<SameBytes>(floatReferenceOf(variant), row.routine[1 + variant], rules);
  });
}

/// Every pixel of `pixels` against every constant of `values` under all operators: in rows without gaps, in
/// rows with gaps at odd addresses, and in rows that are all aligned.
template <class T>
void compareAll(const std::vector<T>& pixels, const std::vector<T>& values, int variant,
                bool (*holds)(T, T, int)) {
  const int width = static_cast<int>(pixels.size());
  constexpr int pixelBytes = sizeof(T);
  struct {
    int shift, srcStep, dstStep;
  } const layouts[] = {{0, width * pixelBytes, width},
                       {1, width * pixelBytes + 3, width + 2},
                       {0, (width * pixelBytes | 63) + 1, (width | 63) + 1}};
  for (const auto& layout : layouts) {
    const Block src(0, static_cast<std::size_t>(2 * layout.srcStep), {Placement::Edge::inside, layout.shift},
                    1);
    for (int r = 0; r < 2; ++r) {
      std::memcpy(src.data() + r * layout.srcStep, pixels.data(), pixels.size() * sizeof(T));
    }
    const Block dst(1, static_cast<std::size_t>(2 * layout.dstStep), {Placement::Edge::inside, layout.shift},
                    2);
    for (const T value : values) {
      for (int comparison = 0; comparison < 5; ++comparison) {
        ASSERT_EQ(compareOf<T>(variant)(reinterpret_cast<const T*>(src.data()), layout.srcStep, value,
                                        dst.data(), layout.dstStep, {width, 2}, comparison),
                  0);
        for (int i = 0; i < 2 * width; ++i) {
          const T pixel = pixels[static_cast<std::size_t>(i % width)];
          ASSERT_EQ(dst.data()[i / width * layout.dstStep + i % width],
                    holds(pixel, value, comparison) ? 255 : 0)
              << +pixel << " and " << +value << " under " << comparison << ", step " << layout.srcStep;
        }
      }
    }
  }
}

template <class T>
bool holdsInOrder(T x, T value, int comparison) {
  if (comparison == 2) return x == value;
  if (comparison < 2) return comparison == 0 ? x < value : x <= value;
  return comparison == 3 ? value <= x : value < x;
}

bool holdsWithNanAbove(float x, float value, int comparison) {
  if (std::isnan(x) || std::isnan(value)) return comparison >= 3;
  return holdsInOrder(x, value, comparison);
}

void allPairsOfBytes(int variant) {
  std::vector<u8> all;
  for (int i = 0; i < 256; ++i) all.push_back(u8(i));
  compareAll<u8>(all, all, variant, holdsInOrder<u8>);
}

/// All words against those at the edges of their ranges, and the edges against each other.
template <class T>
void words(int variant) {
  std::vector<T> all, edges;
  for (int i = 0; i < 65536; ++i) all.push_back(static_cast<T>(i));
  for (const int edge :
       {0, 1, 2, 0x7F, 0x80, 0xFF, 0x100, 0x7FFE, 0x7FFF, 0x8000, 0x8001, 0xFF7F, 0xFF80, 0xFFFE, 0xFFFF}) {
    edges.push_back(static_cast<T>(edge));
  }
  compareAll<T>(edges, edges, variant, holdsInOrder<T>);
  compareAll<T>(all, {T(0), T(1), T(0x7FFF), T(0x8000), T(0xFFFF)}, variant, holdsInOrder<T>);
}

const std::vector<float>& floatEdges() {
  using Limits = std::numeric_limits<float>;
  static const std::vector<float> edges = {0.0F,
                                           -0.0F,
                                           1.0F,
                                           -1.0F,
                                           254.99998F,
                                           255.0F,
                                           255.00002F,
                                           Limits::denorm_min(),
                                           -Limits::denorm_min(),
                                           Limits::min(),
                                           Limits::max(),
                                           Limits::lowest(),
                                           Limits::infinity(),
                                           -Limits::infinity(),
                                           Limits::quiet_NaN(),
                                           -Limits::quiet_NaN(),
                                           Limits::signaling_NaN()};
  return edges;
}

/// All edges against each other: repeated, so that each is compared in vectors and in the tail.
void edgesOfFloats(int variant) {
  std::vector<float> pixels;
  for (int i = 0; i < 7; ++i) {
    for (const float edge : floatEdges()) pixels.push_back(edge);
  }
  compareAll<float>(pixels, floatEdges(), variant,
                    variant >= firstWithNanAbove ? holdsWithNanAbove : holdsInOrder<float>);
}

/// A NaN in every place of a row that runs all loops of a routine; its neighbours are 1.
void nanInEveryPlace(int variant) {
  constexpr int n = 64 + 32 + 31;
  alignas(64) float src[n];
  alignas(64) u8 dst[n];
  std::fill_n(src, n, 1.0F);
  const u8 above = variant >= firstWithNanAbove ? 255 : 0;
  for (int place = 0; place < n; ++place) {
    src[place] = std::numeric_limits<float>::quiet_NaN();
    for (int comparison = 0; comparison < 5; ++comparison) {
      ASSERT_EQ(compareOf<float>(variant)(src, sizeof src, 1.0F, dst, n, {n, 1}, comparison), 0);
      for (int i = 0; i < n; ++i) {
        const u8 expected = i == place ? (comparison >= 3 ? above : u8(0))
                                       : (comparison >= 1 && comparison <= 3 ? u8(255) : u8(0));
        ASSERT_EQ(dst[i], expected) << "NaN at " << place << ", pixel " << i << ", under " << comparison;
      }
    }
    src[place] = 1.0F;
  }
}

template <class T>
void compareWithReference(Compare<T>* reference, int variant, Size roi, int srcStep, int dstStep, int shift) {
  const auto bytes = [&](int step, int pixelBytes) {
    return static_cast<std::size_t>((roi.height - 1) * step + roi.width * pixelBytes);
  };
  const Placement place{Placement::Edge::inside, shift};
  const Block src(0, bytes(srcStep, sizeof(T)), place, 3);
  for (int r = 0; r < roi.height; ++r) {
    fillPixels<T>(src.data() + r * srcStep, static_cast<std::size_t>(roi.width), Content::special,
                  static_cast<std::uint64_t>(r));
  }
  for (int comparison = 0; comparison < 5; ++comparison) {
    const Block expected(1, bytes(dstStep, 1), place, 4), actual(2, bytes(dstStep, 1), place, 4);
    const auto* pixels = reinterpret_cast<const T*>(src.data());
    reference(pixels, srcStep, T(127), expected.data(), dstStep, roi, comparison);
    const std::string fault = faultOf(
        [&] { compareOf<T>(variant)(pixels, srcStep, T(127), actual.data(), dstStep, roi, comparison); });
    ASSERT_EQ(fault, "");
    ASSERT_TRUE(expected.sameBytes(actual))
        << expected.difference(actual) << "\nregion " << roi.width << " by " << roi.height << ", steps "
        << srcStep << " and " << dstStep << ", shift " << shift << ", under " << comparison;
  }
}

/// Small rows with large steps reach the limit from which aligned images stream, from both sides.
template <class T>
void rowsFarApart(Compare<T>* reference, int variant) {
  for (const int width : {1, 15, 16, 17, 31, 47, 63, 64, 127, 191}) {
    for (const int height : {31, 32, 33}) {
      for (const int shift : {0, 16, 1}) {
        compareWithReference<T>(reference, variant, {width, height}, 24576, 8192, shift);
      }
    }
  }
}
void limitOfStreaming(int variant) {
  rowsFarApart<u8>(Reference::ippiCompareC_8u_C1R, variant);
  rowsFarApart<s16>(Reference::ippiCompareC_16s_C1R, variant);
  rowsFarApart<u16>(Reference::ippiCompareC_16u_C1R, variant);
  rowsFarApart<float>(floatReferenceOf(variant), variant);
}

/// Rows without and with gaps, in either image, also such as are too long or too many to be joined.
template <class T>
void fusedAndNot(Compare<T>* reference, int variant) {
  constexpr int pixelBytes = sizeof(T);
  for (const Size roi : {Size{33, 5}, Size{64, 4}, Size{5, 40}, Size{32768, 2}, Size{2, 32769}}) {
    const int row = roi.width * pixelBytes;
    compareWithReference<T>(reference, variant, roi, row, roi.width, 0);
    compareWithReference<T>(reference, variant, roi, row, roi.width + 7, 0);
    compareWithReference<T>(reference, variant, roi, row + 7, roi.width, 0);
    compareWithReference<T>(reference, variant, roi, row + 7, roi.width + 3, 5);
  }
}
void gapsDoNotShow(int variant) {
  fusedAndNot<u8>(Reference::ippiCompareC_8u_C1R, variant);
  fusedAndNot<s16>(Reference::ippiCompareC_16s_C1R, variant);
  fusedAndNot<u16>(Reference::ippiCompareC_16u_C1R, variant);
  fusedAndNot<float>(floatReferenceOf(variant), variant);
}

/// An operator that holds for no pixel fills the region, and nothing else, without a load from the source.
void fillsInstead(int variant) {
  const auto* const unreadable = reinterpret_cast<const u8*>(std::uintptr_t{16});
  struct {
    int comparison;
    u8 value;
  } const cases[] = {{0, 0}, {4, 255}};
  for (const auto& c : cases) {
    for (const int width : {1, 17, 40}) {
      std::vector<u8> dst(41 * 3, 9);
      int status = 1;
      EXPECT_EQ(
          faultOf([&] {
            status = compareOf<u8>(variant)(unreadable, 1, c.value, dst.data(), 41, {width, 3}, c.comparison);
          }),
          "");
      EXPECT_EQ(status, 0);
      for (int i = 0; i < 41 * 3; ++i) {
        EXPECT_EQ(dst[static_cast<std::size_t>(i)], i % 41 < width ? 0 : 9) << i;
      }
    }
  }
}

template <class T>
void unknownOperatorsOf(int variant) {
  const auto* const unreadable = reinterpret_cast<const T*>(std::uintptr_t{16});
  u8 dst[4] = {9, 9, 9, 9};
  for (const int comparison : {5, 6, 7, 255, INT_MAX, INT_MIN, -1}) {
    for (const T value : {T(0), T(255)}) {
      int status = 1;
      EXPECT_EQ(faultOf([&] {
                  status = compareOf<T>(variant)(unreadable, 8, value, dst, 2, {2, 2}, comparison);
                }),
                "");
      EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(compareOf<T>(variant)(unreadable, 8, T(0), nullptr, 2, {2, 2}, comparison), -8);
    EXPECT_EQ(compareOf<T>(variant)(unreadable, 0, T(0), dst, 2, {2, 2}, comparison), -16);
    EXPECT_EQ(compareOf<T>(variant)(unreadable, 8, T(0), dst, 2, {2, 0}, comparison), -6);
  }
  for (const u8 byte : dst) EXPECT_EQ(byte, 9);
}

/// Arguments are tested first; an unknown operator then writes nothing and is no error.
void unknownOperators(int variant) {
  unknownOperatorsOf<u8>(variant);
  unknownOperatorsOf<s16>(variant);
  unknownOperatorsOf<u16>(variant);
  unknownOperatorsOf<float>(variant);
}

template <class T>
void refusalsOf(int variant) {
  const T src[8] = {};
  u8 dst[8] = {9, 9, 9, 9, 9, 9, 9, 9};
  Compare<T>* const compare = compareOf<T>(variant);
  for (int comparison = 0; comparison < 6; ++comparison) {
    EXPECT_EQ(compare(nullptr, 0, T(0), dst, 0, {0, 0}, comparison), -8);
    EXPECT_EQ(compare(src, 0, T(0), nullptr, 0, {0, 0}, comparison), -8);
    for (const int bad : {0, -1, INT_MIN}) {
      EXPECT_EQ(compare(src, bad, T(0), dst, 4, {0, 0}, comparison), -16);
      EXPECT_EQ(compare(src, 4, T(0), dst, bad, {-1, 1}, comparison), -16);
    }
    for (const Size bad : {Size{0, 1}, Size{1, 0}, Size{-1, 1}, Size{1, INT_MIN}}) {
      EXPECT_EQ(compare(src, 4, T(0), dst, 4, bad, comparison), -6);
    }
  }
  for (const u8 byte : dst) EXPECT_EQ(byte, 9);
}

/// Pointers before steps before sizes, and nothing written.
void refusalsInOrder(int variant) {
  refusalsOf<u8>(variant);
  refusalsOf<s16>(variant);
  refusalsOf<u16>(variant);
  refusalsOf<float>(variant);
}

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
  CheckRules rules;
  rules.parameters = {4, 0, 1, 2, 3, 7, -1};
  rules.range.moreWidths = {128};
  rules.largeRegions = {{1024, 600}, {32768, 4}};
#define ENTRY(...) CHECK_ENTRY("Compare", rules, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Compare.def"
#undef ENTRY

  registerForEachVariant("Compare", "AllPairsOfBytes", allPairsOfBytes);
  registerForEachVariant("Compare", "SignedWords", words<s16>);
  registerForEachVariant("Compare", "UnsignedWords", words<u16>);
  registerForEachVariant("Compare", "EdgesOfFloats", edgesOfFloats);
  registerForEachVariant("Compare", "NanInEveryPlace", nanInEveryPlace);
  registerForEachVariant("Compare", "LimitOfStreaming", limitOfStreaming);
  registerForEachVariant("Compare", "GapsDoNotShow", gapsDoNotShow);
  registerForEachVariant("Compare", "FillsInstead", fillsInstead);
  registerForEachVariant("Compare", "UnknownOperators", unknownOperators);
  registerForEachVariant("Compare", "RefusalsInOrder", refusalsInOrder);
}
