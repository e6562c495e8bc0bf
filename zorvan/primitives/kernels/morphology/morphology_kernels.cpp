// Erosion, dilation, opening and closing for one variant. Built once per variant, with its instruction set
// and no more.

#include "zorvan/primitives/kernels/common/bodies.h"

#include "zorvan/primitives/kernels/morphology/open_close_kernels.h"

namespace Zorvan::Primitives {
namespace Morphology {
namespace {

template <class V>
struct Bodies {
  static constexpr auto ippiMorphDilateBorder_8u_C1R = morphOnce<V, Dilation, u8>;
  static constexpr auto ippiMorphDilateBorder_32f_C1R = morphOnce<V, Dilation, float>;
  static constexpr auto ippiMorphErodeBorder_8u_C1R = morphOnce<V, Erosion, u8>;
  static constexpr auto ippiMorphErodeBorder_32f_C1R = morphOnce<V, Erosion, float>;
  static constexpr auto ippiMorphOpenBorder_8u_C1R = morphTwice<V, Erosion, Dilation, u8>;
  static constexpr auto ippiMorphOpenBorder_32f_C1R = morphTwice<V, Erosion, Dilation, float>;
  static constexpr auto ippiMorphCloseBorder_8u_C1R = morphTwice<V, Dilation, Erosion, u8>;
  static constexpr auto ippiMorphCloseBorder_32f_C1R = morphTwice<V, Dilation, Erosion, float>;
};

}  // namespace
}  // namespace Morphology

#define ENTRY(...) ZORVAN_DEFINE(Morphology::Bodies, __VA_ARGS__)
#define COMMON_ENTRY(...)
#include "zorvan/primitives/frame/entries/Morphology.def"
#undef ENTRY
#undef COMMON_ENTRY

}  // namespace Zorvan::Primitives
