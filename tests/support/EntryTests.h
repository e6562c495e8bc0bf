#pragma once

// Registers a test for every entry of a family in every variant.
//
// A test program of entries defines registerEntryTests(), in which it expands its family's list:
//
//   void Zorvan::Test::registerEntryTests() {
//     const CheckRules rules = {...};
//   #define ENTRY(...) CHECK_ENTRY("Set", rules, __VA_ARGS__)
//   #include "zorvan/primitives/frame/entries/Set.def"
//   }

#include "tests/reference/Reference.h"
#include "tests/support/EntryCheck.h"
#include "tests/support/VariantTests.h"
#include "zorvan/primitives/frame/Table.h"

namespace Zorvan::Test {

void registerEntryTests();

template <class Agreement = SameBytes, class Result, class... Parameters>
void registerEntry(const std::string& family, const std::string& name, const CheckRules& rules,
                   Result (*reference)(Parameters...), const Primitives::Row<Result(Parameters...)>& row) {
  registerDrawnCases(family, name, [rules, reference, &row](int variant) {
    checkEntry<Agreement>(reference, row.routine[1 + variant], rules);
  });
}

#define CHECK_ENTRY(family, rules, ...) CHECK_ENTRY_NAMED(family, rules, __VA_ARGS__)
#define CHECK_ENTRY_NAMED(family, rules, name, ...) \
  registerEntry(family, #name, rules, &Reference::name, Primitives::table.name);

}  // namespace Zorvan::Test
