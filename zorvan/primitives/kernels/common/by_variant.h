#pragma once

#include "zorvan/primitives/frame/Variants.h"

namespace Zorvan::Primitives {
namespace {

template <class V, class Sse2, class Ssse3, class Sse42, class Avx, class Avx2, class Avx512>
struct ByVariantOf;
#define CHOOSE(tag, choice)                                                            \
  template <class Sse2, class Ssse3, class Sse42, class Avx, class Avx2, class Avx512> \
  struct ByVariantOf<tag, Sse2, Ssse3, Sse42, Avx, Avx2, Avx512> {                     \
    using type = choice;                                                               \
  };
CHOOSE(VariantSse2, Sse2)
CHOOSE(VariantSsse3, Ssse3)
CHOOSE(VariantSse42, Sse42)
CHOOSE(VariantAvx, Avx)
CHOOSE(VariantAvx2, Avx2)
CHOOSE(VariantAvx512, Avx512)
#undef CHOOSE

/// A row of a policy table: of six types, one for each variant in the order of its index, the one for V.
/// Types that the current build has no instructions for may be declared only.
template <class V, class... Six>
using ByVariant = typename ByVariantOf<V, Six...>::type;

}  // namespace
}  // namespace Zorvan::Primitives
