#include "zorvan/foundation/Status.h"
#include "zorvan/primitives/frame/Processor.h"
#include "zorvan/primitives/frame/Vendor.h"

namespace Zorvan::Primitives {

constinit ProcessWide<std::int32_t> variantIndex{-1};
constinit ProcessWide<std::uint64_t> enabledFeatures{FeatureMmx | FeatureSse | FeatureSse2};

namespace {

enum VariantIndex : std::int32_t {
#define VARIANT(tag, options) IndexOf##tag,
#include "zorvan/primitives/frame/Variants.def"
};

constexpr std::uint64_t avx512ServerFeatures =
    FeatureAvx512F | FeatureAvx512Cd | FeatureAvx512Bw | FeatureAvx512Dq | FeatureAvx512Vl;
constexpr std::uint64_t avx512CoprocessorFeatures =
    FeatureAvx512F | FeatureAvx512Cd | FeatureAvx512Er | FeatureAvx512Pf;

constexpr std::uint64_t mmxTier = FeatureMmx;
constexpr std::uint64_t sseTier = mmxTier | FeatureSse;
constexpr std::uint64_t sse2Tier = sseTier | FeatureSse2;
constexpr std::uint64_t sse3Tier = sse2Tier | FeatureSse3;
constexpr std::uint64_t ssse3Tier = sse3Tier | FeatureSsse3;
constexpr std::uint64_t movbeTier = ssse3Tier | FeatureMovbe;
constexpr std::uint64_t sse41Tier = ssse3Tier | FeatureSse41;
constexpr std::uint64_t sse42Tier = sse41Tier | FeatureSse42;
constexpr std::uint64_t avxTier = sse42Tier | FeatureAvx;
constexpr std::uint64_t avx2Tier = avxTier | FeatureAvx2Group;

struct Tier {
  std::uint64_t chosenBy;  // by all of these
  std::uint64_t features;  // what code of the tier may use
  std::int32_t variant;
};

// A request selects the first tier of whose `chosenBy` it has all features. Every request selects the last
// one.
constexpr Tier tiers[] = {
    {avx512ServerFeatures, avx2Tier | avx512ServerFeatures, IndexOfVariantAvx512},
    {avx512CoprocessorFeatures, avx2Tier | avx512CoprocessorFeatures, IndexOfVariantAvx2},
    {FeatureAvx2Group, avx2Tier, IndexOfVariantAvx2},
    {FeatureAvx, avxTier, IndexOfVariantAvx},
    {FeatureSse42, sse42Tier, IndexOfVariantSse42},
    {FeatureSse41, sse41Tier, IndexOfVariantSsse3},
    {FeatureMovbe, movbeTier, IndexOfVariantSsse3},
    {FeatureSsse3, ssse3Tier, IndexOfVariantSsse3},
    {FeatureSse3, sse3Tier, IndexOfVariantSse2},
    {FeatureSse2, sse2Tier, IndexOfVariantSse2},
    {FeatureSse, sseTier, IndexOfVariantSse2},
    {0, mmxTier, IndexOfVariantSse2},
};

const Tier& tierOf(std::uint64_t request) {
  const Tier* tier = tiers;
  while ((request & tier->chosenBy) != tier->chosenBy) ++tier;
  return *tier;
}

constexpr std::uint64_t unassignedFeatures = 0x7FFFFFF000000000;  // bits 36 to 62
constexpr std::uint64_t needYmmState = FeatureAvx | FeatureAvx2Group;
// The integer multiply-add of AVX-512 is not among them.
constexpr std::uint64_t needZmmState = avx512ServerFeatures | avx512CoprocessorFeatures | FeatureAvx512Vbmi |
                                       FeatureAvx5124Fmaps | FeatureAvx5124Vnniw | FeatureAvx512Vpopcntdq |
                                       FeatureAvx512Bitalg;

/// Removes from the request the features that the operating system does not support, and returns a warning or
/// 0. Other features that the processor lacks stay in the request and count for the tier.
int checkAgainstProcessor(std::uint64_t& request) {
  std::uint64_t processor = 0;
  static_cast<void>(coreBuildFeatureMask(&processor));
  int warning = Ipp::ippStsNoErr;
  if ((request & unassignedFeatures) != 0) warning = Ipp::ippStsUnknownFeature;
  if ((request & needYmmState) != 0 && (processor & FeatureAvxOs) == 0) {
    request &= ~needYmmState;
    warning = Ipp::ippStsFeatureNotSupported;
  }
  if ((request & needZmmState) != 0 && (processor & FeatureAvx512Os) == 0) {
    request &= ~needZmmState;
    warning = Ipp::ippStsFeatureNotSupported;
  }
  // Unassigned features are missing too, so this warning replaces theirs.
  if ((request & ~processor) != 0) warning = Ipp::ippStsFeatureNotSupported;
  return warning;
}

}  // namespace

int coreSetEnabledFeatures(std::uint64_t mask) {
  enabledFeatures = mask;
  return Ipp::ippStsNoErr;
}

int coreSelectVariantFromMask(std::uint64_t requested, std::int32_t* index) {
  *index = IndexOfVariantSse2;
  std::uint64_t request = requested & ~featureOverride;
  int warning = Ipp::ippStsNoErr;
  if ((requested & featureOverride) != 0) {
    // Interface contract: the features enabled before count as the processor's own from now on.
    cachedFeatureMask = std::uint64_t{enabledFeatures};
    featureMaskValid = 1;
  } else {
    warning = checkAgainstProcessor(request);
  }

  const Tier& tier = tierOf(request);
  *index = tier.variant;
  int status = Ipp::ippStsNoErr;
  if ((tier.chosenBy & ~sseTier) == 0) {
    status = Ipp::ippStsNotSupportedCpu;
  } else if ((tier.features & ~request) != 0) {
    status = Ipp::ippStsFeaturesCombination;
  }
  coreSetEnabledFeatures(request | tier.features);
  return warning != Ipp::ippStsNoErr ? warning : status;
}

int coreSelectVariant() {
  std::uint64_t features = 0;
  if (coreQueryFeatures(&features) != Ipp::ippStsNoErr) {
    variantIndex = IndexOfVariantSse2;
    enabledFeatures = sse2Tier;
  }
  std::int32_t index;
  const int status = coreSelectVariantFromMask(features, &index);
  variantIndex = index;

  std::uint32_t leaf0[4];
  coreCpuid(leaf0, 0, 0);
  return isGenuineIntel(leaf0) ? status : Ipp::ippStsNonIntelCpu;
}

}  // namespace Zorvan::Primitives
