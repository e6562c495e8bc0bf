#pragma once

#include <cstdlib>
#include <string>

#include "zorvan/ipp.h"

namespace Examples {

/// The code of an exception that an operation raised. It is only in the text, at the end:
///
///     ippStsDivByZero: Zero value(s) for the divisor in the Div function( error Code : 2 )
inline int codeOf(const Zorvan::Ipp::IppException& exception) {
  const std::string text = exception.what();
  return std::atoi(text.c_str() + text.rfind(':') + 1);
}

}  // namespace Examples
