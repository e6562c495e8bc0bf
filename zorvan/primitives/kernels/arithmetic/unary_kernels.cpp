// Square, square root and absolute value for one variant. Built once per variant, with its instruction set
// and no more.

#include "zorvan/primitives/kernels/common/bodies.h"

#include "zorvan/primitives/kernels/arithmetic/unary/float_unary_kernels.h"
#include "zorvan/primitives/kernels/arithmetic/unary/scaled_unary_kernels.h"

namespace Zorvan::Primitives::Unary {
namespace {

template <class V>
struct Bodies {
  static constexpr Entry<squarePixels<V, u8>> ippiSqr_8u_C1IRSfs{}, ippiSqr_8u_C1RSfs{};
  static constexpr Entry<squarePixels<V, u16>> ippiSqr_16u_C1IRSfs{}, ippiSqr_16u_C1RSfs{};
  static constexpr Entry<squarePixels<V, s16>> ippiSqr_16s_C1IRSfs{}, ippiSqr_16s_C1RSfs{};
  static constexpr Entry<squareFloats<V>> ippiSqr_32f_C1IR{}, ippiSqr_32f_C1R{};
  static constexpr Entry<rootPixels<V, u8>> ippiSqrt_8u_C1IRSfs{}, ippiSqrt_8u_C1RSfs{};
  static constexpr Entry<rootPixels<V, u16>> ippiSqrt_16u_C1IRSfs{}, ippiSqrt_16u_C1RSfs{};
  static constexpr Entry<rootPixels<V, s16>> ippiSqrt_16s_C1IRSfs{}, ippiSqrt_16s_C1RSfs{};
  static constexpr Entry<rootFloats<V>> ippiSqrt_32f_C1IR{}, ippiSqrt_32f_C1R{};
  static constexpr Entry<runFloats<AbsoluteInPlacePolicy<V>>> ippiAbs_32f_C1IR{};
  static constexpr Entry<runFloats<AbsolutePolicy<V>>> ippiAbs_32f_C1R{};
};

}  // namespace
}  // namespace Zorvan::Primitives::Unary

namespace Zorvan::Primitives {

#define ENTRY(...) ZORVAN_DEFINE(Unary::Bodies, __VA_ARGS__)
#include "zorvan/primitives/frame/entries/Unary.def"
#undef ENTRY

}  // namespace Zorvan::Primitives
