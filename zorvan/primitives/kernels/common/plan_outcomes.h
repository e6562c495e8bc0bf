#pragma once

// Which outcomes of the plans a run of the tests has reached. Kernels pass each outcome through
// `ZORVAN_PLANNED`, which in the library is the value and nothing else. In the kernels with lowered limits it
// also keeps a record for the tests, which then name every outcome that no case has led to.

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

/// The outcomes of one plan in one variant; in a list of all that have been asked for one.
struct PlanRecord {
  static constexpr int most = 12;

  const char* variant;
  const char* plan;
  bool isYesOrNo;
  const char* outcomes[most];  ///< for enumerations: texts that name the outcome, or none, at their end
  bool reached[most];
  bool isListed;
  PlanRecord* next;
};
extern PlanRecord* firstPlanRecord;  // the tests' own

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

/// `outcome`, which is an enumerator or a yes or no.
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

// Macros, so that the library is compiled as if they were not there.
#ifdef ZORVAN_LOWERED_LIMITS
/// The outcome, which is kept for the tests.
#define ZORVAN_PLANNED(plan, ...) ::Zorvan::Primitives::planned<plan>(__VA_ARGS__)
/// Keeps an outcome that the kernel acts on elsewhere.
#define ZORVAN_NOTE_PLAN(plan, ...) static_cast<void>(ZORVAN_PLANNED(plan, __VA_ARGS__))
/// Whether the rows of an image of several are one row. No outcome of images that have only one.
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
