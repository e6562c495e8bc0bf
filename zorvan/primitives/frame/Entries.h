#pragma once

// How an entry is called.
//
// Compile time. Entries.def lists every entry. Each becomes a plain function declared here, a member of
// Routines<V> for each variant V (Routines.h), and a row of the table (Table.h). The members are defined in
// the family's source and compiled once per variant, with that variant's instruction set.
//
// Link time. The table's rows point at the routines of all six variants; word 0 of a row points at the
// entry's first-call routine.
//
// Run time. A stub jumps through its row at `variantIndex`. That is -1 until the first call of any entry, so
// that call goes to word 0: the first-call routine selects the variant for the process, then calls the stub
// again. From then on a call costs two loads and one jump, without a branch or a flag.
//
// Pixel pointers point to the first pixel of the region; each is followed by its step, the stride of the rows
// in bytes. Every entry tests null pointers, then the size and the steps in the order of its family, before
// the first write.

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/PixelTypes.h"
#include "zorvan/primitives/frame/ConnectedComp.h"
#include "zorvan/primitives/frame/MorphSpec.h"

namespace Zorvan::Primitives {

#define DECLARE(name, Result, Parameters, Arguments) \
  Result name Parameters;                            \
  using name##_Routine = Result Parameters;
#define ENTRY(...) DECLARE(__VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef DECLARE

}  // namespace Zorvan::Primitives
