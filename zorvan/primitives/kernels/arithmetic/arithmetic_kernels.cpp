// Sums, differences, products and quotients for one variant. Built once per variant, with its instruction set
// and no more.

#include "zorvan/primitives/kernels/arithmetic/binary/add_kernels.h"
#include "zorvan/primitives/kernels/arithmetic/binary/multiply_kernels.h"
#include "zorvan/primitives/kernels/arithmetic/divide/divide_kernels.h"

namespace Zorvan::Primitives {

#define INSTANTIATE(name, Result, Parameters, Arguments) \
  template Result Routines<ZORVAN_VARIANT>::name Parameters;
#define ENTRY(...) INSTANTIATE(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Arithmetic.def"
#include "zorvan/primitives/frame/entries/Divide.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
