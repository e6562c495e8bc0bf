#pragma once

#include <cstdint>

namespace Zorvan::Primitives {
namespace {

/// The index of the lowest set bit of a value other than 0. For the built-in function compilers may emit
/// tzcnt also where the instruction set does not have it, since older processors decode it as bsf, with the
/// same result. A variant must not contain an instruction that its instruction set lacks, so bsf is written
/// as assembly.
inline int lowestSetBit(std::uint32_t bits) {
#ifdef __BMI__
  return __builtin_ctz(bits);
#else
  int place;
  asm("bsf %1, %0" : "=r"(place) : "rm"(bits) : "cc");
  return place;
#endif
}
inline int lowestSetBit(std::uint64_t bits) {
#ifdef __BMI__
  return __builtin_ctzll(bits);
#else
  std::int64_t place;
  asm("bsf %1, %0" : "=r"(place) : "rm"(bits) : "cc");
  return static_cast<int>(place);
#endif
}

/// The index of the highest set bit of a value other than 0. Compilers know the exclusive or as part of bsr.
inline int highestSetBit(std::uint32_t bits) { return __builtin_clz(bits) ^ 31; }
inline int highestSetBit(std::uint64_t bits) { return __builtin_clzll(bits) ^ 63; }

}  // namespace
}  // namespace Zorvan::Primitives
