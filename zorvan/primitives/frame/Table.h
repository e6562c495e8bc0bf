#pragma once

#include "zorvan/primitives/frame/Entries.h"
#include "zorvan/primitives/frame/Variants.h"

namespace Zorvan::Primitives {

/// One entry's row: word 0 is its first-call routine, words 1 to 6 are the routines of the variants in the
/// order of their index, the last word is null and never read.
template <class Routine>
struct Row {
  Routine* routine[1 + variantCount + 1];
};

/// All rows, contiguous and read-only after load.
struct Table {
#define MEMBER(name, Result, Parameters, Arguments) Row<name##_Routine> name;
#define ENTRY(...) MEMBER(__VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef MEMBER
};

[[gnu::visibility("hidden")]] extern const Table table;

}  // namespace Zorvan::Primitives
