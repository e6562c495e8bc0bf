#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/support/FakeProcessor.h"
#include "zorvan/primitives/frame/Table.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_leaf2.h"

// The copies that read the caches from leaf 2, on fake processors.

namespace Zorvan::Primitives::Copy {
namespace {

using Test::FakeProcessor;
using Test::Registers;

constexpr std::uint32_t oneRound = 1;

/// A processor whose leaf 2 holds one descriptor.
struct ProcessorWith : FakeProcessor {
  explicit ProcessorWith(std::uint32_t descriptor, const char* vendor = "GenuineIntel") {
    setHighestLeaf(2);
    setVendor(vendor);
    setLeaf(2, {oneRound | descriptor << 8, 0, 0, 0});
    fakeWith(*this);
  }
};

TEST(Leaf2Copy, EveryDescriptorFrom512KibibytesOnStandsForItsSize) {
  int known = 0;
#define LEAF2_CACHE(descriptor, size)                 \
  {                                                   \
    ProcessorWith processor(descriptor);              \
    const CacheAnswer answer = queryLeaf2CacheSize(); \
    EXPECT_TRUE(answer.known) << #descriptor;         \
    EXPECT_EQ(answer.bytes, size) << #descriptor;     \
    ++known;                                          \
  }
#define LEAF2_SMALL_CACHE(descriptor, size)                   \
  {                                                           \
    ProcessorWith processor(descriptor);                      \
    EXPECT_FALSE(queryLeaf2CacheSize().known) << #descriptor; \
  }
#include "zorvan/primitives/frame/Leaf2Caches.def"
  EXPECT_EQ(known, 43);
}

TEST(Leaf2Copy, OtherVendorsAndMoreRoundsAreUnknown) {
  {
    ProcessorWith processor(0xEC, "AuthenticAMD");
    EXPECT_FALSE(queryLeaf2CacheSize().known);
    EXPECT_EQ(processor.cpuidCalls(), 1);
  }
  {
    ProcessorWith processor(0xEC);
    processor.setLeaf(2, {2 | 0xEC00, 0, 0, 0});
    EXPECT_FALSE(queryLeaf2CacheSize().known);
    EXPECT_EQ(processor.cpuidCalls(), 2);
  }
}

TEST(Leaf2Copy, TheLargestCacheOfAllRegistersCounts) {
  ProcessorWith processor(0x43);
  processor.setLeaf(2, {oneRound | 0x43 << 8, 0x00440000, 0x80EC0000, 0x45});
  EXPECT_EQ(queryLeaf2CacheSize().bytes, 2 << 20);
}

/// A copy that reads leaf 2.
struct Copier {
  const char* name;
  int variant;
  int pixelBytes;
  int (*copy)(const unsigned char* src, int srcStep, unsigned char* dst, int dstStep, Size roi);
};

#define COPIER(entry, T, variant, name)                                                        \
  {                                                                                            \
    name, variant, sizeof(T),                                                                  \
        [](const unsigned char* src, int srcStep, unsigned char* dst, int dstStep, Size roi) { \
          return table.entry.routine[1 + variant](reinterpret_cast<const T*>(src), srcStep,    \
                                                  reinterpret_cast<T*>(dst), dstStep, roi);    \
        }                                                                                      \
  }

/// Types of one size share a copy.
constexpr Copier copiers[] = {COPIER(ippiCopy_8u_C1R, u8, 1, "Bytes_VariantSsse3"),
                              COPIER(ippiCopy_16u_C1R, u16, 1, "Words_VariantSsse3"),
                              COPIER(ippiCopy_32f_C1R, float, 1, "Floats_VariantSsse3"),
                              COPIER(ippiCopy_8u_C1R, u8, 2, "Bytes_VariantSse42"),
                              COPIER(ippiCopy_16u_C1R, u16, 2, "Words_VariantSse42"),
                              COPIER(ippiCopy_32f_C1R, float, 2, "Floats_VariantSse42"),
                              COPIER(ippiCopy_32s_C1R, int, 3, "Integers_VariantAvx"),
                              COPIER(ippiCopy_32f_C1R, float, 3, "Floats_VariantAvx")};
#undef COPIER

/// Copies rows of at least `leastBytes` bytes, in whole pixels, and compares.
void expectCopy(const Copier& copier, int leastBytes, int rows, int srcGap, int dstGap, int dstAt) {
  const int width = (leastBytes + copier.pixelBytes - 1) / copier.pixelBytes,
            rowBytes = width * copier.pixelBytes;
  const int srcStep = rowBytes + srcGap, dstStep = rowBytes + dstGap;
  std::vector<unsigned char> src(static_cast<std::size_t>(rows * srcStep));
  for (std::size_t i = 0; i < src.size(); ++i) src[i] = static_cast<unsigned char>(i * 7 + (i >> 8));
  std::vector<unsigned char> actual(static_cast<std::size_t>(rows * dstStep + dstAt + 64), 0x5A);
  std::vector<unsigned char> expected = actual;
  for (int r = 0; r < rows; ++r) {
    std::memcpy(expected.data() + dstAt + r * dstStep, src.data() + r * srcStep,
                static_cast<std::size_t>(rowBytes));
  }
  EXPECT_EQ(copier.copy(src.data(), srcStep, actual.data() + dstAt, dstStep, {width, rows}), 0);
  EXPECT_TRUE(expected == actual) << rowBytes << " x " << rows << " at " << dstAt;
}

class Leaf2CopyVariants : public testing::TestWithParam<Copier> {
 protected:
  void SetUp() override {
    const int variant = GetParam().variant;
    const bool runs = variant == 1   ? __builtin_cpu_supports("ssse3")
                      : variant == 2 ? __builtin_cpu_supports("sse4.2")
                                     : __builtin_cpu_supports("avx");
    if (!runs) GTEST_SKIP() << variantNames[variant] << " does not run on this processor";
  }
};

TEST_P(Leaf2CopyVariants, QueryAgainForEachLargeCopyOnly) {
  ProcessorWith processor(0x43);
  const int before = processor.cpuidCalls();
  expectCopy(GetParam(), 0x20000, 1, 0, 0, 0);
  EXPECT_EQ(processor.cpuidCalls(), before);
  expectCopy(GetParam(), 0x20001, 1, 0, 0, 0);
  EXPECT_EQ(processor.cpuidCalls(), before + 2);
  expectCopy(GetParam(), 0x20001, 1, 0, 0, 0);
  EXPECT_EQ(processor.cpuidCalls(), before + 4);
}

TEST_P(Leaf2CopyVariants, StreamAtAnyPlace) {
  ProcessorWith processor(0x43);
  for (int at = 0; at < 64; at += 3) {
    for (const int bytes : {64, 65, 127, 128, 191, 1000 + at}) {
      expectCopy(GetParam(), bytes, 0x40000 / bytes + 1, at % 7, 3, at);
    }
    expectCopy(GetParam(), 0x40001, 1, 0, 0, at);
  }
}

/// What a processor answers, and how often a large copy asks.
struct UnusualAnswer {
  const char* vendor;
  Registers leaf2;
  int calls;
};

TEST_P(Leaf2CopyVariants, AskNoFurtherThanTheProcessorAnswers) {
  constexpr std::uint32_t known = 0x43 << 8, unknown = 0xFE << 8, noDescriptors = 0x80000000;
  const UnusualAnswer answers[] = {
      {"AuthenticAMD", {oneRound | known, 0, 0, 0}, 1},
      {"Genu----ntel", {oneRound | known, 0, 0, 0}, 1},
      {"GenuineI----", {oneRound | known, 0, 0, 0}, 1},
      {"GenuineIntel", {2 | known, 0, 0, 0}, 2},
      {"GenuineIntel", {oneRound | unknown, 0, 0, 0}, 2},
      {"GenuineIntel", {noDescriptors | oneRound | known, 0x43, noDescriptors, 0}, 2}};
  for (const UnusualAnswer& answer : answers) {
    ProcessorWith processor(0, answer.vendor);
    processor.setLeaf(2, answer.leaf2);
    const int before = processor.cpuidCalls();
    expectCopy(GetParam(), 0x20001, 1, 0, 0, 0);
    EXPECT_EQ(processor.cpuidCalls(), before + answer.calls) << answer.vendor;
  }
}

INSTANTIATE_TEST_SUITE_P(Copy, Leaf2CopyVariants, testing::ValuesIn(copiers),
                         [](const auto& copier) { return copier.param.name; });

}  // namespace
}  // namespace Zorvan::Primitives::Copy
