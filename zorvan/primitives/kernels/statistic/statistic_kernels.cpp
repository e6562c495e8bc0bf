// Statistics for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/common/bodies.h"

#include "zorvan/primitives/kernels/statistic/extreme/extreme_kernels.h"
#include "zorvan/primitives/kernels/statistic/masked_extreme/masked_extreme_kernels.h"
#include "zorvan/primitives/kernels/statistic/mean_bodies.h"

namespace Zorvan::Primitives {

// Extremes have no table yet: their headers define the entries.
#define INSTANTIATE(Table, name, Result, Parameters, Arguments) \
  template Result Routines<ZORVAN_VARIANT>::name Parameters;
#define DEFINED_ippiMax_8u_C1R , INSTANTIATE
#define DEFINED_ippiMax_16u_C1R , INSTANTIATE
#define DEFINED_ippiMax_16s_C1R , INSTANTIATE
#define DEFINED_ippiMax_32f_C1R , INSTANTIATE
#define DEFINED_ippiMin_8u_C1R , INSTANTIATE
#define DEFINED_ippiMin_16u_C1R , INSTANTIATE
#define DEFINED_ippiMin_16s_C1R , INSTANTIATE
#define DEFINED_ippiMin_32f_C1R , INSTANTIATE
#define DEFINED_ippiMinMaxIndx_8u_C1MR , INSTANTIATE
#define DEFINED_ippiMinMaxIndx_32f_C1MR , INSTANTIATE
#define SECOND_OF(first, second, ...) second
#define SECOND(...) SECOND_OF(__VA_ARGS__)
#define DEFINE(name, ...) SECOND(DEFINED_##name, ZORVAN_DEFINE, )(Statistic::MeanBodies, name, __VA_ARGS__)
#define ENTRY(...) DEFINE(__VA_ARGS__)
#include "zorvan/primitives/frame/entries/Statistic.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
