#pragma once

namespace Zorvan::Primitives {
namespace {

/// The place of the lowest set bit of a figure that is not 0. For its built-in function the compiler may take
/// the encoding of tzcnt where no tier promises that instruction, since processors without it read another
/// one with the same result. A variant holds no instruction that its tier lacks, whatever it does there: the
/// older instruction is spelled out.
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
