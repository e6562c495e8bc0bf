#pragma once

#include <exception>
#include <string>

#include "zorvan/foundation/IppException.h"

namespace Zorvan::Test {

/// The text of what `call` throws, marked by its class; empty if it throws nothing.
template <class Call>
std::string thrownBy(Call call) {
  try {
    call();
  } catch (const Ipp::IppException& thrown) {
    return std::string("IppException ") + thrown.what();
  } catch (const std::exception& thrown) {
    return thrown.what();
  }
  return "";
}

}  // namespace Zorvan::Test
