#include "zorvan/foundation/Status.h"
#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Primitives {

constinit ProcessWide<std::uint64_t> cachedFeatureMask{0};
constinit ProcessWide<std::int32_t> featureMaskValid{0};

namespace {

// Every 64-bit processor has the instruction.
constexpr bool processorHasCpuid = true;

constexpr std::uint64_t savedXmmYmm = 0x06;     // bits 1 and 2 of control register 0
constexpr std::uint64_t savedOpmaskZmm = 0xE0;  // bits 5 to 7

constexpr bool hasBit(std::uint32_t word, int bit) { return (word >> bit & 1) != 0; }

bool systemSaves(std::uint64_t state) { return (coreXgetbv(0) & state) == state; }

/// Zeros for a leaf that the processor does not have: cpuid would return the registers of another leaf.
/// Cleared word by word, since a compiler may call memset for an initialiser.
void readLeaf(std::uint32_t* regs, std::uint32_t leaf, bool present) {
  regs[Eax] = regs[Ebx] = regs[Ecx] = regs[Edx] = 0;
  if (present) coreCpuid(regs, leaf, 0);
}

std::uint64_t readFeatureMask() {
  std::uint32_t range[4], extendedRange[4], leaf1[4], leaf7[4], extendedLeaf1[4];
  coreCpuid(range, 0, 0);
  coreCpuid(extendedRange, 0x80000000, 0);
  coreCpuid(leaf1, 1, 0);
  const bool hasLeaf7 = range[Eax] >= 7;
  readLeaf(leaf7, 7, hasLeaf7);
  readLeaf(extendedLeaf1, 0x80000001, extendedRange[Eax] >= 0x80000001);

  std::uint64_t mask = 0;
#define FEATURE(name, bit, leaf, reg, sourceBit) \
  if (hasBit(leaf[reg], sourceBit)) mask |= name;
#define DERIVED_FEATURE(name, bit)
#include "zorvan/primitives/frame/Features.def"

  // Without this bit xgetbv faults.
  const bool hasXgetbv = hasBit(leaf1[Ecx], 27);
  if (hasXgetbv && (mask & FeatureAvx) != 0 && systemSaves(savedXmmYmm)) mask |= FeatureAvxOs;
  if (hasXgetbv && hasLeaf7 && systemSaves(savedOpmaskZmm)) mask |= FeatureAvx512Os;

  const bool hasFma = hasBit(leaf1[Ecx], 12);
  const bool hasAvx2 = hasBit(leaf7[Ebx], 5), hasBmi1 = hasBit(leaf7[Ebx], 3),
             hasBmi2 = hasBit(leaf7[Ebx], 8);
  if (hasFma && hasAvx2 && hasBmi1 && hasBmi2) mask |= FeatureAvx2Group;

  // Family 11, model 1 of the raw signature.
  if ((leaf1[Eax] & 0xFF0) == 0xB10) mask |= FeatureCoprocessorFamily;
  return mask;
}

}  // namespace

int coreBuildFeatureMask(std::uint64_t* mask) {
  if constexpr (!processorHasCpuid) return 0;
  if (featureMaskValid == 0) {
    // The flag last: a thread that reads it as set reads the mask too.
    cachedFeatureMask = readFeatureMask();
    featureMaskValid = 1;
  }
  *mask = cachedFeatureMask;
  return 1;
}

int coreQueryFeatures(std::uint64_t* mask) {
  std::uint64_t built = 0;
  if (coreBuildFeatureMask(&built) == 0) return Ipp::ippStsNotSupportedCpu;
  if (mask == nullptr) return Ipp::ippStsNullPtrErr;
  *mask = built;
  return Ipp::ippStsNoErr;
}

}  // namespace Zorvan::Primitives
