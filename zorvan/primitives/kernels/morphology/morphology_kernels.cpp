// Erosion, dilation, opening and closing for one variant. Built once per variant, with its instruction set
// and no more.

#include "zorvan/primitives/kernels/morphology/open_close_kernels.h"

namespace Zorvan::Primitives {

#define INSTANTIATE(name, Result, Parameters, Arguments) \
  template Result Routines<ZORVAN_VARIANT>::name Parameters;
#define ENTRY(...) INSTANTIATE(__VA_ARGS__)
#define COMMON_ENTRY(...)
#include "zorvan/primitives/frame/entries/Morphology.def"
#undef ENTRY
#undef COMMON_ENTRY

}  // namespace Zorvan::Primitives
