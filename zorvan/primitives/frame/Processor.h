#pragma once

// The properties of the processor: its features, the variant selected for the process, its largest cache.
// Each is read from the processor once and stored, since cpuid serialises the processor.
//
// There are no locks. Threads that query first at the same time each read the processor and store equal
// values, so the last store changes nothing. The sources of this header use general registers only: they run
// inside the first call of an entry, whose floating-point arguments are in the vector registers.

#include <cstdint>

// Nothing here is exported. With hidden declarations, code reads a variable without loading its address from
// a table first.
#pragma GCC visibility push(hidden)

namespace Zorvan::Primitives {

/// A process-wide value. Stores release and loads acquire: a thread that reads a flag as set also reads the
/// values that were stored before the flag. On this processor both are plain moves. (The standard's <atomic>
/// includes floating-point code, which does not compile for general registers only.)
template <class T>
class ProcessWide {
  static_assert(__atomic_always_lock_free(sizeof(T), nullptr));

 public:
  constexpr explicit ProcessWide(T initial) : value_(initial) {}
  ProcessWide(const ProcessWide&) = delete;
  ProcessWide& operator=(const ProcessWide&) = delete;

  operator T() const {
    T value;
    __atomic_load(&value_, &value, __ATOMIC_ACQUIRE);
    return value;
  }
  T operator=(T value) {
    __atomic_store(&value_, &value, __ATOMIC_RELEASE);
    return value;
  }

 private:
  alignas(sizeof(T)) T value_;
};

/// The selected variant, read by every stub; -1 until the first call of an entry.
extern ProcessWide<std::int32_t> variantIndex;
/// The result of the last selection: the request and the whole mask of the selected tier.
extern ProcessWide<std::uint64_t> enabledFeatures;
/// The processor's feature mask, once featureMaskValid is 1.
extern ProcessWide<std::uint64_t> cachedFeatureMask;
extern ProcessWide<std::int32_t> featureMaskValid;
/// The size of the cache and the state of its query. One value, so that no thread reads a size with another
/// state.
struct CacheProbe {
  /// The size of the largest data or unified cache; -1 before the query and on processors that are not
  /// supported, 0 if the processor does not report it.
  std::int32_t cacheSizeBytes;
  /// 1: not probed yet; 0: size known; 36: processor not supported; 37: cache size unknown.
  std::int32_t cacheProbeState;
};
extern ProcessWide<CacheProbe> cacheProbe;
/// The line size of the cache that cacheProbe describes.
extern ProcessWide<std::int32_t> cacheLineBytes;

/// The features, each as its bit of the feature mask.
enum Feature : std::uint64_t {
#define FEATURE(name, bit, leaf, reg, sourceBit) name = std::uint64_t{1} << bit,
#define DERIVED_FEATURE(name, bit) name = std::uint64_t{1} << bit,
#include "zorvan/primitives/frame/Features.def"
};

/// In a request: use the mask as it is, whatever features the processor has.
inline constexpr std::uint64_t featureOverride = std::uint64_t{1} << 63;

/// The order in which coreCpuid stores the registers.
enum Register { Eax, Ebx, Ecx, Edx };

/// Stores EAX, EBX, ECX and EDX of a cpuid leaf into regs[0] to regs[3]. Only this and coreXgetbv
/// read the processor: a program that defines both itself can fake any processor.
void coreCpuid(std::uint32_t* regs, std::uint32_t leaf, std::uint32_t subleaf);
/// An extended control register. Faults if the operating system has not enabled the instruction.
std::uint64_t coreXgetbv(std::uint32_t reg);

/// Writes the processor's feature mask. Returns 1, or 0 without a write if there is no cpuid.
int coreBuildFeatureMask(std::uint64_t* mask);
/// As coreBuildFeatureMask, with a status: 36 if there is no cpuid, -8 for a null pointer.
int coreQueryFeatures(std::uint64_t* mask);

/// Selects the variant for the requested features and stores them in enabledFeatures. The index is valid with
/// every status: 49 if the processor lacks a requested feature, 51 if the tier has features that the request
/// lacks, 36 for less than SSE2.
int coreSelectVariantFromMask(std::uint64_t requested, std::int32_t* index);
/// Selects the variant for this processor and stores variantIndex. The status is 20 for a processor of
/// another vendor, for which the variant is the same.
int coreSelectVariant();
int coreSetEnabledFeatures(std::uint64_t mask);

/// Writes the size of the largest data or unified cache. It is unknown with status 36 (size -1) and 37 (size
/// 0). -8 for a null pointer.
int coreGetCacheSize(std::int32_t* size);
/// Writes the line size of that cache, 0 if it is unknown.
void coreGetCacheLineSize(std::int32_t* line);

}  // namespace Zorvan::Primitives

#pragma GCC visibility pop
