#include "tests/support/FakeProcessor.h"

#include <cstring>

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {

namespace {

FakeProcessor* fake = nullptr;

constexpr std::uint32_t extendedLeaves = 0x80000000;

}  // namespace

FakeProcessor::FakeProcessor() {
  setHighestLeaf(1);
  setHighestExtendedLeaf(extendedLeaves);
  setVendor("GenuineIntel");
  setLeaf(1, {0x000306A9, 0, 0, 0});
}

void FakeProcessor::setHighestLeaf(std::uint32_t leaf) { leaves_[{0, 0}][0] = leaf; }

void FakeProcessor::setHighestExtendedLeaf(std::uint32_t leaf) { leaves_[{extendedLeaves, 0}][0] = leaf; }

void FakeProcessor::setVendor(const char* vendor) {
  Registers& registers = leaves_[{0, 0}];
  std::memcpy(&registers[1], vendor, 4);
  std::memcpy(&registers[3], vendor + 4, 4);
  std::memcpy(&registers[2], vendor + 8, 4);
}

void FakeProcessor::setLeaf(std::uint32_t leaf, const Registers& registers, std::uint32_t subleaf) {
  leaves_[{leaf, subleaf}] = registers;
}

void FakeProcessor::setBit(std::uint32_t leaf, int reg, int bit) {
  leaves_[{leaf, 0}][reg] |= std::uint32_t{1} << bit;
}

void FakeProcessor::clearBit(std::uint32_t leaf, int reg, int bit) {
  leaves_[{leaf, 0}][reg] &= ~(std::uint32_t{1} << bit);
}

Registers FakeProcessor::answer(std::uint32_t leaf, std::uint32_t subleaf) {
  ++cpuidCalls_;
  const std::uint32_t base = leaf & extendedLeaves;
  if (leaf != base && leaf > leaves_.at({base, 0})[0]) {
    return {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
  }
  const auto found = leaves_.find({leaf, subleaf});
  return found == leaves_.end() ? Registers{} : found->second;
}

std::uint64_t FakeProcessor::answerXgetbv(std::uint32_t reg) {
  ++xgetbvCalls_;
  const bool enabled = (leaves_.at({1, 0})[2] >> 27 & 1) != 0;
  if (!enabled || reg != 0) ++faults_;
  return enabled ? savedState_ : ~std::uint64_t{0};
}

void fakeWith(FakeProcessor& processor) {
  fake = &processor;
  resetProcessorState();
}

void resetProcessorState() {
  using namespace Primitives;
  variantIndex = -1;
  enabledFeatures = 7;
  cachedFeatureMask = 0;
  featureMaskValid = 0;
  cacheProbe = CacheProbe{-1, 1};
  cacheLineBytes = -1;
}

}  // namespace Zorvan::Test

namespace Zorvan::Primitives {

void coreCpuid(std::uint32_t* regs, std::uint32_t leaf, std::uint32_t subleaf) {
  const Test::Registers answer = Test::fake->answer(leaf, subleaf);
  for (int reg = 0; reg < 4; ++reg) regs[reg] = answer[reg];
}

std::uint64_t coreXgetbv(std::uint32_t reg) { return Test::fake->answerXgetbv(reg); }

}  // namespace Zorvan::Primitives
