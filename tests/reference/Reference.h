#pragma once

// The definition of every entry in the plainest loop that can be written. Nothing here is shared with the
// kernels. Each family has a source of its own; a new entry is declared here by its line in the list.

#include "zorvan/primitives/frame/Entries.h"

namespace Zorvan::Reference {

using Primitives::_IppiConnectedComp;

#define DECLARE(name, Result, Parameters, Arguments) Result name Parameters;
#define ENTRY(...) DECLARE(__VA_ARGS__)
#define COMMON_ENTRY(...)
#include "zorvan/primitives/frame/Entries.def"
#undef DECLARE

}  // namespace Zorvan::Reference
