// Accumulation under a mask for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/common/bodies.h"

#include "zorvan/primitives/kernels/arithmetic/accumulate/accumulate_kernels.h"

namespace Zorvan::Primitives {

#define ENTRY(...) ZORVAN_DEFINE(Accumulate::Bodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Accumulate.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
