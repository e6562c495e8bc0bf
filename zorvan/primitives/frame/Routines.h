#pragma once

#include "zorvan/primitives/frame/Entries.h"
#include "zorvan/primitives/frame/Variants.h"

namespace Zorvan::Primitives {

/// The routines that stand behind the entries in variant V. Kernel headers define the members, and each
/// family's source instantiates them, built once per variant.
template <class V>
struct Routines {
#define DECLARE(name, Result, Parameters, Arguments) static Result name Parameters;
#define ENTRY(...) DECLARE(__VA_ARGS__)
#define COMMON_ENTRY(...)
#include "zorvan/primitives/frame/Entries.def"
#undef DECLARE
};

/// The routines that serve all variants alike.
struct CommonRoutines {
#define DECLARE(name, Result, Parameters, Arguments) static Result name Parameters;
#define ENTRY(...)
#define COMMON_ENTRY(...) DECLARE(__VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef DECLARE
};

}  // namespace Zorvan::Primitives
