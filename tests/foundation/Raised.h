#pragma once

#include <exception>
#include <string>

#include "zorvan/foundation/IppException.h"

/// The text that a container raises when it runs `action`; tells apart what is raised in another way.
template <class Action>
std::string textRaisedBy(Action action) {
  try {
    action();
  } catch (const Zorvan::Ipp::IppException& failure) {
    return std::string("IppException: ") + failure.what();
  } catch (const std::exception& failure) {
    return failure.what();
  }
  return "nothing raised";
}
