#pragma once

// What the library knows of the processor: its features, the variant selected for the process, its largest
// cache. Everything is read at most once and kept, since cpuid serialises the processor.
//
// There are no locks. Threads that ask first at the same time each read the processor and store equal
// values, so the last store changes nothing. The sources behind this header use general registers only: they
// run inside the first call of an entry, whose floating-point arguments wait in the vector registers.

#include <cstdint>

// Nothing here leaves the library. Said in the declarations too, so that a reader of a figure loads it
// without asking a table for its address.
#pragma GCC visibility push(hidden)

namespace Zorvan::Primitives {

/// A process-wide figure. A store releases what was stored before it, and a load acquires it: a thread that
/// sees a flag also sees the figure that the flag stands for. On this processor both are plain moves. (The
/// standard's <atomic> drags in floating-point code, which does not compile for general registers only.)
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
/// What the last selection settled on: the request and the whole mask of the chosen tier.
extern ProcessWide<std::uint64_t> enabledFeatures;
/// The processor's feature mask, once featureMaskValid is 1.
extern ProcessWide<std::uint64_t> cachedFeatureMask;
extern ProcessWide<std::int32_t> featureMaskValid;
/// What is known of the cache. One value, so that no thread sees the size without the state that belongs to
/// it.
struct CacheProbe {
  /// The largest data or unified cache; -1 when it was not asked for, or is not to be found out.
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

/// In a request: take the mask as it stands, whatever the processor has.
inline constexpr std::uint64_t featureOverride = std::uint64_t{1} << 63;

/// The order of the registers in what coreCpuid stores.
enum Register { Eax, Ebx, Ecx, Edx };

/// Stores EAX, EBX, ECX and EDX of a cpuid leaf into regs[0] to regs[3]. This and coreXgetbv are the only
/// ways to the processor; a program that defines both itself plays any processor.
void coreCpuid(std::uint32_t* regs, std::uint32_t leaf, std::uint32_t subleaf);
/// An extended control register. Faults where the operating system has not enabled the instruction.
std::uint64_t coreXgetbv(std::uint32_t reg);

/// Writes the processor's feature mask. Returns 1, or 0 without a write where the processor cannot be asked.
int coreBuildFeatureMask(std::uint64_t* mask);
/// As coreBuildFeatureMask, with a status: 36 where the processor cannot be asked, -8 for a null pointer.
int coreQueryFeatures(std::uint64_t* mask);

/// Picks the variant for the requested features and records them in enabledFeatures. The index is valid
/// whatever the status: 49 when the processor lacks a requested feature, 51 when the tier needs more than
/// the request has, 36 for less than SSE2.
int coreSelectVariantFromMask(std::uint64_t requested, std::int32_t* index);
/// Selects the variant for this processor and stores variantIndex. The status is 20 for a processor of
/// another vendor, which gets the same variant all the same.
int coreSelectVariant();
int coreSetEnabledFeatures(std::uint64_t mask);

/// Writes the size of the largest data or unified cache. Status 36 (size -1) and 37 (size 0) say that it is
/// not known, -8 that the pointer is null.
int coreGetCacheSize(std::int32_t* size);
/// Writes the line size of that cache, 0 where it is not known.
void coreGetCacheLineSize(std::int32_t* line);

}  // namespace Zorvan::Primitives

#pragma GCC visibility pop
