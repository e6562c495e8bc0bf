#pragma once

// The definition of every entry as a plain loop. Nothing here is shared with the kernels. Each family has its
// own source; the list declares new entries here.

#include "zorvan/primitives/frame/Entries.h"

namespace Zorvan::Reference {

using Primitives::_IppiConnectedComp;

#define DECLARE(name, Result, Parameters, Arguments) Result name Parameters;
#define ENTRY(...) DECLARE(__VA_ARGS__)
#define COMMON_ENTRY(...)
#include "zorvan/primitives/frame/Entries.def"
#undef DECLARE

}  // namespace Zorvan::Reference
