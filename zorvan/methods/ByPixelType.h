#pragma once

#include <tuple>
#include <type_traits>

#include "zorvan/foundation/Status.h"

namespace Zorvan::Ipp::Image::Methods {

/// The entries of one operation, one for each pixel type that has one, in the order in which the types are
/// tested. Calling it calls the first entry that takes the operands' pixel pointers; a type without an entry
/// yields -59. Pointers to different pixel types do not convert, so no other entry can match.
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

}  // namespace Zorvan::Ipp::Image::Methods
