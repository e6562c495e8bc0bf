#pragma once

#include "zorvan/primitives/frame/Entries.h"
#include "zorvan/primitives/frame/Variants.h"

namespace Zorvan::Primitives {

/// The routines of the entries in variant V. Each family's source defines them and is compiled once per
/// variant.
template <class V>
struct Routines {
#define DECLARE(name, Result, Parameters, Arguments) static Result name Parameters;
#define ENTRY(...) DECLARE(__VA_ARGS__)
#define COMMON_ENTRY(...)
#include "zorvan/primitives/frame/Entries.def"
#undef DECLARE
};

/// The routines that all variants share.
struct CommonRoutines {
#define DECLARE(name, Result, Parameters, Arguments) static Result name Parameters;
#define ENTRY(...)
#define COMMON_ENTRY(...) DECLARE(__VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef DECLARE
};

}  // namespace Zorvan::Primitives
