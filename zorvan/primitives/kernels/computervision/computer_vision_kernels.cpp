// Flood fill for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/common/bodies.h"

#include "zorvan/primitives/kernels/computervision/flood_fill_kernels.h"

namespace Zorvan::Primitives {

#define ENTRY(...) ZORVAN_DEFINE(FloodFill::Bodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/FloodFill.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
