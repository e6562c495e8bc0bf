#include "zorvan/primitives/frame/Table.h"

#include "zorvan/primitives/frame/Processor.h"
#include "zorvan/primitives/frame/Routines.h"

namespace Zorvan::Primitives {

// Each stub passes on the arguments exactly as the caller passed them. A compiler might extend small
// arguments or move those on the stack first, so the stub is written in assembly; rax and r11 hold no
// argument. A sanitizer's checks of the two addresses would overwrite arguments.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"
#define STUB(name, Result, Parameters, Arguments)                                        \
  __attribute__((naked, aligned(16), no_sanitize("undefined"))) Result name Parameters { \
    asm("movslq %c0(%%rip), %%rax\n\t"                                                   \
        "leaq %c1(%%rip), %%r11\n\t"                                                     \
        "jmp *(%%r11,%%rax,8)"                                                           \
        :                                                                                \
        : "i"(&variantIndex), "i"(&table.name.routine[1]));                              \
  }
#define ENTRY(...) STUB(__VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef STUB
#pragma GCC diagnostic pop

namespace {

// The caller of an entry needs no status of the selection: a variant is selected with every status.
void coreFirstCall() { static_cast<void>(coreSelectVariant()); }

#define FIRST_CALL(name, Result, Parameters, Arguments) \
  Result name##_firstCall Parameters {                  \
    coreFirstCall();                                    \
    return Primitives::name Arguments;                  \
  }
#define ENTRY(...) FIRST_CALL(__VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef FIRST_CALL

/// `routineOf(tag)` returns the routine of a variant, which the type of the pointer `tag` states.
template <class Routine, class RoutineOf, class... V>
constexpr Row<Routine> rowOf(Routine* firstCall, RoutineOf routineOf, TypeList<void, V...>*) {
  return {{firstCall, routineOf(static_cast<V*>(nullptr))..., nullptr}};
}

}  // namespace

constinit const Table table = {
#define ROW(OfVariant, name, ...) \
  rowOf(                          \
      &name##_firstCall, []<class V>(V*) { return &OfVariant::name; }, static_cast<Variants*>(nullptr)),
#define ENTRY(...) ROW(Routines<V>, __VA_ARGS__)
#define COMMON_ENTRY(...) ROW(CommonRoutines, __VA_ARGS__)
#include "zorvan/primitives/frame/Entries.def"
#undef ROW
};

}  // namespace Zorvan::Primitives
