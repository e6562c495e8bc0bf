#pragma once

// Defines the entries of a list. A family has a table, `template <class V> struct Bodies`, with a member of
// each entry's name: the function that computes it. Signatures are spelled in the list alone.
//
//   #define ENTRY(...) ZORVAN_DEFINE(<Family>::Bodies, __VA_ARGS__)
//   #include "zorvan/primitives/frame/entries/<Family>.def"
//   #undef ENTRY

#include "zorvan/primitives/frame/Routines.h"

#define ZORVAN_DEFINE(Table, name, Result, Parameters, Arguments) \
  template <class V>                                              \
  Result Routines<V>::name Parameters {                           \
    return Table<V>::name Arguments;                              \
  }                                                               \
  template Result Routines<ZORVAN_VARIANT>::name Parameters;

/// The same for the entries that all variants share, whose table is no template.
#define ZORVAN_DEFINE_COMMON(Table, name, Result, Parameters, Arguments) \
  Result CommonRoutines::name Parameters { return Table::name Arguments; }
