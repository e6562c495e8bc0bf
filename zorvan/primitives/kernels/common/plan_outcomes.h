#pragma once

// Records which outcomes of the plans the tests have reached. Kernels pass each outcome through
// `ZORVAN_PLANNED`, which in the library is only the value. In the kernels with lowered limits it also
// records the outcome for the tests, which then report every outcome that no case has reached.

#include <cstdint>
#include <type_traits>

namespace Zorvan::Primitives {
#ifdef ZORVAN_LOWERED_LIMITS

namespace {

/// A plan's name as a template argument.
template <int length>
struct PlanName {
  char text[length];
  consteval PlanName(const char (&name)[length]) {
    for (int i = 0; i < length; ++i) text[i] = name[i];
  }
};

}  // namespace

/// The outcomes of one plan in one variant; an element of the list of all plans that have been called.
struct PlanRecord {
  static constexpr int most = 12;

  const char* variant;
  const char* plan;
  bool isBoolean;
  const char* outcomes[most];  ///< for enumerations: texts that end in the name of the outcome, if it has one
  bool reached[most];
  bool isListed;
  PlanRecord* next;
};
extern PlanRecord* firstPlanRecord;  // defined by the tests

namespace {

#define ZORVAN_TEXT_OF(name) #name
#define ZORVAN_TEXT_OF_VALUE(name) ZORVAN_TEXT_OF(name)

template <auto value>
constexpr const char* textOfValue() {
  return __PRETTY_FUNCTION__;
}
template <class Outcome, int value>
constexpr const char* textOfOutcome() {
  if constexpr (std::is_enum_v<Outcome>) return textOfValue<static_cast<Outcome>(value)>();
  return nullptr;
}

/// Records and returns `outcome`, an enumerator or a bool.
template <PlanName plan, class Outcome>
inline Outcome planned(Outcome outcome) {
  static_assert(std::is_enum_v<Outcome> || std::is_same_v<Outcome, bool>);
#define OUTCOME(value) textOfOutcome<Outcome, value>()
  static constinit PlanRecord record{
      ZORVAN_TEXT_OF_VALUE(ZORVAN_VARIANT),
      plan.text,
      std::is_same_v<Outcome, bool>,
      {OUTCOME(0), OUTCOME(1), OUTCOME(2), OUTCOME(3), OUTCOME(4), OUTCOME(5), OUTCOME(6), OUTCOME(7),
       OUTCOME(8), OUTCOME(9), OUTCOME(10), OUTCOME(11)},
      {},
      false,
      nullptr};
#undef OUTCOME
  record.reached[static_cast<int>(outcome)] = true;
  if (!record.isListed) {
    record.isListed = true;
    record.next = firstPlanRecord;
    firstPlanRecord = &record;
  }
  return outcome;
}

#undef ZORVAN_TEXT_OF_VALUE
#undef ZORVAN_TEXT_OF

}  // namespace

#endif

// Macros, so that they leave no code in the library.
#ifdef ZORVAN_LOWERED_LIMITS
/// The outcome, which is recorded for the tests.
#define ZORVAN_PLANNED(plan, ...) ::Zorvan::Primitives::planned<plan>(__VA_ARGS__)
/// Records an outcome that the kernel uses elsewhere.
#define ZORVAN_NOTE_PLAN(plan, ...) static_cast<void>(ZORVAN_PLANNED(plan, __VA_ARGS__))
/// Records whether the rows of an image run as one row. Images of one row are not recorded.
#define ZORVAN_NOTE_ONE_ROW(plan, rows, height)            \
  do {                                                     \
    if ((height) > 1) ZORVAN_NOTE_PLAN(plan, (rows) == 1); \
  } while (false)
#else
#define ZORVAN_PLANNED(plan, ...) (__VA_ARGS__)
#define ZORVAN_NOTE_PLAN(plan, ...) static_cast<void>(sizeof(__VA_ARGS__))
#define ZORVAN_NOTE_ONE_ROW(plan, rows, height) static_cast<void>(sizeof(rows) + sizeof(height))
#endif

}  // namespace Zorvan::Primitives
