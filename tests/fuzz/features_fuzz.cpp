// The queries about the processor, in any order and on processors that no one has built: the feature mask,
// the selected variant and the largest cache, each beside its plain form.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/frame/ExpectedCaches.h"
#include "tests/frame/ExpectedSelection.h"
#include "tests/fuzz/Finding.h"
#include "tests/support/FakeProcessor.h"
#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Test {
namespace {

using namespace Primitives;

constexpr std::uint64_t tierMasks[] = {0,    0x1,  0x3,   0x7,    0xF,      0x1F,     0x3F,
                                       0x5F, 0xDF, 0x1DF, 0x81DF, 0xF081DF, 0x73081DF};

/// The answers of a processor, which the plain forms read.
struct Machine {
  std::uint32_t highestLeaf, highestExtendedLeaf;
  std::string vendor;
  Registers leaf1, leaf2, leaf7, extended;
  std::array<Registers, 34> leaf4;
  std::uint64_t savedState;

  bool isGenuine() const { return vendor == "GenuineIntel"; }
  bool has(std::uint32_t leaf) const {
    return leaf >= extendedLeaf1 ? highestExtendedLeaf >= leaf : highestLeaf >= leaf;
  }

  void install(FakeProcessor& processor) const {
    processor.setHighestLeaf(highestLeaf);
    processor.setHighestExtendedLeaf(highestExtendedLeaf);
    processor.setVendor(vendor.c_str());
    processor.setLeaf(1, leaf1);
    processor.setLeaf(2, leaf2);
    processor.setLeaf(7, leaf7);
    processor.setLeaf(extendedLeaf1, extended);
    for (std::uint32_t subleaf = 0; subleaf < leaf4.size(); ++subleaf) {
      processor.setLeaf(4, leaf4[subleaf], subleaf);
    }
    processor.setSavedState(savedState);
  }

  std::uint64_t featureMask() const {
    const auto isSet = [](std::uint32_t word, int at) { return (word >> at & 1) != 0; };
    std::uint64_t mask = 0;
    for (const FeatureSource& source : featureSources) {
      const Registers& registers = source.leaf == 1 ? leaf1 : source.leaf == 7 ? leaf7 : extended;
      const auto reg = static_cast<std::size_t>(source.reg - 'a');
      if (has(source.leaf) && isSet(registers[reg], source.bit)) mask |= bit(source.maskBit);
    }
    const bool canAskForState = isSet(leaf1[Ecx], 27);
    if (canAskForState && isSet(leaf1[Ecx], 28) && (savedState & 0x06) == 0x06) mask |= bit(9);
    if (canAskForState && has(7) && (savedState & 0xE0) == 0xE0) mask |= bit(33);
    const bool isAvx2 = has(7) && isSet(leaf7[Ebx], 5) && isSet(leaf7[Ebx], 3) && isSet(leaf7[Ebx], 8);
    if (isAvx2 && isSet(leaf1[Ecx], 12)) mask |= bit(15);
    if ((leaf1[Eax] >> 8 & 0xF) == 0xB && (leaf1[Eax] >> 4 & 0xF) == 1) mask |= bit(31);
    return mask;
  }

  struct Cache {
    int status;
    std::int32_t bytes, lineBytes;
  };

  Cache largestCache() const {
    if (!isGenuine() || highestLeaf < 2) return {36, -1, 0};
    const Cache largest = highestLeaf < 4 ? ofLeaf2() : ofLeaf4();
    return {largest.bytes > 0 ? 0 : 37, largest.bytes, largest.lineBytes};
  }

 private:
  /// The registers with descriptors, one byte after the other; the first byte is never read.
  Cache ofLeaf2() const {
    static const auto sizes = sizesOfDescriptors();
    if (leaf2[Eax] % 256 != 1) return {0, 0, 0};
    std::vector<std::uint32_t> bytes;
    for (const std::uint32_t word : leaf2) {
      for (int i = 0; i < 4 && word != 0 && word < 0x80000000; ++i) bytes.push_back(word >> 8 * i & 255);
    }
    std::int32_t most = 0;
    for (std::size_t i = 1; i < bytes.size(); ++i) most = std::max(most, sizes[bytes[i]]);
    return {0, most, 0};
  }

  Cache ofLeaf4() const {
    Cache most{0, 0, 0};
    for (std::size_t i = 0; i < 32; ++i) {
      const auto [eax, ebx, ecx, edx] = leaf4[i];
      if (eax % 32 == 0) break;
      if (eax % 32 == 2) continue;
      const std::uint64_t line = ebx % 4096 + 1, partitions = ebx / 4096 % 1024 + 1,
                          ways = ebx / 4096 / 1024 + 1, sets = std::uint64_t{ecx} + 1;
      const auto bytes =
          static_cast<std::int32_t>(static_cast<std::uint32_t>(line * partitions * ways * sets));
      if (bytes > most.bytes) most = {0, bytes, static_cast<std::int32_t>(line)};
    }
    return most;
  }
};

class Queries {
 public:
  explicit Queries(FuzzedDataProvider& input) : input_(input) { fakeWith(processor_); }

  void run() {
    drawMachine();
    if (input_.ConsumeIntegralInRange(0, 3) == 0) drawProbe();
    for (int steps = 0; steps < 20 && input_.remaining_bytes() > 0; ++steps) {
      step();
      compareState();
    }
    requireSame("queries that fault", processor_.faults(), 0);
  }

 private:
  /// A few bits of a word, all of them, or any.
  std::uint32_t anyWord() {
    switch (input_.ConsumeIntegralInRange(0, 3)) {
      case 0:
        return 0;
      case 1:
        return ~(1U << input_.ConsumeIntegralInRange(0, 31));
      case 2:
        return 1U << input_.ConsumeIntegralInRange(0, 31);
      default:
        return input_.ConsumeIntegral<std::uint32_t>();
    }
  }
  Registers anyRegisters() {
    constexpr std::uint32_t allSet = 0xFFFFFFFF;
    const int kind = input_.ConsumeIntegralInRange(0, 3);
    if (kind == 0) return {};
    if (kind == 1) return {allSet, allSet, allSet, allSet};
    Registers registers;
    for (std::uint32_t& word : registers) word = anyWord();
    return registers;
  }

  void drawMachine() {
    constexpr std::uint32_t leaves[] = {1, 2, 3, 4, 6, 7, 8, 13, 0xFFFFFFFF};
    constexpr std::uint32_t extendedLeaves[] = {0,          1,          0x7FFFFFFF, 0x80000000,
                                                0x80000001, 0x80000008, 0xFFFFFFFF};
    machine_.highestLeaf = input_.PickValueInArray(leaves);
    machine_.highestExtendedLeaf = input_.PickValueInArray(extendedLeaves);
    machine_.vendor = "GenuineIntel";
    if (input_.ConsumeIntegralInRange(0, 7) == 0) {
      machine_.vendor[input_.ConsumeIntegralInRange<std::size_t>(0, 11)] ^=
          static_cast<char>(1 << input_.ConsumeIntegralInRange(0, 6));
    }
    machine_.leaf1 = anyRegisters();
    if (input_.ConsumeIntegralInRange(0, 7) == 0)
      machine_.leaf1[Eax] = 0xB10 + input_.ConsumeIntegralInRange(0U, 31U);
    machine_.leaf2 = anyRegisters();
    if (input_.ConsumeBool()) machine_.leaf2[Eax] = (machine_.leaf2[Eax] & ~255U) | 1;
    machine_.leaf7 = anyRegisters();
    machine_.extended = anyRegisters();
    machine_.savedState = input_.ConsumeIntegral<std::uint8_t>();
    machine_.leaf4 = {};
    const bool many = input_.ConsumeIntegralInRange(0, 3) == 0;
    const std::size_t caches =
        many ? machine_.leaf4.size() : input_.ConsumeIntegralInRange<std::size_t>(0, 4);
    for (std::uint32_t i = 0; i < caches; ++i) {
      constexpr std::uint32_t data = 1, instructions = 2, lastRead = 31;
      const Registers late{i < lastRead ? instructions : data, 0x01C0003F, i, 0};
      machine_.leaf4[i] = many ? late : anyRegisters();
    }
    machine_.install(processor_);
  }

  /// What an earlier query may have left behind.
  void drawProbe() {
    constexpr std::int32_t states[] = {0, 1, 36, 37}, sizes[] = {-1, 0, 1 << 20};
    constexpr std::int32_t lines[] = {-1, 0, 64};
    cacheBytes_ = input_.PickValueInArray(sizes);
    cacheState_ = input_.PickValueInArray(states);
    lineBytes_ = input_.PickValueInArray(lines);
    cacheProbe = CacheProbe{cacheBytes_, cacheState_};
    cacheLineBytes = lineBytes_;
  }

  std::uint64_t anyRequest() {
    if (input_.ConsumeIntegralInRange(0, 3) == 0) return input_.ConsumeIntegral<std::uint64_t>();
    std::uint64_t request = input_.PickValueInArray(tierMasks);
    for (int flips = input_.ConsumeIntegralInRange(0, 3); flips > 0; --flips) {
      request ^= bit(input_.ConsumeIntegralInRange(0, 63));
    }
    return request;
  }

  void build() {
    if (isBuilt_) return;
    isBuilt_ = true;
    mask_ = machine_.featureMask();
  }
  void probe() {
    const Machine::Cache cache = machine_.largestCache();
    cacheState_ = cache.status;
    cacheBytes_ = cache.bytes;
    lineBytes_ = cache.lineBytes;
  }
  Outcome select(std::uint64_t request) {
    const bool isOverride = request >> 63 != 0;
    if (isOverride) {
      mask_ = enabled_;
      isBuilt_ = true;
    }
    if (!isOverride) build();
    const Outcome outcome = expectedSelection(request, mask_);
    enabled_ = outcome.enabled;
    return outcome;
  }

  void step() {
    switch (input_.ConsumeIntegralInRange(0, 8)) {
      case 0: {
        build();
        std::uint64_t mask = ~mask_;
        requireSame("the result of a build", coreBuildFeatureMask(&mask), 1);
        return requireSame("the built mask", mask, mask_);
      }
      case 1: {
        build();
        const bool isNull = input_.ConsumeBool();
        std::uint64_t mask = ~mask_;
        requireSame("the status of a query", coreQueryFeatures(isNull ? nullptr : &mask), isNull ? -8 : 0);
        return requireSame("the mask of a query", mask, isNull ? ~mask_ : mask_);
      }
      case 2: {
        const std::uint64_t request = anyRequest();
        const Outcome expected = select(request);
        std::int32_t index = -1;
        requireSame("the status of a selection", coreSelectVariantFromMask(request, &index), expected.status);
        return requireSame("the selected index", index, expected.index);
      }
      case 3: {
        build();
        const Outcome expected = select(mask_);
        index_ = expected.index;
        return requireSame("the status of the processor's selection", coreSelectVariant(),
                           machine_.isGenuine() ? expected.status : 20);
      }
      case 4:
        enabled_ = anyRequest();
        return requireSame("the status of the new features", coreSetEnabledFeatures(enabled_), 0);
      case 5: {
        if (cacheBytes_ < 0 && cacheState_ == 1) {
          probe();
        } else if (cacheBytes_ < 0 && cacheState_ != 0) {
          lineBytes_ = 0;
        }
        std::int32_t bytes = -2;
        requireSame("the status of the cache", coreGetCacheSize(&bytes), cacheState_);
        return requireSame("the size of the cache", bytes, cacheBytes_);
      }
      case 6: {
        const bool isUnknown = lineBytes_ < 0 && cacheBytes_ < 0;
        if (isUnknown && cacheState_ == 1) probe();
        const bool isRefused = isUnknown && (cacheState_ == 36 || cacheState_ == 37) && lineBytes_ < 0;
        std::int32_t bytes = -2;
        coreGetCacheLineSize(&bytes);
        return requireSame("the size of a line", bytes, isRefused ? 0 : lineBytes_);
      }
      case 7:
        return requireSame("the status for a null pointer", coreGetCacheSize(nullptr), -8);
      default:
        drawMachine();  // what was read before is not read again
    }
  }

  void compareState() const {
    requireSame("the variant", std::int32_t{variantIndex}, index_);
    requireSame("the enabled features", std::uint64_t{enabledFeatures}, enabled_);
    requireSame("whether the mask is known", std::int32_t{featureMaskValid}, isBuilt_ ? 1 : 0);
    if (isBuilt_) requireSame("the known mask", std::uint64_t{cachedFeatureMask}, mask_);
    const CacheProbe known = cacheProbe;
    requireSame("the state of the probe", known.cacheProbeState, cacheState_);
    requireSame("the known size", known.cacheSizeBytes, cacheBytes_);
    requireSame("the known line", std::int32_t{cacheLineBytes}, lineBytes_);
  }

  FuzzedDataProvider& input_;
  FakeProcessor processor_;
  Machine machine_{};
  std::int32_t index_ = -1;
  std::uint64_t enabled_ = 7, mask_ = 0;
  bool isBuilt_ = false;
  std::int32_t cacheState_ = 1, cacheBytes_ = -1, lineBytes_ = -1;
};

}  // namespace
}  // namespace Zorvan::Test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  Zorvan::Test::Queries(input).run();
  return 0;
}
