#include <climits>
#include <vector>

#include "tests/support/Cache.h"
#include "tests/support/EntryTests.h"

namespace Zorvan::Test {
namespace {

using Primitives::table;
using Complement = int(const u8* src, int srcStep, u8* dst, int dstStep, Size roi);
using Combine = int(const u8* src1, int src1Step, const u8* src2, int src2Step, u8* dst, int dstStep,
                    Size roi);
using CombineInPlace = Complement;

/// An operation on two images: both forms, and its result for two pixels.
struct Operation {
  const char* name;
  Combine* combine;
  CombineInPlace* inPlace;
  u8 (*of)(u8, u8);
};

std::vector<Operation> operationsOf(int variant) {
  const auto v = static_cast<std::size_t>(1 + variant);
  return {{"and", table.ippiAnd_8u_C1R.routine[v], table.ippiAnd_8u_C1IR.routine[v],
           [](u8 a, u8 b) { return u8(a & b); }},
          {"or", table.ippiOr_8u_C1R.routine[v], table.ippiOr_8u_C1IR.routine[v],
           [](u8 a, u8 b) { return u8(a | b); }},
          {"xor", table.ippiXor_8u_C1R.routine[v], table.ippiXor_8u_C1IR.routine[v],
           [](u8 a, u8 b) { return u8(a ^ b); }}};
}

Complement* complementOf(int variant) { return table.ippiNot_8u_C1R.routine[1 + variant]; }

std::vector<u8> randomBytes(int count, std::uint64_t seed) {
  std::vector<u8> bytes(static_cast<std::size_t>(count));
  fillPixels<u8>(bytes.data(), bytes.size(), Content::random, seed);
  return bytes;
}

/// All pairs of pixels, in rows without and with gaps.
void allPairs(int variant) {
  std::vector<u8> first, second;
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) first.push_back(u8(a)), second.push_back(u8(b));
  }
  for (const Operation& operation : operationsOf(variant)) {
    for (const int width : {256, 251}) {
      std::vector<u8> result(65536, 77);
      EXPECT_EQ(operation.combine(first.data(), 256, second.data(), 256, result.data(), 256, {width, 256}),
                0);
      for (std::size_t i = 0; i < result.size(); ++i) {
        const bool inside = static_cast<int>(i % 256) < width;
        ASSERT_EQ(result[i], inside ? operation.of(first[i], second[i]) : 77) << operation.name << i;
      }
    }
  }
  std::vector<u8> complement(65536);
  EXPECT_EQ(complementOf(variant)(first.data(), 256, complement.data(), 256, {256, 256}), 0);
  for (std::size_t i = 0; i < complement.size(); ++i) ASSERT_EQ(complement[i], 255 - first[i]) << i;
}

/// The destination may be either source, at every place of a line and every length.
void destinationIsASource(int variant) {
  for (const Operation& operation : operationsOf(variant)) {
    for (int width = 1; width <= 300; width += width < 140 ? 1 : 13) {
      const int shift = width * 7 % 64, step = width + width % 3, bytes = shift + 3 * step;
      const auto a = randomBytes(bytes, 1), b = randomBytes(bytes, 2);
      auto expected = a;
      const Size roi{width, 3};
      for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < width; ++c) {
          const auto i = static_cast<std::size_t>(shift + r * step + c);
          expected[i] = operation.of(a[i], b[i]);
        }
      }
      const auto at = [shift](auto& block) { return block.data() + shift; };
      auto one = a, two = a, three = a;
      EXPECT_EQ(operation.combine(at(one), step, at(b), step, at(one), step, roi), 0);
      EXPECT_EQ(operation.combine(at(b), step, at(two), step, at(two), step, roi), 0);
      EXPECT_EQ(operation.inPlace(at(b), step, at(three), step, roi), 0);
      ASSERT_EQ(one, expected) << operation.name << width;
      ASSERT_EQ(two, expected) << operation.name << width;
      ASSERT_EQ(three, expected) << operation.name << width;
    }
  }
}

/// The same pixels with and without gaps between the rows, also of images that are too large to be one row.
void gapsDoNotShow(int variant) {
  for (const Size roi : {Size{64, 50}, Size{61, 50}, Size{32768, 2}, Size{32769, 2}, Size{2, 32768}}) {
    const int count = roi.width * roi.height;
    const auto a = randomBytes(count, 3), b = randomBytes(count, 4);
    for (const Operation& operation : operationsOf(variant)) {
      const int step = roi.width + 5;
      std::vector<u8> tight(a.size()), gaps(static_cast<std::size_t>(step * roi.height), 99);
      EXPECT_EQ(operation.combine(a.data(), roi.width, b.data(), roi.width, tight.data(), roi.width, roi), 0);
      EXPECT_EQ(operation.combine(a.data(), roi.width, b.data(), roi.width, gaps.data(), step, roi), 0);
      for (int r = 0; r < roi.height; ++r) {
        for (int c = 0; c < step; ++c) {
          const auto i = static_cast<std::size_t>(r * roi.width + c);
          ASSERT_EQ(gaps[static_cast<std::size_t>(r * step + c)], c < roi.width ? tight[i] : 99);
          if (c < roi.width) {
            ASSERT_EQ(tight[i], operation.of(a[i], b[i])) << i;
          }
        }
      }
    }
  }
}

/// Rows around the width from which the complement aligns and may stream, at every place of a line, for
/// various answers about the cache.
void forcedCaches(int variant) {
  for (const int bytes : {0, -1, 1000, 1 << 30}) {
    const ForcedCache cache(bytes, 64, 0);
    for (const int width : {255, 256, 257, 319, 320, 383, 384, 385, 447, 448, 511, 512, 600}) {
      for (int shift = 0; shift < 64; ++shift) {
        const int step = width + 3;
        const auto src = randomBytes(3 * step, 5);
        std::vector<u8> dst(static_cast<std::size_t>(64 + 64 + 3 * step), 99);
        u8* const at = dst.data() + (-reinterpret_cast<std::uintptr_t>(dst.data()) & 63) + shift;
        ASSERT_EQ(complementOf(variant)(src.data(), width, at, step, {width, 3}), 0);
        const auto front = static_cast<int>(at - dst.data());
        for (int i = 0; i < static_cast<int>(dst.size()); ++i) {
          const int r = (i - front) / step, c = (i - front) % step;
          const bool inside = i >= front && r < 3 && c < width;
          const u8 expected = inside ? u8(255 - src[static_cast<std::size_t>(r * width + c)]) : u8(99);
          ASSERT_EQ(dst[static_cast<std::size_t>(i)], expected)
              << "cache " << bytes << ", width " << width << ", shift " << shift << ", byte " << i;
        }
      }
    }
  }
}

void complementTwiceRestores(int variant) {
  auto* const routine = table.ippiNot_8u_C1IR.routine[1 + variant];
  for (const int width : {1, 16, 63, 255, 256, 700}) {
    const auto before = randomBytes(3 * width, 6);
    auto image = before;
    EXPECT_EQ(routine(image.data(), width, {width, 3}), 0);
    EXPECT_NE(image, before);
    EXPECT_EQ(routine(image.data(), width, {width, 3}), 0);
    EXPECT_EQ(image, before);
  }
}

/// A source's rows may lie closer together than they are long.
void sourceRowsOverlap(int variant) {
  const u8 src[] = {1, 2, 3, 4, 5, 6};
  u8 dst[12] = {};
  EXPECT_EQ(complementOf(variant)(src, 1, dst, 4, {4, 3}), 0);
  for (int i = 0; i < 12; ++i) EXPECT_EQ(dst[i], 255 - src[i / 4 + i % 4]) << i;
  for (const Operation& operation : operationsOf(variant)) {
    EXPECT_EQ(operation.combine(src, 1, src, 2, dst, 4, {4, 2}), 0);
    for (int i = 0; i < 8; ++i) {
      EXPECT_EQ(dst[i], operation.of(src[i / 4 + i % 4], src[2 * (i / 4) + i % 4])) << operation.name << i;
    }
  }
}

/// Pointers before steps before sizes, and nothing written.
void refusalsInOrder(int variant) {
  const u8 src[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  u8 dst[8] = {9, 9, 9, 9, 9, 9, 9, 9};
  auto* const inPlace = table.ippiNot_8u_C1IR.routine[1 + variant];
  Complement* const complement = complementOf(variant);
  EXPECT_EQ(inPlace(nullptr, 0, {0, 0}), -8);
  EXPECT_EQ(complement(nullptr, 0, dst, 0, {0, 0}), -8);
  EXPECT_EQ(complement(src, 0, nullptr, 0, {0, 0}), -8);
  for (const int bad : {0, -1, INT_MIN}) {
    EXPECT_EQ(inPlace(dst, bad, {0, 0}), -16);
    EXPECT_EQ(complement(src, bad, dst, 4, {0, 0}), -16);
    EXPECT_EQ(complement(src, 4, dst, bad, {-1, 1}), -16);
  }
  for (const Operation& operation : operationsOf(variant)) {
    EXPECT_EQ(operation.combine(nullptr, 0, src, 0, dst, 0, {0, 0}), -8);
    EXPECT_EQ(operation.combine(src, 0, nullptr, 0, dst, 0, {0, 0}), -8);
    EXPECT_EQ(operation.combine(src, 0, src, 0, nullptr, 0, {0, 0}), -8);
    EXPECT_EQ(operation.inPlace(nullptr, 0, dst, 0, {0, 0}), -8);
    EXPECT_EQ(operation.inPlace(src, 0, nullptr, 0, {0, 0}), -8);
    for (const int bad : {0, -1, INT_MIN}) {
      EXPECT_EQ(operation.combine(src, bad, src, 4, dst, 4, {0, 0}), -16);
      EXPECT_EQ(operation.combine(src, 4, src, bad, dst, 4, {1, 0}), -16);
      EXPECT_EQ(operation.combine(src, 4, src, 4, dst, bad, {0, 1}), -16);
      EXPECT_EQ(operation.inPlace(src, bad, dst, 4, {0, 0}), -16);
      EXPECT_EQ(operation.inPlace(src, 4, dst, bad, {0, 0}), -16);
    }
    for (const Size bad : {Size{0, 1}, Size{1, 0}, Size{-1, 1}, Size{1, INT_MIN}}) {
      EXPECT_EQ(operation.combine(src, 4, src, 4, dst, 4, bad), -6);
      EXPECT_EQ(operation.inPlace(src, 4, dst, 4, bad), -6);
      EXPECT_EQ(complement(src, 4, dst, 4, bad), -6);
      EXPECT_EQ(inPlace(dst, 4, bad), -6);
    }
  }
  for (const u8 byte : dst) EXPECT_EQ(byte, 9);
}

}  // namespace
}  // namespace Zorvan::Test

void Zorvan::Test::registerEntryTests() {
  CheckRules rules;
  rules.range.moreWidths = {256, 512};
  rules.largeRegions = {{1031, 509}, {1031, 1021}, {2048, 512}, {32768, 3}};
  rules.imagesMayBeOne = true;
#define ENTRY(...) CHECK_ENTRY("Logical", rules, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Logical.def"
#undef ENTRY

  registerForEachVariant("Logical", "AllPairs", allPairs);
  registerForEachVariant("Logical", "DestinationIsASource", destinationIsASource);
  registerForEachVariant("Logical", "GapsDoNotShow", gapsDoNotShow);
  registerForEachVariant("Logical", "ForcedCaches", forcedCaches);
  registerForEachVariant("Logical", "ComplementTwiceRestores", complementTwiceRestores);
  registerForEachVariant("Logical", "SourceRowsOverlap", sourceRowsOverlap);
  registerForEachVariant("Logical", "RefusalsInOrder", refusalsInOrder);
}
