#pragma once

namespace Zorvan::Primitives {

// A variant is a tag: policies map it to algorithms.
#define VARIANT(tag, options) struct tag;
#include "zorvan/primitives/frame/Variants.def"

/// A list of types. The first is ignored: it precedes the comma of the first expansion.
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
