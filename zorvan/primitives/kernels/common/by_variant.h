#pragma once

#include "zorvan/primitives/frame/Variants.h"

namespace Zorvan::Primitives {
namespace {

/// The choice whose place among the choices is that of V among the variants.
template <class V, class Listed, class... Choices>
struct ChoiceOf;
template <class V, class... Later, class Choice, class... Others>
struct ChoiceOf<V, TypeList<void, V, Later...>, Choice, Others...> {
  static_assert(sizeof...(Later) == sizeof...(Others));
  using type = Choice;
};
template <class V, class Earlier, class... Later, class Choice, class... Others>
struct ChoiceOf<V, TypeList<void, Earlier, Later...>, Choice, Others...>
    : ChoiceOf<V, TypeList<void, Later...>, Others...> {};

/// A row of a policy table: of the six choices, one for each variant in the order of its index, the one for
/// V. Choices for whose instructions the current build is not compiled may be declared only.
template <class V, class... Choices>
using ByVariant = typename ChoiceOf<V, Variants, Choices...>::type;

}  // namespace
}  // namespace Zorvan::Primitives
