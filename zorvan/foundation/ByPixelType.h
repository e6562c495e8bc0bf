#pragma once

#include <cstddef>
#include <tuple>
#include <type_traits>

#include "zorvan/foundation/Status.h"

namespace Zorvan::Ipp {

/// The entries of one operation, one for each pixel type that has one. A call goes to the first entry that
/// takes the operands' pixel pointers, which is the only one: pointers to different pixel types do not
/// convert. A type without an entry yields -59.
template <class... Entries>
class ByPixelType {
 public:
  constexpr explicit ByPixelType(Entries... entries) : entries_(entries...) {}

  template <class... Operands>
  int operator()(Operands... operands) const {
    return callFrom<0>(operands...);
  }

 private:
  template <std::size_t index, class... Operands>
  int callFrom(Operands... operands) const {
    if constexpr (index == sizeof...(Entries)) {
      return ippStsDataTypeErr;
    } else if constexpr (std::is_invocable_v<std::tuple_element_t<index, std::tuple<Entries...>>,
                                             Operands...>) {
      return std::get<index>(entries_)(operands...);
    } else {
      return callFrom<index + 1>(operands...);
    }
  }

  std::tuple<Entries...> entries_;
};

/// An allocator of pixels as a function of the form that ByPixelType selects: its first operand, which
/// receives the pixels, states their type.
template <class T, class... Parameters>
constexpr auto storing(T* (*allocate)(Parameters...)) {
  return [allocate](T** pixels, Parameters... parameters) {
    *pixels = allocate(parameters...);
    return int{ippStsNoErr};
  };
}

}  // namespace Zorvan::Ipp
