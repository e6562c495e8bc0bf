// Statistics for one variant. Built once per variant, with its instruction set and no more.

#include "zorvan/primitives/kernels/common/bodies.h"

#include "zorvan/primitives/kernels/statistic/extreme_bodies.h"
#include "zorvan/primitives/kernels/statistic/mean_bodies.h"

namespace Zorvan::Primitives::Statistic {
namespace {

template <class V>
struct Bodies : ExtremeBodies<V>, MeanBodies<V> {};

}  // namespace
}  // namespace Zorvan::Primitives::Statistic

namespace Zorvan::Primitives {

#define ENTRY(...) ZORVAN_DEFINE(Statistic::Bodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Statistic.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
