#include "zorvan/foundation/Status.h"
#include "zorvan/primitives/frame/Leaf2.h"
#include "zorvan/primitives/frame/Processor.h"
#include "zorvan/primitives/frame/Vendor.h"

namespace Zorvan::Primitives {

namespace {

enum ProbeState : std::int32_t {
  CacheKnown = 0,
  CacheNotProbed = 1,
  CacheOfUnsupportedProcessor = Ipp::ippStsNotSupportedCpu,
  CacheUnknown = Ipp::ippStsUnknownCacheSize,
};

}  // namespace

constinit ProcessWide<CacheProbe> cacheProbe{CacheProbe{-1, CacheNotProbed}};
constinit ProcessWide<std::int32_t> cacheLineBytes{-1};

namespace {

struct Leaf2Row {
  std::uint32_t descriptor, bytes;
};

constexpr Leaf2Row leaf2Rows[] = {
#define LEAF2_CACHE(descriptor, bytes) {descriptor, bytes},
#include "zorvan/primitives/frame/Leaf2Caches.def"
    {0, 0},
};

/// 0 bytes: no cache found.
struct Cache {
  std::int32_t bytes, lineBytes;
};

/// Leaf 2 does not report the line size.
Cache largestOfLeaf2() {
  std::uint32_t regs[4];
  coreCpuid(regs, 2, 0);
  const Leaf2Row* row = findLeaf2Row(packLeaf2(regs), leaf2Rows);
  return {row == nullptr ? 0 : static_cast<std::int32_t>(row->bytes), 0};
}

/// Leaf 4 describes one cache in each sub-leaf. Of equal caches the first is kept.
Cache largestOfLeaf4() {
  constexpr std::uint32_t noMoreCaches = 0, instructionCache = 2;
  std::int32_t bestBytes = 0, bestLineBytes = 0;
  for (std::uint32_t subleaf = 0; subleaf < 32; ++subleaf) {
    std::uint32_t regs[4];
    coreCpuid(regs, 4, subleaf);
    const std::uint32_t type = regs[Eax] & 0x1F;
    if (type == noMoreCaches) break;
    if (type == instructionCache) continue;
    const std::uint32_t ways = (regs[Ebx] >> 22) + 1;
    const std::uint32_t partitions = (regs[Ebx] >> 12 & 0x3FF) + 1;
    const std::uint32_t lineBytes = (regs[Ebx] & 0xFFF) + 1;
    const std::uint32_t sets = regs[Ecx] + 1;
    const auto bytes = static_cast<std::int32_t>(ways * partitions * lineBytes * sets);
    if (bytes > bestBytes) {
      bestBytes = bytes;
      bestLineBytes = static_cast<std::int32_t>(lineBytes);
    }
  }
  return {bestBytes, bestLineBytes};
}

/// Stores the line size first, so that a thread that reads a known size finds its line size.
void store(ProbeState state, std::int32_t bytes, std::int32_t lineBytes) {
  cacheLineBytes = lineBytes;
  cacheProbe = CacheProbe{bytes, state};
}

void probeCaches() {
  std::uint32_t leaf0[4];
  coreCpuid(leaf0, 0, 0);
  const std::uint32_t highestLeaf = leaf0[Eax];
  if (highestLeaf < 2 || !isGenuineIntel(leaf0)) return store(CacheOfUnsupportedProcessor, -1, 0);
  const Cache largest = highestLeaf < 4 ? largestOfLeaf2() : largestOfLeaf4();
  store(largest.bytes > 0 ? CacheKnown : CacheUnknown, largest.bytes, largest.lineBytes);
}

}  // namespace

int coreGetCacheSize(std::int32_t* size) {
  if (size == nullptr) return Ipp::ippStsNullPtrErr;
  CacheProbe probe = cacheProbe;
  if (probe.cacheSizeBytes < 0) {
    if (probe.cacheProbeState == CacheNotProbed) {
      probeCaches();
      probe = cacheProbe;
    } else if (probe.cacheProbeState != CacheKnown) {
      cacheLineBytes = 0;
    }
  }
  *size = probe.cacheSizeBytes;
  return probe.cacheProbeState;
}

void coreGetCacheLineSize(std::int32_t* line) {
  const CacheProbe probe = cacheProbe;
  if (cacheLineBytes < 0 && probe.cacheSizeBytes < 0) {
    if (probe.cacheProbeState == CacheNotProbed) {
      probeCaches();
    } else if (probe.cacheProbeState != CacheKnown) {
      *line = 0;
      return;
    }
  }
  *line = cacheLineBytes;
}

}  // namespace Zorvan::Primitives
