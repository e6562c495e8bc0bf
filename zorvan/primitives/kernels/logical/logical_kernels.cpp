// Bitwise logic and comparison for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/logical/bitwise/logical_kernels.h"
#include "zorvan/primitives/kernels/logical/compare/compare_kernels.h"

namespace Zorvan::Primitives {

#define INSTANTIATE(name, Result, Parameters, Arguments) \
  template Result Routines<ZORVAN_VARIANT>::name Parameters;
#define ENTRY(...) INSTANTIATE(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Compare.def"
#include "zorvan/primitives/frame/entries/Logical.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
