#pragma once

// Failures in Python. Arguments of the wrong type raise TypeError, arrays that cannot be used in place raise
// ValueError, and failures of the library raise the package's IppError.

#include <string>

#include "numpy_api.h"
#include "zorvan/foundation/IppException.h"

namespace Zorvan::Python {

/// The parts of an IppException's text.
struct Report {
  int code;
  std::string name;
  std::string message;
};

Report reportOf(const Ipp::IppException& exception);

/// Throws IppError of `status`, with an explanation after the message of the status.
[[noreturn]] void throwIppError(Ipp::eIppResultStatus status, const std::string& explanation);

/// Sets Python's error for the C++ exception that is being handled.
void setPythonError();

/// Runs `operation` without the interpreter's lock. A status after which all pixels have been written becomes
/// an IppWarning, because an exception would lose the result. Every other failure is rethrown.
template <class Operation>
void run(Operation operation);

/// Issues the IppWarning of `exception` if all pixels have been written, and rethrows it if not.
void warnOrRethrow(const Ipp::IppException& exception);

template <class Operation>
void run(Operation operation) {
  try {
    const py::gil_scoped_release unlocked;
    operation();
  } catch (const Ipp::IppException& exception) {
    warnOrRethrow(exception);
  }
}

}  // namespace Zorvan::Python
