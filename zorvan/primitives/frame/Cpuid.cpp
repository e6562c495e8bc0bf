// Only these two functions: a program that defines them itself is linked without this source.

#include "zorvan/primitives/frame/Processor.h"

namespace Zorvan::Primitives {

void coreCpuid(std::uint32_t* regs, std::uint32_t leaf, std::uint32_t subleaf) {
  asm volatile("cpuid"
               : "=a"(regs[Eax]), "=b"(regs[Ebx]), "=c"(regs[Ecx]), "=d"(regs[Edx])
               : "a"(leaf), "c"(subleaf));
}

std::uint64_t coreXgetbv(std::uint32_t reg) {
  std::uint32_t low, high;
  asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(reg));
  return std::uint64_t{high} << 32 | low;
}

}  // namespace Zorvan::Primitives
