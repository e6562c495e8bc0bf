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

/// Copies rows of 8-bit pixels in a variant that reads leaf 2, and compares.
void expectCopy(int variant, int rowBytes, int rows, int srcStep, int dstStep, int dstAt) {
  std::vector<unsigned char> src(static_cast<std::size_t>(rows * srcStep + rowBytes));
  for (std::size_t i = 0; i < src.size(); ++i) src[i] = static_cast<unsigned char>(i * 7 + (i >> 8));
  std::vector<unsigned char> actual(static_cast<std::size_t>(rows * dstStep + rowBytes + dstAt + 64), 0x5A);
  std::vector<unsigned char> expected = actual;
  for (int r = 0; r < rows; ++r) {
    std::memcpy(expected.data() + dstAt + r * dstStep, src.data() + r * srcStep,
                static_cast<std::size_t>(rowBytes));
  }
  EXPECT_EQ(table.ippiCopy_8u_C1R.routine[1 + variant](src.data(), srcStep, actual.data() + dstAt, dstStep,
                                                       {rowBytes, rows}),
            0);
  EXPECT_TRUE(expected == actual) << rowBytes << " x " << rows << " at " << dstAt;
}

class Leaf2CopyVariants : public testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    const bool runs = GetParam() == 1 ? __builtin_cpu_supports("ssse3") : __builtin_cpu_supports("sse4.2");
    if (!runs) GTEST_SKIP() << variantNames[GetParam()] << " does not run on this processor";
  }
};

TEST_P(Leaf2CopyVariants, QueryAgainForEachLargeCopyOnly) {
  ProcessorWith processor(0x43);
  const int before = processor.cpuidCalls();
  expectCopy(GetParam(), 0x20000, 1, 0x20000, 0x20000, 0);
  EXPECT_EQ(processor.cpuidCalls(), before);
  expectCopy(GetParam(), 0x20001, 1, 0x20001, 0x20001, 0);
  EXPECT_EQ(processor.cpuidCalls(), before + 2);
  expectCopy(GetParam(), 0x20001, 1, 0x20001, 0x20001, 0);
  EXPECT_EQ(processor.cpuidCalls(), before + 4);
}

TEST_P(Leaf2CopyVariants, StreamAtAnyPlace) {
  ProcessorWith processor(0x43);
  for (int at = 0; at < 64; ++at) {
    for (const int rowBytes : {64, 65, 127, 128, 191, 1000 + at}) {
      expectCopy(GetParam(), rowBytes, 0x40000 / rowBytes + 1, rowBytes + at % 7, rowBytes + 3, at);
    }
    expectCopy(GetParam(), 0x40001, 1, 0, 0, at);
  }
}

INSTANTIATE_TEST_SUITE_P(Copy, Leaf2CopyVariants, testing::Values(1, 2),
                         [](const auto& variant) { return variantNames[variant.param]; });

}  // namespace
}  // namespace Zorvan::Primitives::Copy
