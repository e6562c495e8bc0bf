// The Laplace filter for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/filtering/laplace_kernels.h"

namespace Zorvan::Primitives {

#define INSTANTIATE(name, Result, Parameters, Arguments) \
  template Result Routines<ZORVAN_VARIANT>::name Parameters;
#define ENTRY(...) INSTANTIATE(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Laplace.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
