#include <immintrin.h>

#include <algorithm>
#include <cfenv>
#include <climits>
#include <vector>

#include "tests/support/Cache.h"
#include "tests/support/EntryTests.h"

namespace Zorvan::Test {
namespace {

template <class T>
using Convert = int(const int* src, int srcStep, T* dst, int dstStep, Size roi);

Convert<u8>* narrowOf(int variant) { return Primitives::table.ippiConvert_32s8u_C1R.routine[1 + variant]; }
Convert<float>* toFloatOf(int variant) {
  return Primitives::table.ippiConvert_32s32f_C1R.routine[1 + variant];
}

struct Edge {
  int value;
  u8 byte;
  float number;
};
constexpr Edge edges[] = {{-1, 0, -1.0f},
                          {0, 0, 0.0f},
                          {1, 1, 1.0f},
                          {127, 127, 127.0f},
                          {128, 128, 128.0f},
                          {254, 254, 254.0f},
                          {255, 255, 255.0f},
                          {256, 255, 256.0f},
                          {32767, 255, 32767.0f},
                          {32768, 255, 32768.0f},
                          {65535, 255, 65535.0f},
                          {65536, 255, 65536.0f},
                          {65536 + 100, 255, 65636.0f},
                          {-32768, 0, -32768.0f},
                          {-32769, 0, -32769.0f},
                          {-65536 + 100, 0, -65436.0f},
                          {16777217, 255, 16777216.0f},
                          {16777219, 255, 16777220.0f},
                          {-16777217, 0, -16777216.0f},
                          {INT_MIN, 0, -2147483648.0f},
                          {INT_MAX, 255, 2147483648.0f}};

/// Every edge value in every place of a row that runs all loops of a routine; its neighbours keep their
/// values.
void edgesInEveryPlace(int variant) {
  constexpr int n = 64 + 32 + 16 + 15;
  alignas(64) int src[n];
  alignas(64) u8 bytes[n];
  alignas(64) float numbers[n];
  std::fill_n(src, n, 77);
  for (const Edge& edge : edges) {
    for (int place = 0; place < n; ++place) {
      src[place] = edge.value;
      ASSERT_EQ(narrowOf(variant)(src, sizeof src, bytes, n, {n, 1}), 0);
      ASSERT_EQ(toFloatOf(variant)(src, sizeof src, numbers, sizeof numbers, {n, 1}), 0);
      for (int i = 0; i < n; ++i) {
        ASSERT_EQ(bytes[i], i == place ? edge.byte : 77) << edge.value << " at " << place << ", pixel " << i;
        ASSERT_EQ(numbers[i], i == place ? edge.number : 77.0f)
            << edge.value << " at " << place << ", pixel " << i;
      }
      src[place] = 77;
    }
  }
}

/// All values around the limits of bytes and of words, as single pixels and as a row.
void valuesAroundTheLimits(int variant) {
  std::vector<int> values;
  for (const int limit : {0, 255, 32767, -32768, 65536, -65536}) {
    for (int value = limit - 300; value <= limit + 300; ++value) values.push_back(value);
  }
  const int n = static_cast<int>(values.size());
  std::vector<u8> expected(values.size()), row(values.size());
  Reference::ippiConvert_32s8u_C1R(values.data(), 4 * n, expected.data(), n, {n, 1});
  EXPECT_EQ(narrowOf(variant)(values.data(), 4 * n, row.data(), n, {n, 1}), 0);
  EXPECT_EQ(row, expected);
  for (std::size_t i = 0; i < values.size(); ++i) {
    u8 guarded[3] = {1, 2, 3};
    EXPECT_EQ(narrowOf(variant)(&values[i], 4, guarded + 1, 1, {1, 1}), 0);
    ASSERT_TRUE(guarded[0] == 1 && guarded[1] == expected[i] && guarded[2] == 3) << values[i];
  }
}

/// Pointers before sizes before steps, and nothing written.
void refusalsInOrder(int variant) {
  const int src[4] = {1, 2, 3, 4};
  u8 bytes[4] = {9, 9, 9, 9};
  float numbers[4] = {9, 9, 9, 9};
  Convert<u8>* const narrow = narrowOf(variant);
  Convert<float>* const toFloat = toFloatOf(variant);

  EXPECT_EQ(narrow(nullptr, 0, bytes, 0, {0, 0}), -8);
  EXPECT_EQ(narrow(src, 0, nullptr, 0, {0, 0}), -8);
  EXPECT_EQ(toFloat(nullptr, 0, numbers, 0, {0, 0}), -8);
  EXPECT_EQ(toFloat(src, 0, nullptr, 0, {0, 0}), -8);
  for (const Size bad : {Size{0, 1}, Size{1, 0}, Size{-1, 1}, Size{1, INT_MIN}}) {
    EXPECT_EQ(narrow(src, 0, bytes, 0, bad), -6);
    EXPECT_EQ(toFloat(src, 0, numbers, 0, bad), -6);
  }
  for (const int bad : {0, -1, -4, INT_MIN}) {
    EXPECT_EQ(narrow(src, bad, bytes, 4, {2, 2}), -16);
    EXPECT_EQ(narrow(src, 8, bytes, bad, {2, 2}), -16);
  }
  for (const u8 byte : bytes) EXPECT_EQ(byte, 9);
  for (const float number : numbers) EXPECT_EQ(number, 9.0f);
}

/// The conversion to floats accepts a step of 0, unlike that to bytes: the last row remains.
void floatRowsOnOnePlace(int variant) {
  const int src[6] = {1, 2, 3, 40, 50, 60};
  float dst[4] = {9, 9, 9, 9};
  EXPECT_EQ(toFloatOf(variant)(src, 12, dst, 0, {3, 2}), 0);
  EXPECT_EQ(std::vector<float>(dst, dst + 4), (std::vector<float>{40, 50, 60, 9}));
}

/// Rounding follows the caller's mode, with plain and with streaming stores, and keeps it.
void roundingModes(int variant) {
  constexpr int n = 150;
  alignas(64) int src[n];
  for (int i = 0; i < n; ++i) src[i] = (i % 2 != 0 ? 1 : -1) * (16777217 + 2 * i + (i % 3) * 100000001);
  const int before = std::fegetround();
  for (const int mode : {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO}) {
    for (const int cacheBytes : {0, 1 << 30}) {
      const ForcedCache cache(cacheBytes);
      alignas(64) float expected[n], actual[n];
      std::fesetround(mode);
      const unsigned control = _mm_getcsr() & ~unsigned{_MM_EXCEPT_MASK};
      Reference::ippiConvert_32s32f_C1R(src, 4 * n, expected, 4 * n, {n, 1});
      const int status = toFloatOf(variant)(src, 4 * n, actual, 4 * n, {n, 1});
      const unsigned controlAfter = _mm_getcsr() & ~unsigned{_MM_EXCEPT_MASK};
      std::fesetround(before);
      EXPECT_EQ(status, 0);
      EXPECT_EQ(controlAfter, control);
      for (int i = 0; i < n; ++i) ASSERT_EQ(actual[i], expected[i]) << src[i] << " in mode " << mode;
    }
  }
}

/// Compares a small region at given addresses and steps.
template <class T>
void compareSmall(Convert<T>* reference, Convert<T>* actual, Size roi, int srcShift, int dstShift, int gap) {
  const int srcStep = 4 * roi.width + gap, dstStep = static_cast<int>(sizeof(T)) * roi.width + gap;
  const auto bytesOf = [&](int step, int pixelBytes) {
    return static_cast<std::size_t>((roi.height - 1) * step + roi.width * pixelBytes);
  };
  const Placement srcPlace{Placement::Edge::inside, srcShift}, dstPlace{Placement::Edge::inside, dstShift};
  const Block src(0, bytesOf(srcStep, 4), srcPlace, 1);
  for (std::size_t i = 0; i + 4 <= src.size(); i += 4) {  // every second value within bytes
    if (i % 8 == 0) std::memset(src.data() + i + 1, 0, 3);
  }
  const Block expected(1, bytesOf(dstStep, sizeof(T)), dstPlace, 2);
  const Block result(2, bytesOf(dstStep, sizeof(T)), dstPlace, 2);
  const auto* pixels = reinterpret_cast<const int*>(src.data());
  reference(pixels, srcStep, reinterpret_cast<T*>(expected.data()), dstStep, roi);
  const std::string fault =
      faultOf([&] { actual(pixels, srcStep, reinterpret_cast<T*>(result.data()), dstStep, roi); });
  const auto where = [&] {
    return "region " + std::to_string(roi.width) + " by " + std::to_string(roi.height) + ", shifts " +
           std::to_string(srcShift) + " and " + std::to_string(dstShift) + ", gap " + std::to_string(gap);
  };
  ASSERT_EQ(fault, "") << where();
  ASSERT_TRUE(expected.sameBytes(result)) << expected.difference(result) << "\n" << where();
}

/// Small regions stream if the reported cache has no bytes: at every address of the destination, with lines
/// that are and that are no multiple of a store.
void forcedLines(int variant) {
  for (const int line : {1, 7, 16, 24, 32, 33, 48, 64, 65, 128, 256, 0}) {
    const ForcedCache cache(0, line);
    SCOPED_TRACE("line of " + std::to_string(line) + " bytes");
    for (const int width : {40, 130, 263}) {
      for (int dstShift = 0; dstShift < 64; ++dstShift) {
        for (const int srcShift : {0, 4, 9}) {
          for (const int gap : {0, 4, 5}) {
            compareSmall(Reference::ippiConvert_32s8u_C1R, narrowOf(variant), {width, 2}, srcShift, dstShift,
                         gap);
            compareSmall(Reference::ippiConvert_32s32f_C1R, toFloatOf(variant), {width, 2}, srcShift,
                         dstShift, gap);
            if (testing::Test::HasFatalFailure()) return;
          }
        }
      }
    }
  }
}

/// A run may be converted in place: no pixel is read after its place was written.
void inPlace(int variant) {
  for (int n = 1; n <= 200; ++n) {
    for (const int cacheBytes : {0, 1 << 30}) {
      const ForcedCache cache(cacheBytes);
      std::vector<int> source(static_cast<std::size_t>(n));
      for (int i = 0; i < n; ++i) source[static_cast<std::size_t>(i)] = i * 5 - 300;
      std::vector<float> expected(source.begin(), source.end());
      auto pixels = source;
      toFloatOf(variant)(pixels.data(), 4 * n, reinterpret_cast<float*>(pixels.data()), 4 * n, {n, 1});
      ASSERT_EQ(std::memcmp(pixels.data(), expected.data(), source.size() * 4), 0) << n;

      pixels = source;
      std::vector<u8> bytes(source.size());
      Reference::ippiConvert_32s8u_C1R(source.data(), 4 * n, bytes.data(), n, {n, 1});
      narrowOf(variant)(pixels.data(), 4 * n, reinterpret_cast<u8*>(pixels.data()), n, {n, 1});
      ASSERT_EQ(std::memcmp(pixels.data(), bytes.data(), bytes.size()), 0) << n;
    }
  }
}

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
  CheckRules rules;
  rules.range.moreWidths = {512};
  rules.largeRegions = {{1031, 509}, {4099, 601}};
#define ENTRY(...) CHECK_ENTRY("Convert", rules, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Convert.def"
#undef ENTRY

  registerForEachVariant("Convert", "EdgesInEveryPlace", edgesInEveryPlace);
  registerForEachVariant("Convert", "ValuesAroundTheLimits", valuesAroundTheLimits);
  registerForEachVariant("Convert", "RefusalsInOrder", refusalsInOrder);
  registerForEachVariant("Convert", "FloatRowsOnOnePlace", floatRowsOnOnePlace);
  registerForEachVariant("Convert", "RoundingModes", roundingModes);
  registerForEachVariant("Convert", "ForcedLines", forcedLines);
  registerForEachVariant("Convert", "InPlace", inPlace);
}
