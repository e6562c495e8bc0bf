// Fill, copy and conversion for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/initializer/convert/convert_kernels.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_kernels.h"
#include "zorvan/primitives/kernels/initializer/fill/fill_kernels.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_kernels.h"

namespace Zorvan::Primitives {

#define INSTANTIATE(name, Result, Parameters, Arguments) \
  template Result Routines<ZORVAN_VARIANT>::name Parameters;
#define ENTRY(...) INSTANTIATE(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Convert.def"
#include "zorvan/primitives/frame/entries/Copy.def"
#include "zorvan/primitives/frame/entries/Set.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
