// The Laplace filter in every variant beside the direct sum over the kernel: every border word, every small
// size, regions around the vectors' widths. The pixels that a word declares readable are there and no more,
// and the work memory has the reported size, between unreadable pages and at odd addresses.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "tests/support/EntryTests.h"
#include "tests/support/Limits.h"
#include "zorvan/primitives/kernels/filtering/laplace_plan.h"

namespace Zorvan::Test {
namespace {

template <class T>
using LaplaceRoutine = int(const T*, int, T*, int, Size, int, int, T, u8*);

template <class T>
struct LaplaceEntry {
  LaplaceRoutine<T>* reference;
  const Primitives::Row<LaplaceRoutine<T>>* row;
};

struct LaplaceCase {
  Size roi;
  int mask;
  int border;
  int moreSrcBytes, moreDstBytes;
  Placement srcPlacement, dstPlacement;
  bool workAtEnd;  ///< of readable memory, else at its start
  Content content;
  std::uint64_t seed;

  std::string text() const {
    return "region " + std::to_string(roi.width) + " by " + std::to_string(roi.height) + ", mask " +
           std::to_string(mask) + ", border word " + std::to_string(border) + ", seed " +
           std::to_string(seed);
  }
};

/// The source with exactly the surroundings that the word declares readable, the destination and the work
/// memory.
template <class T>
class LaplaceCall {
 public:
  LaplaceCall(const LaplaceCase& c, int side)
      : case_(c),
        reach_(c.mask == 33 ? 1 : 2),
        whole_{c.roi.width + reachOf(0x40) + reachOf(0x80), c.roi.height + reachOf(0x10) + reachOf(0x20)},
        blocks{{side, bytesOf(whole_, c.moreSrcBytes), c.srcPlacement, c.seed},
               {2 + side, bytesOf(c.roi, c.moreDstBytes), c.dstPlacement, c.seed},
               {4 + side,
                workBytes(c),
                {c.workAtEnd ? Placement::Edge::back : Placement::Edge::front, 0},
                c.seed}} {
    for (int y = 0; y < whole_.height; ++y) {
      fillPixels<T>(src.data() + y * stepOf(whole_, c.moreSrcBytes), static_cast<std::size_t>(whole_.width),
                    c.content, c.seed + static_cast<std::uint64_t>(y));
    }
  }

  int run(LaplaceRoutine<T>* routine, T value) {
    const int srcStep = stepOf(whole_, case_.moreSrcBytes);
    const auto* first = src.data() + reachOf(0x10) * srcStep + reachOf(0x40) * pixelBytes;
    return routine(reinterpret_cast<const T*>(first), srcStep, reinterpret_cast<T*>(dst.data()),
                   stepOf(case_.roi, case_.moreDstBytes), case_.roi, case_.mask, case_.border, value,
                   work.data());
  }

  T result(int x, int y) const {
    T value;
    std::memcpy(&value, dst.data() + y * stepOf(case_.roi, case_.moreDstBytes) + x * pixelBytes,
                sizeof value);
    return value;
  }
  void setResult(int x, int y, T value) {
    std::memcpy(dst.data() + y * stepOf(case_.roi, case_.moreDstBytes) + x * pixelBytes, &value,
                sizeof value);
  }

 private:
  static constexpr int pixelBytes = sizeof(T);

  static int stepOf(Size size, int moreBytes) { return size.width * pixelBytes + moreBytes; }
  static std::size_t bytesOf(Size size, int moreBytes) {
    return static_cast<std::size_t>((size.height - 1) * stepOf(size, moreBytes) + size.width * pixelBytes);
  }
  static std::size_t workBytes(const LaplaceCase& c) {
    constexpr int type = std::is_same_v<T, u8> ? 1 : std::is_same_v<T, s16> ? 7 : 13;
    int bytes = 0;
    Reference::ippiFilterLaplaceBorderGetBufferSize(c.roi, c.mask, type, type, 1, &bytes);
    return static_cast<std::size_t>(bytes);
  }

  /// Readable pixels on the side of a bit. Where a small region ignores single bits, nothing is.
  int reachOf(int bit) const {
    const int extent = 2 * reach_ + 1;
    const bool ignored =
        (case_.border & 0xF0) != 0xF0 && (case_.roi.width <= extent || case_.roi.height <= extent);
    return (case_.border & bit) != 0 && !ignored ? reach_ : 0;
  }

  LaplaceCase case_;
  int reach_;
  Size whole_;

 public:
  Block blocks[3];
  Block &src = blocks[0], &dst = blocks[1], &work = blocks[2];
};

/// The bits of a NaN sum are not documented: they are replaced in the results.
void forgiveNaN(LaplaceCall<float>& expected, LaplaceCall<float>& actual, Size roi) {
  for (int y = 0; y < roi.height; ++y) {
    for (int x = 0; x < roi.width; ++x) {
      if (std::isnan(expected.result(x, y)) && std::isnan(actual.result(x, y))) {
        actual.setResult(x, y, expected.result(x, y));
      }
    }
  }
}

template <class T>
bool agreeOn(const LaplaceEntry<T>& entry, int variant, const LaplaceCase& c, T value) {
  LaplaceCall<T> expected(c, 0), actual(c, 1);
  const int expectedStatus = expected.run(entry.reference, value);
  const std::string difference = differenceOf(
      expectedStatus, [&] { return actual.run(entry.row->routine[1 + variant], value); }, expected.blocks,
      actual.blocks,
      [&](const Block& want, Block& got) {
        if (&want == &expected.work) return sameAround(want, got);
        if constexpr (std::is_same_v<T, float>) {
          if (&want == &expected.dst) forgiveNaN(expected, actual, c.roi);
        }
        return want.sameBytes(got);
      });
  if (difference.empty()) return true;
  ADD_FAILURE() << difference << "\n  " << c.text();
  return false;
}

/// The valid words: both types with every set of sides in memory, all sides without a type, and negative
/// words of both types with all sides in memory, some and none.
std::vector<int> borderWords() {
  std::vector<int> words = {240, -15, -10, 0x56 - 0x100, 0x01 - 0x1000};
  for (int sides = 0; sides < 16; ++sides) {
    for (const int type : {1, 6}) words.push_back(sides << 4 | type);
  }
  return words;
}

Placement anyPlacement(Random& random) {
  switch (random.below(3)) {
    case 0:
      return {Placement::Edge::front, 0};
    case 1:
      return {Placement::Edge::back, 0};
    default:
      return {Placement::Edge::inside, random.below(64)};
  }
}

template <class T>
LaplaceCase anyCase(Size roi, int mask, int border, Random& random) {
  const auto moreBytes = [&] { return random.below(3) == 0 ? 0 : random.below(80); };
  return {roi,
          mask,
          border,
          moreBytes(),
          moreBytes(),
          anyPlacement(random),
          anyPlacement(random),
          random.below(2) != 0,
          drawnContent(random, allContents),
          random.next()};
}

template <class T>
T anyValue(Random& random) {
  return random.below(2) != 0 ? random.oneOf(specialValues<T>()) : randomValue<T>(random);
}

/// Every border word at every size up to a little more than the kernels', which decides how a region is cut.
template <class T>
void smallRegions(const LaplaceEntry<T>& entry, int variant) {
  Random random(options().seed);
  const int rounds = options().level == Level::full ? 4 : 1;
  for (const int mask : {33, 55}) {
    for (const int border : borderWords()) {
      for (int width = 1; width <= 9; ++width) {
        for (int height = 1; height <= 9; ++height) {
          for (int i = 0; i < rounds; ++i) {
            if (!agreeOn(entry, variant, anyCase<T>({width, height}, mask, border, random),
                         anyValue<T>(random)))
              return;
          }
        }
      }
    }
  }
}

/// Widths around every vector, with any border word, and heights of a band and more.
template <class T>
void wideRegions(const LaplaceEntry<T>& entry, int variant) {
  Random random(options().seed + 1);
  const bool full = options().level == Level::full;
  const auto words = borderWords();
  std::vector<int> widths;
  for (int width = 10; width <= (full ? 300 : 150); width += full ? 1 : 1 + random.below(3))
    widths.push_back(width);
  for (const int mask : {33, 55}) {
    for (const int width : widths) {
      for (int i = 0; i < (full ? 10 : 3); ++i) {
        const Size roi{width, 1 + random.below(random.below(3) == 0 ? 140 : 11)};
        if (!agreeOn(entry, variant, anyCase<T>(roi, mask, random.oneOf(words), random), anyValue<T>(random)))
          return;
      }
    }
    for (const int width : {1, 2, 3, 4, 5, 6, 7}) {
      const Size roi{width, 400};
      if (!agreeOn(entry, variant, anyCase<T>(roi, mask, random.oneOf(words), random), anyValue<T>(random)))
        return;
    }
  }
}

/// Every width at every offset, in rows that lie alike: with any surroundings and place of the source, and
/// without surroundings against either page.
template <class T>
void everyOffset(const LaplaceEntry<T>& entry, int variant) {
  const auto words = borderWords();
  bool agrees = true;
  const auto agreeAt = [&](LaplaceCase c, int offset, Random& random) {
    c.moreDstBytes = -c.roi.width * static_cast<int>(sizeof(T)) & 63;
    c.dstPlacement = {Placement::Edge::inside, offset};
    agrees = agrees && agreeOn(entry, variant, c, anyValue<T>(random));
  };
  forEachOffset([&](int width, int offset, Random& random) {
    for (const int mask : {33, 55}) {
      agreeAt(anyCase<T>({width, drawnHeight(random, width)}, mask, random.oneOf(words), random), offset,
              random);
      for (const auto edge : {Placement::Edge::front, Placement::Edge::back}) {
        const int types[] = {1, 6};
        LaplaceCase c = anyCase<T>({width, 1 + random.below(9)}, mask, random.oneOf(types), random);
        c.srcPlacement = {edge, 0};
        agreeAt(c, offset, random);
      }
    }
  });
}

/// Any case at all.
template <class T>
void drawnCases(const LaplaceEntry<T>& entry, int variant) {
  const auto words = borderWords();
  bool agrees = true;
  forEachDraw([&](Random& random) {
    const int masks[] = {33, 55};
    const LaplaceCase c = anyCase<T>(drawnSize(random), random.oneOf(masks), random.oneOf(words), random);
    agrees = agrees && agreeOn(entry, variant, c, anyValue<T>(random));
  });
}

/// Results large enough for streaming stores, whose rows begin anywhere in a vector.
template <class T>
void largeRegions(const LaplaceEntry<T>& entry, int variant) {
  constexpr int e = sizeof(T);
  Random random(options().seed + 2);
  const auto words = borderWords();
  const int repeats = options().level == Level::full ? 8 : 2;
  for (int i = 0; i < repeats; ++i) {
    const Size roi{4200 / e + random.below(100), 1100};
    LaplaceCase c = anyCase<T>(roi, i % 2 == 0 ? 33 : 55, random.oneOf(words), random);
    c.moreDstBytes = -roi.width * e & 63;
    c.dstPlacement = {Placement::Edge::inside, random.below(32) * e % 64};
    if (!agreeOn(entry, variant, c, anyValue<T>(random))) return;
  }
}

/// Large results whose rows have one vector and one and a half reaches, and begin a reach before a vector's
/// boundary: between the vectors at their ends is room for no other one with its neighbours.
template <class T>
void largeRegionsOfShortRows(const LaplaceEntry<T>& entry, int variant) {
  constexpr int e = sizeof(T), reach = 2;
  Random random(options().seed + 3);
  const bool full = options().level == Level::full;
  for (const int vectorBytes : full ? std::vector{16, 32, 64} : std::vector{64}) {
    const int width = vectorBytes / e + reach + 1;
    const Size roi{width, 0x700000 / (width * e) + 1};
    LaplaceCase c = anyCase<T>(roi, 55, 1, random);
    c.moreSrcBytes = 0;
    c.srcPlacement = {Placement::Edge::front, 0};
    c.moreDstBytes = -width * e & 63;  // rows that begin at the same place in a line
    c.dstPlacement = {Placement::Edge::inside, vectorBytes - reach * e};
    c.content = Content::random;
    if (!agreeOn(entry, variant, c, anyValue<T>(random))) return;
  }
}

/// A single pixel in a field of zeros produces the kernel itself.
template <class T>
void oneSet(const LaplaceEntry<T>& entry, int variant, T pixel, int mask, const std::vector<int>& expected) {
  const int extent = mask == 33 ? 3 : 5;
  std::vector<T> src(15 * 15), dst(15 * 15);
  src[7 * 15 + 7] = pixel;
  std::vector<u8> work(4096);
  constexpr int step = 15 * sizeof(T);
  EXPECT_EQ(entry.row->routine[1 + variant](src.data(), step, dst.data(), step, {15, 15}, mask, 1, T(0),
                                            work.data()),
            0);
  for (int y = 0; y < 15; ++y) {
    for (int x = 0; x < 15; ++x) {
      const int r = y - 7 + extent / 2, c = x - 7 + extent / 2;
      const bool inside = r >= 0 && r < extent && c >= 0 && c < extent;
      const int want = inside ? expected[static_cast<std::size_t>(r * extent + c)] : 0;
      EXPECT_EQ(dst[static_cast<std::size_t>(y * 15 + x)], T(want)) << "column " << x << ", row " << y;
    }
  }
}

template <class T>
void knownPictures(const LaplaceEntry<T>& entry, int variant) {
  const auto same = [](int n, int around, int middle) {
    std::vector<int> values(static_cast<std::size_t>(n * n), around);
    values[static_cast<std::size_t>(n * n / 2)] = middle;
    return values;
  };
  if constexpr (std::is_same_v<T, u8>) {
    oneSet<T>(entry, variant, 255, 33, same(3, 0, 255));
    auto cross = same(5, 0, 255);
    for (const int at : {7, 11, 13, 17}) cross[static_cast<std::size_t>(at)] = 255;
    oneSet<T>(entry, variant, 255, 55, cross);
  } else if constexpr (std::is_same_v<T, s16>) {
    oneSet<T>(entry, variant, 32767, 33, same(3, -32767, 32767));
    oneSet<T>(entry, variant, -32768, 33, same(3, 32767, -32768));
  } else {
    oneSet<T>(entry, variant, 1, 33, same(3, -1, 8));
    oneSet<T>(entry, variant, 1, 55,
              {-1, -3, -4, -3, -1, -3, 0, 6, 0, -3, -4, 6, 20, 6, -4, -3, 0, 6, 0, -3, -1, -3, -4, -3, -1});
  }
  // A field of tens in a border of zeros.
  std::vector<T> src(12 * 9, T(10)), dst(12 * 9);
  std::vector<u8> work(4096);
  constexpr int step = 12 * sizeof(T);
  EXPECT_EQ(
      entry.row->routine[1 + variant](src.data(), step, dst.data(), step, {12, 9}, 33, 6, T(0), work.data()),
      0);
  for (int y = 0; y < 9; ++y) {
    for (int x = 0; x < 12; ++x) {
      const int edges = (x == 0 || x == 11) + (y == 0 || y == 8);
      EXPECT_EQ(dst[static_cast<std::size_t>(y * 12 + x)], T(edges == 0 ? 0 : edges == 1 ? 30 : 50));
    }
  }
}

/// Every combination of bad arguments has the status of the first that is tested, and writes nothing.
template <class T>
void refusals(const LaplaceEntry<T>& entry, int variant) {
  for (int null = -1; null < 3; ++null) {
    for (const Size roi : {Size{6, 6}, Size{0, 2}, Size{5, 0}, Size{-1, 2}}) {
      for (const int mask : {33, 55, 35, 0, -1}) {
        for (const int border : {1, 6, 240, 0, 3, 5, 7, 16, 241, 246, 255, 256, 257, 496, -1, -15}) {
          T src[12 * 12], expected[64] = {}, actual[64] = {};
          u8 work[4096];
          std::fill(std::begin(src), std::end(src), T(3));
          const auto call = [&](T* dst, LaplaceRoutine<T>* routine) {
            return routine(null == 0 ? nullptr : src + 2 * 12 + 2, 12 * sizeof(T), null == 1 ? nullptr : dst,
                           6 * sizeof(T), roi, mask, border, T(1), null == 2 ? nullptr : work);
          };
          EXPECT_EQ(call(expected, entry.reference), call(actual, entry.row->routine[1 + variant]))
              << "null " << null << ", region " << roi.width << " by " << roi.height << ", mask " << mask
              << ", border " << border;
          EXPECT_EQ(std::memcmp(expected, actual, sizeof actual), 0);
        }
      }
    }
  }
}

/// All rows of the source at one address.
template <class T>
void zeroStep(const LaplaceEntry<T>& entry, int variant) {
  T row[40], expected[40 * 12], actual[40 * 12];
  u8 work[16384];
  fillPixels<T>(row, 40, Content::random, 3);
  for (const int mask : {33, 55}) {
    for (const int border : {1, 6}) {
      EXPECT_EQ(entry.reference(row, 0, expected, 40 * sizeof(T), {40, 12}, mask, border, T(4), work), 0);
      EXPECT_EQ(
          entry.row->routine[1 + variant](row, 0, actual, 40 * sizeof(T), {40, 12}, mask, border, T(4), work),
          0);
      EXPECT_EQ(std::memcmp(expected, actual, sizeof actual), 0);
    }
  }
}

template <class T>
void registerLaplace(const char* name, LaplaceRoutine<T>* reference,
                     const Primitives::Row<LaplaceRoutine<T>>& row) {
  const LaplaceEntry<T> entry{reference, &row};
  const auto add = [&](const char* type, void (*body)(const LaplaceEntry<T>&, int)) {
    registerForEachVariant("Laplace", std::string(name) + "/" + type,
                           [entry, body](int variant) { body(entry, variant); });
  };
  registerDrawnCases("Laplace", std::string(name) + "/DrawnCases",
                     [entry](int variant) { drawnCases(entry, variant); });
  add("SmallRegions", smallRegions);
  add("WideRegions", wideRegions);
  if (limitsAreLowered) {
    add("EveryOffset", everyOffset);
  } else {
    add("LargeRegions", largeRegions);
    add("LargeRegionsOfShortRows", largeRegionsOfShortRows);
  }
  add("KnownPictures", knownPictures);
  add("Refusals", refusals);
  add("ZeroStep", zeroStep);
}

using SizeRoutine = int(Size, int, int, int, int, int*);

void registerLaplace(const char* name, SizeRoutine* reference, const Primitives::Row<SizeRoutine>& row) {
  registerForEachVariant("Laplace", name, [reference, &row](int variant) {
    const auto routine = row.routine[1 + variant];
    for (const Size roi : {Size{1, 1}, Size{3, 100}, Size{4, 100}, Size{100, 3}, Size{100, 4}, Size{5, 6},
                           Size{6, 5}, Size{640, 480}, Size{100000, 5}, Size{0x7FFFFFFF, 2},
                           Size{0x7FFFFFFF, 0x7FFFFFFF}, Size{0, 3}, Size{3, -1}}) {
      for (const int mask : {33, 55, 35}) {
        for (const int srcType : {1, 7, 13, 5}) {
          for (const int dstType : {1, 7, 13, 5}) {
            for (const int channels : {1, 3, 4, 2, 0}) {
              int expected = -77, actual = -77;
              EXPECT_EQ(routine(roi, mask, srcType, dstType, channels, &actual),
                        reference(roi, mask, srcType, dstType, channels, &expected));
              EXPECT_EQ(actual, expected)
                  << roi.width << " by " << roi.height << " mask " << mask << " type " << srcType;
            }
          }
        }
      }
    }
    EXPECT_EQ(routine({5, 5}, 33, 1, 1, 1, nullptr), -8);
    int bytes = 0;
    routine({640, 480}, 55, 1, 1, 1, &bytes);
    EXPECT_EQ(bytes, 3872 + 12 * 1280 + 32);
  });
}

}  // namespace

void registerEntryTests() {
#define REGISTER(name, ...) registerLaplace(#name, &Reference::name, Primitives::table.name);
#define ENTRY(...) REGISTER(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Laplace.def"
#undef ENTRY
#undef REGISTER
}

}  // namespace Zorvan::Test
