// Sums, differences, products and quotients for one variant. Built once per variant, with its instruction set
// and no more.

#include "zorvan/primitives/kernels/arithmetic/binary/arithmetic_kernels.h"
#include "zorvan/primitives/kernels/arithmetic/divide/divide_kernels.h"
#include "zorvan/primitives/kernels/common/bodies.h"

namespace Zorvan::Primitives {

#define ENTRY(...) ZORVAN_DEFINE(Arithmetic::Bodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Arithmetic.def"
#undef ENTRY

#define ENTRY(...) ZORVAN_DEFINE(Division::Bodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Divide.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
