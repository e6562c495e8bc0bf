#pragma once

namespace Zorvan::Primitives {
namespace {

/// The index of the lowest set bit of a value other than 0. For the built-in function compilers may emit
/// tzcnt also where the instruction set does not have it, since older processors decode it as bsf, with the
/// same result. A variant must not contain an instruction that its instruction set lacks, so bsf is written
/// as assembly.
inline int lowestSetBit(unsigned bits) {
#ifdef __BMI__
  return __builtin_ctz(bits);
#else
  int place;
  asm("bsf %1, %0" : "=r"(place) : "rm"(bits) : "cc");
  return place;
#endif
}

}  // namespace
}  // namespace Zorvan::Primitives
