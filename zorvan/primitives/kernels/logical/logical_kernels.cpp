// Bitwise logic and comparison for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/common/bodies.h"

#include "zorvan/primitives/kernels/logical/bitwise/logical_kernels.h"
#include "zorvan/primitives/kernels/logical/compare/compare_kernels.h"

namespace Zorvan::Primitives {

#define ENTRY(...) ZORVAN_DEFINE(Compare::Bodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Compare.def"
#undef ENTRY

#define ENTRY(...) ZORVAN_DEFINE(Bitwise::Bodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Logical.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
