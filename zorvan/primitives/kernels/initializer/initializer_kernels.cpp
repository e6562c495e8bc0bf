// Fill, copy and conversion for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/common/bodies.h"

#include "zorvan/primitives/kernels/initializer/convert/convert_kernels.h"
#include "zorvan/primitives/kernels/initializer/copy/copy_kernels.h"
#include "zorvan/primitives/kernels/initializer/fill/fill_kernels.h"
#include "zorvan/primitives/kernels/initializer/masked/masked_kernels.h"

namespace Zorvan::Primitives {
namespace {

/// The lists of copies and fills hold plain and masked entries.
template <class V>
struct InitializerBodies : Convert::Bodies<V>, Copy::Bodies<V>, Fill::Bodies<V>, Masked::Bodies<V> {};

}  // namespace

#define ENTRY(...) ZORVAN_DEFINE(InitializerBodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Convert.def"
#include "zorvan/primitives/frame/entries/Copy.def"
#include "zorvan/primitives/frame/entries/Set.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
