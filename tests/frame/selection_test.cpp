// The variant that is selected for given features.

#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/frame/ExpectedSelection.h"
#include "tests/frame/FakeProcessorTest.h"

namespace Zorvan::Test {

namespace {

using namespace Primitives;

using Selection = FakeProcessorTest;

constexpr std::uint64_t everything = bit(36) - 1 - bit(12);

/// Selects from a mask on a processor whose own mask is already known.
Outcome select(std::uint64_t requested, std::uint64_t processorMask) {
  resetProcessorState();
  cachedFeatureMask = processorMask;
  featureMaskValid = 1;
  Outcome outcome{-1, -1, 0};
  outcome.status = coreSelectVariantFromMask(requested, &outcome.index);
  outcome.enabled = enabledFeatures;
  return outcome;
}

TEST_F(Selection, FollowsTheTableForEveryTier) {
  const Outcome outcomes[] = {
      {0, 5, 0x73081DF}, {0, 4, 0xF081DF}, {0, 4, 0x81DF}, {0, 3, 0x1DF}, {0, 2, 0xDF}, {0, 1, 0x5F},
      {0, 1, 0x3F},      {0, 1, 0x1F},     {0, 0, 0xF},    {0, 0, 0x7},   {36, 0, 0x3}, {36, 0, 0x1},
  };
  for (const Outcome& outcome : outcomes) EXPECT_EQ(select(outcome.enabled, everything), outcome);
}

TEST_F(Selection, ReportsAnIncompleteTier) {
  EXPECT_EQ(select(bit(5), everything), (Outcome{51, 1, 0x3F}));
  EXPECT_EQ(select(0x7300000, everything), (Outcome{51, 5, 0x73081DF}));
  EXPECT_EQ(select(0xF00000, everything), (Outcome{51, 4, 0xF081DF}));
  EXPECT_EQ(select(bit(2), everything), (Outcome{51, 0, 0x7}));
  EXPECT_EQ(select(0x7300000 - bit(26) + 0xDF, everything), (Outcome{0, 2, 0x33000DF}));
}

TEST_F(Selection, OfNothingIsTheOldestVariantUnsupported) {
  EXPECT_EQ(select(0, everything), (Outcome{36, 0, 1}));
  EXPECT_EQ(select(bit(0), everything), (Outcome{36, 0, 1}));
  EXPECT_EQ(select(bit(1), everything), (Outcome{36, 0, 3}));
  EXPECT_EQ(select(bit(10), everything), (Outcome{36, 0, bit(10) | 1}));
}

TEST_F(Selection, ReportsAnUnassignedFeatureAsMissing) {
  for (int i = 36; i <= 62; ++i) {
    EXPECT_EQ(select(bit(i) | 0xDF, everything), (Outcome{49, 2, bit(i) | 0xDF})) << i;
  }
  EXPECT_EQ(select(bit(12) | 0xDF, everything), (Outcome{49, 2, bit(12) | 0xDF}));
}

TEST_F(Selection, KeepsAMissingFeatureInTheRequest) {
  EXPECT_EQ(select(0xDF, 0x5F), (Outcome{49, 2, 0xDF}));
  EXPECT_EQ(select(bit(35) | 0xDF, everything - bit(35)), (Outcome{49, 2, bit(35) | 0xDF}));
}

TEST_F(Selection, WithoutYmmStateDropsAvxAndAvx2) {
  EXPECT_EQ(select(0x81DF, everything - bit(9)), (Outcome{49, 2, 0xDF}));
  EXPECT_EQ(select(0x1DF, everything - bit(9)), (Outcome{49, 2, 0xDF}));
  EXPECT_EQ(select(0x80DF, everything - bit(9)), (Outcome{49, 2, 0xDF}));
  EXPECT_EQ(select(0xDF, everything - bit(9)), (Outcome{0, 2, 0xDF}));
}

TEST_F(Selection, WithoutZmmStateDropsAvx512ButMpxAndIfma) {
  const std::uint64_t h = everything - bit(33);
  EXPECT_EQ(select(0x73081DF, h), (Outcome{49, 4, 0x81DF}));
  EXPECT_EQ(select(0xF081DF, h), (Outcome{49, 4, 0x81DF}));
  for (const int i : {20, 21, 22, 23, 24, 25, 26, 27, 29, 30, 34, 35}) {
    EXPECT_EQ(select(bit(i) | 0x81DF, h), (Outcome{49, 4, 0x81DF})) << i;
  }
  EXPECT_EQ(select(bit(28) | bit(32) | 0x81DF, h), (Outcome{0, 4, bit(28) | bit(32) | 0x81DF}));
}

TEST_F(Selection, UsesAnOverrideUnchanged) {
  for (const std::uint64_t h : {std::uint64_t{0}, everything}) {
    EXPECT_EQ(select(bit(63) | 0x73081DF, h), (Outcome{0, 5, 0x73081DF}));
    EXPECT_EQ(select(bit(63) | bit(40) | 0x81DF, h), (Outcome{0, 4, bit(40) | 0x81DF}));
    EXPECT_EQ(select(bit(63) | bit(8), h), (Outcome{51, 3, 0x1DF}));
    EXPECT_EQ(select(bit(63), h), (Outcome{36, 0, 1}));
  }
}

TEST_F(Selection, OverrideMakesThePreviousEnabledSetTheProcessorsOwn) {
  EXPECT_EQ(coreSetEnabledFeatures(0x5F), 0);
  EXPECT_EQ(enabledFeatures, 0x5Fu);
  std::int32_t index = -1;
  EXPECT_EQ(coreSelectVariantFromMask(bit(63) | 0x81DF, &index), 0);
  EXPECT_EQ(index, 4);
  EXPECT_EQ(processor.cpuidCalls(), 0);
  std::uint64_t reported = 0;
  EXPECT_EQ(coreQueryFeatures(&reported), 0);
  EXPECT_EQ(reported, 0x5Fu);
  EXPECT_EQ(enabledFeatures, 0x81DFu);
}

TEST_F(Selection, AgreesWithThePlainFormOnBoundaries) {
  const std::uint64_t tiers[] = {0,    0x1,  0x3,   0x7,    0xF,      0x1F,     0x3F,
                                 0x5F, 0xDF, 0x1DF, 0x81DF, 0xF081DF, 0x73081DF};
  std::vector<std::uint64_t> masks = {everything, ~std::uint64_t{0}};
  for (const std::uint64_t tier : tiers) {
    masks.push_back(tier);
    for (int i = 0; i < 64; ++i) masks.push_back(tier ^ bit(i));
  }
  std::vector<std::uint64_t> processors = {everything, everything - bit(9), everything - bit(33), 0};
  for (const std::uint64_t tier : tiers) processors.push_back(tier | bit(9) | bit(33));
  for (const std::uint64_t h : processors) {
    for (const std::uint64_t m : masks) {
      ASSERT_EQ(select(m, h), expectedSelection(m, h)) << std::hex << m << " on " << h;
    }
  }
}

TEST_F(Selection, AgreesWithThePlainFormOnRandomMasks) {
  std::mt19937_64 random(20240611);
  for (int i = 0; i < 200000; ++i) {
    // Dense, sparse and half: uniform bits almost never have all features of a tier, or only those of the
    // lowest.
    std::uint64_t m = random(), h = random();
    if (i % 3 == 1) m |= random() | random();
    if (i % 3 == 2) m &= random() & random();
    if (i % 2 == 0) m &= everything;
    if (i % 5 != 0) h |= m;
    h &= everything;
    ASSERT_EQ(select(m, h), expectedSelection(m, h)) << std::hex << m << " on " << h;
  }
}

TEST_F(Selection, ForThisProcessorStoresTheIndex) {
  giveAvx512();
  const std::uint64_t features = mask();
  resetProcessorState();
  EXPECT_EQ(variantIndex, -1);
  EXPECT_EQ(coreSelectVariant(), 0);
  EXPECT_EQ(variantIndex, 5);
  EXPECT_EQ(features & 0x73081DF, 0x73081DFu);
  EXPECT_EQ(enabledFeatures, features);
}

struct Machine {
  const char* name;
  std::uint32_t highestLeaf, leaf1Ecx, leaf1Edx, leaf7Ebx;
  std::uint64_t savedState;
  int status;
  std::int32_t index;
};

constexpr std::uint32_t sse2Edx = 1u << 23 | 1u << 25 | 1u << 26;
constexpr std::uint32_t ssse3Ecx = 1u << 0 | 1u << 9;
constexpr std::uint32_t sse41Ecx = ssse3Ecx | 1u << 19;
constexpr std::uint32_t sse42Ecx = sse41Ecx | 1u << 20 | 1u << 1 | 1u << 25;
constexpr std::uint32_t avxEcx = sse42Ecx | 1u << 26 | 1u << 27 | 1u << 28;
constexpr std::uint32_t avx2Ecx = avxEcx | 1u << 12 | 1u << 22 | 1u << 29 | 1u << 30;
constexpr std::uint32_t avx2Ebx = 1u << 3 | 1u << 5 | 1u << 8;
constexpr std::uint32_t serverEbx = avx2Ebx | 1u << 16 | 1u << 17 | 1u << 28 | 1u << 30 | 1u << 31;
constexpr std::uint32_t coprocessorEbx = avx2Ebx | 1u << 16 | 1u << 26 | 1u << 27 | 1u << 28;

constexpr Machine machines[] = {
    {"no SSE", 1, 0, 1u << 23, 0, 0, 36, 0},
    {"SSE", 1, 0, 1u << 23 | 1u << 25, 0, 0, 36, 0},
    {"SSE2", 2, 0, sse2Edx, 0, 0, 0, 0},
    {"SSE3", 5, 1, sse2Edx, 0, 0, 0, 0},
    {"SSSE3", 10, ssse3Ecx, sse2Edx, 0, 0, 0, 1},
    {"small core with MOVBE", 10, ssse3Ecx | 1u << 22, sse2Edx, 0, 0, 0, 1},
    {"SSE4.1", 10, sse41Ecx, sse2Edx, 0, 0, 0, 1},
    {"SSE4.2", 11, sse42Ecx, sse2Edx, 0, 0, 0, 2},
    {"AVX", 13, avxEcx, sse2Edx, 0, 7, 0, 3},
    {"AVX, YMM state not saved", 13, avxEcx, sse2Edx, 0, 3, 49, 2},
    {"AVX, no OSXSAVE", 13, avxEcx & ~(1u << 27), sse2Edx, 0, 7, 49, 2},
    {"AVX2", 13, avx2Ecx, sse2Edx, avx2Ebx, 7, 0, 4},
    {"AVX2 without BMI2", 13, avx2Ecx, sse2Edx, avx2Ebx & ~(1u << 8), 7, 0, 3},
    {"AVX2, YMM state not saved", 13, avx2Ecx, sse2Edx, avx2Ebx, 1, 49, 2},
    {"AVX2, leaf 7 hidden", 6, avx2Ecx, sse2Edx, avx2Ebx, 7, 0, 3},
    {"AVX-512 coprocessor", 13, avx2Ecx, sse2Edx, coprocessorEbx, 0xE7, 0, 4},
    {"AVX-512 server", 22, avx2Ecx, sse2Edx, serverEbx, 0xE7, 0, 5},
    {"AVX-512 server, ZMM state not saved", 22, avx2Ecx, sse2Edx, serverEbx, 0x07, 49, 4},
    {"AVX-512 server, upper ZMM not saved", 22, avx2Ecx, sse2Edx, serverEbx, 0x67, 49, 4},
    {"AVX-512 server, only XMM state saved", 22, avx2Ecx, sse2Edx, serverEbx, 0x03, 49, 2},
    {"AVX-512 server, no OSXSAVE", 22, avx2Ecx & ~(1u << 27), sse2Edx, serverEbx, 0xE7, 49, 2},
};

TEST_F(Selection, FitsTheMachine) {
  for (const char* vendor : {"GenuineIntel", "AnotherMaker"}) {
    for (const Machine& machine : machines) {
      SCOPED_TRACE(machine.name);
      FakeProcessor machineProcessor;
      machineProcessor.setVendor(vendor);
      machineProcessor.setHighestLeaf(machine.highestLeaf);
      machineProcessor.setLeaf(1, {0x000006F0, 0, machine.leaf1Ecx, machine.leaf1Edx});
      machineProcessor.setLeaf(7, {0, machine.leaf7Ebx, 0, 0});
      machineProcessor.setSavedState(machine.savedState);
      fakeWith(machineProcessor);
      EXPECT_EQ(coreSelectVariant(), vendor[0] == 'G' ? machine.status : 20);
      EXPECT_EQ(variantIndex, machine.index);
      EXPECT_EQ(machineProcessor.faults(), 0);
    }
  }
}

TEST_F(Selection, ComparesTheWholeVendorString) {
  giveAvx512();
  const std::string vendor = "GenuineIntel";
  for (std::size_t i = 0; i < vendor.size(); ++i) {
    std::string other = vendor;
    other[i] = '?';
    processor.setVendor(other.c_str());
    resetProcessorState();
    EXPECT_EQ(coreSelectVariant(), 20) << other;
    EXPECT_EQ(variantIndex, 5);
  }
}

TEST_F(Selection, IsTheSameForThreadsThatSelectAtOnce) {
  giveAvx512();
  for (int round = 0; round < 20; ++round) {
    resetProcessorState();
    std::vector<std::int32_t> seen(4, -1);
    std::vector<std::thread> threads;
    for (std::int32_t& mine : seen) {
      threads.emplace_back([&mine] {
        coreSelectVariant();
        mine = variantIndex;
      });
    }
    for (std::thread& thread : threads) thread.join();
    for (const std::int32_t mine : seen) EXPECT_EQ(mine, 5);
  }
}

}  // namespace

}  // namespace Zorvan::Test
