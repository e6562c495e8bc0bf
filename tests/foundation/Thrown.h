#pragma once

#include <exception>
#include <string>

#include "zorvan/foundation/IppException.h"

/// The text of the exception that a container throws in `action`, or a text that states what happened
/// instead.
template <class Action>
std::string textThrownBy(Action action) {
  try {
    action();
  } catch (const Zorvan::Ipp::IppException& failure) {
    return std::string("IppException: ") + failure.what();
  } catch (const std::exception& failure) {
    return failure.what();
  }
  return "nothing thrown";
}
