// The Laplace filter for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/common/bodies.h"

#include "zorvan/primitives/kernels/filtering/laplace_kernels.h"

namespace Zorvan::Primitives {

#define ENTRY(...) ZORVAN_DEFINE(Laplace::Bodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Laplace.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
