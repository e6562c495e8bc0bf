// Statistics for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/statistic/deviation/deviation_kernels.h"
#include "zorvan/primitives/kernels/statistic/extreme/extreme_kernels.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_kernels.h"
#include "zorvan/primitives/kernels/statistic/masked_mean/masked_mean_kernels.h"
#include "zorvan/primitives/kernels/statistic/mean/mean_kernels.h"

namespace Zorvan::Primitives {

#define INSTANTIATE(name, Result, Parameters, Arguments) \
  template Result Routines<ZORVAN_VARIANT>::name Parameters;
#define ENTRY(...) INSTANTIATE(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Statistic.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
