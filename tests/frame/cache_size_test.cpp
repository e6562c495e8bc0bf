// The largest cache and its lines: from both leaves, and as stored.

#include <algorithm>
#include <ostream>
#include <thread>
#include <vector>

#include "tests/frame/ExpectedCaches.h"
#include "tests/frame/FakeProcessorTest.h"
#include "zorvan/primitives/frame/Leaf2.h"

namespace Zorvan::Test {

namespace {

using namespace Primitives;

struct Answer {
  int status;
  std::int32_t size, line;
  bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
  return out << "status " << answer.status << " size " << answer.size << " line " << answer.line;
}

enum CacheType : std::uint32_t { None = 0, Data = 1, Instruction = 2, Unified = 3 };

Registers cache(std::uint32_t type, std::uint32_t ways, std::uint32_t partitions, std::uint32_t line,
                std::uint32_t sets) {
  return {type | 0x1C000120, (ways - 1) << 22 | (partitions - 1) << 12 | (line - 1), sets - 1, 0};
}

class CacheSize : public FakeProcessorTest {
 protected:
  static CacheProbe known() { return cacheProbe; }

  static Answer sizeThenLine() {
    Answer answer{-1, -2, -2};
    answer.status = coreGetCacheSize(&answer.size);
    coreGetCacheLineSize(&answer.line);
    return answer;
  }

  /// Queries in both orders, each from the initial state, and again as stored: all must agree.
  Answer probe() {
    resetProcessorState();
    Answer lineFirst{-1, -2, -2};
    coreGetCacheLineSize(&lineFirst.line);
    lineFirst.status = coreGetCacheSize(&lineFirst.size);
    resetProcessorState();
    const Answer first = sizeThenLine();
    EXPECT_EQ(first, lineFirst);
    const int calls = processor.cpuidCalls();
    EXPECT_EQ(sizeThenLine(), first);
    EXPECT_EQ(processor.cpuidCalls(), calls);
    EXPECT_EQ(known().cacheProbeState, first.status);
    EXPECT_EQ(known().cacheSizeBytes, first.size);
    EXPECT_EQ(cacheLineBytes, first.line);
    return first;
  }

  Answer probeLeaf2(const Registers& registers) {
    processor.setHighestLeaf(2);
    processor.setLeaf(2, registers);
    return probe();
  }

  Answer probeLeaf4(const std::vector<Registers>& caches) {
    processor.setHighestLeaf(4);
    for (std::uint32_t subleaf = 0; subleaf < 40; ++subleaf) {
      processor.setLeaf(4, subleaf < caches.size() ? caches[subleaf] : Registers{}, subleaf);
    }
    return probe();
  }
};

constexpr Answer unknown = {37, 0, 0};
constexpr Answer unsupported = {36, -1, 0};

TEST_F(CacheSize, RejectsANullPointerBeforeItProbes) {
  EXPECT_EQ(coreGetCacheSize(nullptr), -8);
  EXPECT_EQ(processor.cpuidCalls(), 0);
  EXPECT_EQ(known().cacheProbeState, 1);
}

TEST_F(CacheSize, OfAProcessorWithTooFewLeavesIsUnsupported) {
  for (const std::uint32_t highest : {0u, 1u}) {
    processor.setHighestLeaf(highest);
    EXPECT_EQ(probe(), unsupported);
  }
}

TEST_F(CacheSize, OfAnotherVendorIsUnsupported) {
  processor.setVendor("AnotherMaker");
  EXPECT_EQ(probeLeaf2({0x00000001, 0x0000007B, 0, 0}), unsupported);
  EXPECT_EQ(probeLeaf4({cache(Unified, 8, 1, 64, 1024)}), unsupported);
  processor.setVendor("GenuineIntel");
  EXPECT_EQ(probe(), (Answer{0, 512 << 10, 64}));
}

TEST_F(CacheSize, KnowsEveryDescriptor) {
  const auto sizes = sizesOfDescriptors();
  for (std::uint32_t descriptor = 0; descriptor < 256; ++descriptor) {
    const std::int32_t size = sizes[descriptor];
    const Answer expected = size > 0 ? Answer{0, size, 0} : unknown;
    EXPECT_EQ(probeLeaf2({descriptor << 8 | 1, 0, 0, 0}), expected) << descriptor;
  }
  // The larger of any two is found, at any position.
  for (std::uint32_t a = 0; a < 256; ++a) {
    for (std::uint32_t b = 0; b < 256; b += 3) {
      const std::int32_t size = std::max(sizes[a], sizes[b]);
      resetProcessorState();
      processor.setLeaf(2, {1, 0, a << 16, b});
      std::int32_t actual = -2;
      EXPECT_EQ(coreGetCacheSize(&actual), size > 0 ? 0 : 37);
      ASSERT_EQ(actual, size) << a << " and " << b;
    }
  }
}

TEST_F(CacheSize, FindsADescriptorInEachPlaceOfLeaf2ButTheRoundCount) {
  for (int reg = 0; reg < 4; ++reg) {
    for (int byte = reg == 0 ? 1 : 0; byte < 4; ++byte) {
      Registers registers = {1, 0, 0, 0};
      registers[reg] |= 0x7Du << 8 * byte;
      EXPECT_EQ(probeLeaf2(registers), (Answer{0, 2 << 20, 0})) << reg << ' ' << byte;
    }
  }
  EXPECT_EQ(probeLeaf2({0x665B5001, 0, 0, 0x007A7000}), (Answer{0, 256 << 10, 0}));
  EXPECT_EQ(probeLeaf2({0x5A417D01, 0x00227B78, 0x3D3C3A39, 0x4D4E7F80}), (Answer{0, 16 << 20, 0}));
}

TEST_F(CacheSize, PacksLeaf2IntoSixteenBytesAtMost) {
  const auto lastOf = [](const Registers& registers) { return packLeaf2(registers.data()).last; };
  EXPECT_EQ(lastOf({0x00000001, 0, 0, 0}), 3);
  EXPECT_EQ(lastOf({0x00000001, 0, 2, 0}), 7);
  EXPECT_EQ(lastOf({0x00000001, 2, 3, 4}), 15);
  EXPECT_EQ(lastOf({0x80000001, 2, 3, 4}), 12);
  EXPECT_EQ(lastOf({0x80000001, 0, 0, 0}), 0);
  EXPECT_EQ(lastOf({0x00000002, 2, 3, 4}), 0);
  const Leaf2Descriptors packed = packLeaf2(Registers{0x80000001, 0, 3, 4}.data());
  EXPECT_EQ(packed.words[0], 3u);
  EXPECT_EQ(packed.words[1], 4u);
  EXPECT_EQ(packed.words[2], 0u);
  EXPECT_EQ(packed.words[3], 0u);
}

TEST_F(CacheSize, ReadsOneRoundOfLeaf2Only) {
  for (const std::uint32_t rounds : {0u, 2u, 3u, 0x81u, 0xFFu}) {
    EXPECT_EQ(probeLeaf2({rounds | 0x7D00, 0x7D, 0x7D, 0x7D}), unknown) << rounds;
  }
}

TEST_F(CacheSize, PassesOverRegistersWithoutDescriptors) {
  EXPECT_EQ(probeLeaf2({0x00000001, 0x8000007D, 0, 0}), unknown);
  EXPECT_EQ(probeLeaf2({0x00000001, 0x8000007D, 0, 0x22}), (Answer{0, 512 << 10, 0}));
  EXPECT_EQ(probeLeaf2({0x00000001, 0, 0x80004D4D, 0x80004D4D}), unknown);
  EXPECT_EQ(probeLeaf2({0x00000001, 0x00000000, 0x80004D4D, 0x44}), (Answer{0, 1 << 20, 0}));
}

TEST_F(CacheSize, MissesTheFirstDescriptorWhenTheFirstRegisterHasNone) {
  constexpr std::uint32_t noDescriptors = 0x80004D01;  // one call
  EXPECT_EQ(probeLeaf2({noDescriptors, 0, 0, 0}), unknown);
  EXPECT_EQ(probeLeaf2({noDescriptors, 0x0000004D, 0, 0}), unknown);
  EXPECT_EQ(probeLeaf2({noDescriptors, 0x0000224D, 0, 0}), (Answer{0, 512 << 10, 0}));
  EXPECT_EQ(probeLeaf2({noDescriptors, 0x2200004D, 0, 0}), (Answer{0, 512 << 10, 0}));
  // With any register first.
  EXPECT_EQ(probeLeaf2({noDescriptors, 0, 0x0000004D, 0x00000023}), (Answer{0, 1 << 20, 0}));
  EXPECT_EQ(probeLeaf2({noDescriptors, 0, 0, 0x0000004D}), unknown);
  // All the others are found, up to the last byte.
  EXPECT_EQ(probeLeaf2({noDescriptors, 0x01010101, 0x0101014D, 0x01010101}), (Answer{0, 16 << 20, 0}));
  EXPECT_EQ(probeLeaf2({noDescriptors, 0x01010101, 0x01010101, 0x4D010101}), (Answer{0, 16 << 20, 0}));
}

TEST_F(CacheSize, UsesLeaf2UpToHighestLeaf3AndLeaf4FromHighestLeaf4On) {
  processor.setLeaf(2, {1, 0x44, 0, 0});
  processor.setLeaf(4, cache(Unified, 16, 1, 64, 4096));
  for (const std::uint32_t highest : {2u, 3u}) {
    processor.setHighestLeaf(highest);
    EXPECT_EQ(probe(), (Answer{0, 1 << 20, 0}));
  }
  for (const std::uint32_t highest : {4u, 13u}) {
    processor.setHighestLeaf(highest);
    EXPECT_EQ(probe(), (Answer{0, 4 << 20, 64}));
  }
}

TEST_F(CacheSize, OfLeaf4IsTheLargestThatHoldsData) {
  EXPECT_EQ(probeLeaf4({cache(Data, 8, 1, 64, 64), cache(Instruction, 8, 1, 64, 64),
                        cache(Unified, 4, 1, 64, 1024), cache(Unified, 16, 1, 64, 8192)}),
            (Answer{0, 8 << 20, 64}));
  EXPECT_EQ(probeLeaf4({cache(Data, 8, 1, 64, 64), cache(Instruction, 16, 1, 64, 8192)}),
            (Answer{0, 32 << 10, 64}));
  EXPECT_EQ(probeLeaf4({cache(Unified, 16, 1, 128, 8192), cache(Data, 8, 1, 64, 64)}),
            (Answer{0, 16 << 20, 128}));
  EXPECT_EQ(probeLeaf4({cache(Data, 8, 1, 64, 64), Registers{}, cache(Unified, 16, 1, 64, 8192)}),
            (Answer{0, 32 << 10, 64}));
  EXPECT_EQ(probeLeaf4({cache(31, 1, 1, 32, 1)}), (Answer{0, 32, 32}));  // a type that is not defined
}

/// Every field is stored as one less than it stands for.
TEST_F(CacheSize, OfTheLeastFieldsIsOneByte) {
  EXPECT_EQ(probeLeaf4({cache(Data, 1, 1, 1, 1)}), (Answer{0, 1, 1}));
}

TEST_F(CacheSize, MultipliesAllFieldsOfLeaf4) {
  EXPECT_EQ(probeLeaf4({cache(Unified, 3, 5, 7, 11)}), (Answer{0, 3 * 5 * 7 * 11, 7}));
  EXPECT_EQ(probeLeaf4({cache(Unified, 1024, 1, 64, 1)}), (Answer{0, 1024 * 64, 64}));
  EXPECT_EQ(probeLeaf4({cache(Unified, 1, 1024, 64, 1)}), (Answer{0, 1024 * 64, 64}));
  EXPECT_EQ(probeLeaf4({cache(Unified, 1, 1, 4096, 1)}), (Answer{0, 4096, 4096}));
}

TEST_F(CacheSize, UsesTheLineOfTheFirstOfEqualCaches) {
  EXPECT_EQ(probeLeaf4({cache(Data, 8, 1, 64, 128), cache(Unified, 8, 1, 128, 64)}),
            (Answer{0, 64 << 10, 64}));
  EXPECT_EQ(probeLeaf4({cache(Data, 8, 1, 128, 64), cache(Unified, 8, 1, 64, 128)}),
            (Answer{0, 64 << 10, 128}));
}

TEST_F(CacheSize, WrapsIn32Bits) {
  // 2^32 wraps to 0, 2^31 to a negative number: neither is a cache.
  EXPECT_EQ(probeLeaf4({cache(Unified, 1024, 1, 64, 1 << 16)}), unknown);
  EXPECT_EQ(probeLeaf4({cache(Unified, 1024, 1, 64, 1 << 15)}), unknown);
  EXPECT_EQ(probeLeaf4({cache(Data, 8, 1, 32, 64), cache(Unified, 1024, 1, 64, 1 << 15)}),
            (Answer{0, 16 << 10, 32}));
  EXPECT_EQ(probeLeaf4({cache(Unified, 1024, 1, 64, 1 << 14)}), (Answer{0, 1 << 30, 64}));
}

TEST_F(CacheSize, WithoutADataCacheIsUnknown) {
  EXPECT_EQ(probeLeaf4({}), unknown);
  EXPECT_EQ(probeLeaf4({cache(Instruction, 8, 1, 64, 64)}), unknown);
}

TEST_F(CacheSize, ReadsThirtyTwoSubleaves) {
  std::vector<Registers> caches(31, cache(Instruction, 8, 1, 64, 64));
  caches.push_back(cache(Data, 8, 1, 64, 64));
  caches.push_back(cache(Data, 8, 1, 64, 128));
  EXPECT_EQ(probeLeaf4(caches), (Answer{0, 32 << 10, 64}));
}

TEST_F(CacheSize, AnswersFromWhatItKnows) {
  cacheProbe = CacheProbe{12345, 0};
  cacheLineBytes = 32;
  EXPECT_EQ(sizeThenLine(), (Answer{0, 12345, 32}));
  // The stored line size, if only the size is known.
  cacheLineBytes = -1;
  EXPECT_EQ(sizeThenLine(), (Answer{0, 12345, -1}));
  cacheProbe = CacheProbe{0, 0};
  EXPECT_EQ(sizeThenLine(), (Answer{0, 0, -1}));
  EXPECT_EQ(processor.cpuidCalls(), 0);
}

TEST_F(CacheSize, AnswersASizeThatItKnowsInEachState) {
  for (const int state : {0, 1, 36, 37}) {
    for (const int size : {0, 12345}) {
      resetProcessorState();
      cacheProbe = CacheProbe{size, state};
      cacheLineBytes = 32;
      EXPECT_EQ(sizeThenLine(), (Answer{state, size, 32}));
      EXPECT_EQ(known().cacheProbeState, state);
      EXPECT_EQ(processor.cpuidCalls(), 0);
    }
  }
}

TEST_F(CacheSize, AnswersFromItsState) {
  for (const int state : {36, 37}) {
    resetProcessorState();
    cacheProbe = CacheProbe{-1, state};
    std::int32_t line = -2, size = -2;
    coreGetCacheLineSize(&line);
    EXPECT_EQ(line, 0);
    EXPECT_EQ(coreGetCacheSize(&size), state);
    EXPECT_EQ(size, -1);
    EXPECT_EQ(cacheLineBytes, 0);
  }
  resetProcessorState();
  cacheProbe = CacheProbe{-1, 0};
  EXPECT_EQ(sizeThenLine(), (Answer{0, -1, -1}));
  EXPECT_EQ(processor.cpuidCalls(), 0);
}

TEST_F(CacheSize, KnownLineIsAnsweredWithoutAProbe) {
  cacheLineBytes = 64;
  std::int32_t line = -2;
  coreGetCacheLineSize(&line);
  EXPECT_EQ(line, 64);
  EXPECT_EQ(processor.cpuidCalls(), 0);
  EXPECT_EQ(known().cacheProbeState, 1);
}

TEST_F(CacheSize, IsTheSameForSimultaneousThreads) {
  const Answer expected = probeLeaf4({cache(Data, 8, 1, 32, 64), cache(Unified, 16, 1, 64, 8192)});
  for (int round = 0; round < 50; ++round) {
    resetProcessorState();
    std::vector<Answer> seen(4);
    std::vector<std::thread> threads;
    for (Answer& mine : seen) threads.emplace_back([&mine] { mine = sizeThenLine(); });
    for (std::thread& thread : threads) thread.join();
    for (const Answer& mine : seen) EXPECT_EQ(mine, expected);
  }
}

}  // namespace

}  // namespace Zorvan::Test
