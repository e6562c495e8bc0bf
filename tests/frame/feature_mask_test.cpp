// The feature mask for the answers of the processor.

#include <thread>
#include <vector>

#include "tests/frame/ExpectedFeatures.h"
#include "tests/frame/FakeProcessorTest.h"

namespace Zorvan::Test {

namespace {

using namespace Primitives;

using FeatureMask = FakeProcessorTest;

TEST_F(FeatureMask, IsEmptyForAProcessorWithoutFeatures) { EXPECT_EQ(mask(), 0u); }

TEST_F(FeatureMask, HasOneBitForEachSourceBitAndNoneForOtherBits) {
  for (const std::uint32_t leaf : {1u, 7u, extendedLeaf1}) {
    for (int reg = leaf == 1 ? 1 : 0; reg < 4; ++reg) {  // EAX of leaf 1 is the signature
      for (int sourceBit = 0; sourceBit < 32; ++sourceBit) {
        FakeProcessor single;
        single.setHighestLeaf(7);
        single.setHighestExtendedLeaf(extendedLeaf1);
        single.setBit(leaf, reg, sourceBit);
        fakeWith(single);
        std::uint64_t expected = 0;
        for (const FeatureSource& source : featureSources) {
          if (source.leaf == leaf && source.reg == "abcd"[reg] && source.bit == sourceBit)
            expected = bit(source.maskBit);
        }
        std::uint64_t actual = ~expected;
        ASSERT_EQ(coreBuildFeatureMask(&actual), 1);
        EXPECT_EQ(actual, expected) << "leaf " << leaf << " register " << reg << " bit " << sourceBit;
        EXPECT_EQ(single.faults(), 0);
      }
    }
  }
}

TEST_F(FeatureMask, NamesTheFeaturesByTheirBits) {
  EXPECT_EQ(FeatureMmx, bit(0));
  EXPECT_EQ(FeatureAvxOs, bit(9));
  EXPECT_EQ(FeatureRdrand, bit(13));
  EXPECT_EQ(FeatureAvx2Group, bit(15));
  EXPECT_EQ(FeatureCoprocessorFamily, bit(31));
  EXPECT_EQ(FeatureAvx512Os, bit(33));
  EXPECT_EQ(FeatureAvx512Bitalg, bit(35));
}

TEST_F(FeatureMask, IsFullForAProcessorWithEverything) {
  processor.setHighestLeaf(7);
  processor.setHighestExtendedLeaf(extendedLeaf1);
  processor.setSavedState(0xE7);
  processor.setLeaf(1, {0xB10, ~0u, ~0u, ~0u});
  processor.setLeaf(7, {~0u, ~0u, ~0u, ~0u});
  processor.setLeaf(extendedLeaf1, {~0u, ~0u, ~0u, ~0u});
  EXPECT_EQ(mask(), bit(36) - 1 - bit(12));
}

TEST_F(FeatureMask, HasYmmStateOnlyWithXsaveAvxAndBothStates) {
  for (const bool xsave : {false, true}) {
    for (const bool avx : {false, true}) {
      for (std::uint64_t state = 0; state < 8; ++state) {
        FakeProcessor machine;
        if (xsave) machine.setBit(1, Ecx, 27);
        if (avx) machine.setBit(1, Ecx, 28);
        machine.setSavedState(state);
        fakeWith(machine);
        EXPECT_EQ(mask(), (avx ? bit(8) : 0) | (xsave && avx && (state & 6) == 6 ? bit(9) : 0));
        EXPECT_EQ(machine.xgetbvCalls(), xsave && avx ? 1 : 0);
        EXPECT_EQ(machine.faults(), 0);
      }
    }
  }
}

TEST_F(FeatureMask, HasZmmStateWithXsaveAloneAndAllThreeStates) {
  processor.setHighestLeaf(7);
  processor.setBit(1, Ecx, 27);
  for (std::uint64_t state = 0; state < 256; ++state) {
    processor.setSavedState(state);
    EXPECT_EQ(mask(), (state & 0xE0) == 0xE0 ? bit(33) : 0) << state;
  }
  processor.clearBit(1, Ecx, 27);
  EXPECT_EQ(mask(), 0u);
}

TEST_F(FeatureMask, WithoutLeaf7HasNothingOfIt) {
  giveAvx512();
  processor.setHighestLeaf(6);
  const std::uint64_t withoutLeaf7 = mask();
  EXPECT_EQ(withoutLeaf7 & ~bit(18), 0x6FFFu);  // neither the group of bit 15 nor the ZMM state of bit 33
  processor.setHighestLeaf(7);
  EXPECT_EQ(mask(), 0x6FFFu | bit(15) | 0x7300000u | bit(33));
}

TEST_F(FeatureMask, HasTheAvx2GroupWithAllFourOnly) {
  processor.setHighestLeaf(7);
  for (int parts = 0; parts < 16; ++parts) {
    processor.setLeaf(1, {0, 0, parts & 1 ? 1u << 12 : 0, 0});
    processor.setLeaf(
        7, {0, (parts & 2 ? 1u << 5 : 0) | (parts & 4 ? 1u << 3 : 0) | (parts & 8 ? 1u << 8 : 0), 0, 0});
    EXPECT_EQ(mask(), parts == 15 ? bit(15) : 0) << parts;
  }
}

TEST_F(FeatureMask, ReadsTheExtendedLeafOnlyWhereItExists) {
  processor.setBit(extendedLeaf1, Ecx, 8);
  for (const std::uint32_t highest : {0u, 1u, 0x7FFFFFFFu, 0x80000000u}) {
    processor.setHighestExtendedLeaf(highest);
    EXPECT_EQ(mask(), 0u) << highest;
  }
  for (const std::uint32_t highest : {0x80000001u, 0x80000008u, 0xFFFFFFFFu}) {
    processor.setHighestExtendedLeaf(highest);
    EXPECT_EQ(mask(), bit(18)) << highest;
  }
}

TEST_F(FeatureMask, ReadsTheCoprocessorFamilyFromTheRawSignature) {
  const auto maskOf = [this](std::uint32_t signature) {
    processor.setLeaf(1, {signature, 0, 0, 0});
    return mask();
  };
  for (const std::uint32_t signature : {0xB10u, 0xB1Fu, 0xFFFFFB10u, 0x00A1FB13u}) {
    EXPECT_EQ(maskOf(signature), bit(31)) << signature;
  }
  for (const std::uint32_t signature : {0xB00u, 0xB20u, 0xA10u, 0xF10u, 0x310u, 0xB90u, 0x000B1000u}) {
    EXPECT_EQ(maskOf(signature), 0u) << signature;
  }
}

TEST_F(FeatureMask, IsReadOnceAndThenRemembered) {
  processor.setBit(1, Edx, 23);
  EXPECT_EQ(mask(), 1u);
  EXPECT_EQ(featureMaskValid, 1);
  EXPECT_EQ(cachedFeatureMask, 1u);
  const int calls = processor.cpuidCalls();
  processor.setBit(1, Edx, 25);
  std::uint64_t again = 0;
  EXPECT_EQ(coreBuildFeatureMask(&again), 1);
  EXPECT_EQ(again, 1u);
  EXPECT_EQ(processor.cpuidCalls(), calls);
  cachedFeatureMask = 0x123456789;
  EXPECT_EQ(coreBuildFeatureMask(&again), 1);
  EXPECT_EQ(again, 0x123456789u);
}

TEST_F(FeatureMask, QueryBuildsBeforeItRejectsANullPointer) {
  processor.setBit(1, Edx, 23);
  EXPECT_EQ(coreQueryFeatures(nullptr), -8);
  EXPECT_EQ(featureMaskValid, 1);
  std::uint64_t mask = 0;
  EXPECT_EQ(coreQueryFeatures(&mask), 0);
  EXPECT_EQ(mask, 1u);
}

TEST_F(FeatureMask, IsTheSameForSimultaneousThreads) {
  giveAvx512();
  const std::uint64_t expected = mask();
  for (int round = 0; round < 20; ++round) {
    resetProcessorState();
    std::vector<std::uint64_t> seen(4);
    std::vector<std::thread> threads;
    for (std::uint64_t& mine : seen) threads.emplace_back([&mine] { coreBuildFeatureMask(&mine); });
    for (std::thread& thread : threads) thread.join();
    for (const std::uint64_t mine : seen) EXPECT_EQ(mine, expected);
  }
}

}  // namespace

}  // namespace Zorvan::Test
