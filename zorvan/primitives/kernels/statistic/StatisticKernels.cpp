// Statistics for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/statistic/DeviationKernels.h"
#include "zorvan/primitives/kernels/statistic/ExtremeKernels.h"
#include "zorvan/primitives/kernels/statistic/MaskedExtremeKernels.h"
#include "zorvan/primitives/kernels/statistic/MaskedMeanKernels.h"
#include "zorvan/primitives/kernels/statistic/MeanKernels.h"

namespace Zorvan::Primitives {

#define INSTANTIATE(name, Result, Parameters, Arguments) \
  template Result Routines<ZORVAN_VARIANT>::name Parameters;
#define ENTRY(...) INSTANTIATE(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Statistic.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
