#pragma once

namespace Zorvan::Primitives {

// A variant is a tag. The kernels' policies say what it stands for.
#define VARIANT(tag, options) struct tag;
#include "zorvan/primitives/frame/Variants.def"

/// A list of types; the first stands before the comma of an expansion and does not count.
template <class Ignored, class... Listed>
struct TypeList;

/// The variants, in the order of their index.
using Variants = TypeList<void
#define VARIANT(tag, options) , tag
#include "zorvan/primitives/frame/Variants.def"
                          >;

/// The names of the variants, in the order of their index.
inline constexpr const char* variantNames[] = {
#define VARIANT(tag, options) #tag,
#include "zorvan/primitives/frame/Variants.def"
};

inline constexpr int variantCount = sizeof(variantNames) / sizeof(variantNames[0]);

}  // namespace Zorvan::Primitives
