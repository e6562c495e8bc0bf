#pragma once

// How failures reach Python. Arguments of the wrong type raise TypeError, arrays that cannot be used as they
// are ValueError, and what the library reports raises the package's IppError.

#include <string>

#include "numpy_api.h"
#include "zorvan/foundation/IppException.h"

namespace Zorvan::Python {

/// What an IppException says, taken apart.
struct Report {
  int code;
  std::string name;
  std::string message;
};

Report reportOf(const Ipp::IppException& exception);

/// Throws IppError of `status`, with an explanation behind the status's own message.
[[noreturn]] void throwIppError(Ipp::eIppResultStatus status, const std::string& explanation);

/// Sets Python's error for the C++ exception that is being handled.
void setPythonError();

/// Runs `operation` without the interpreter's lock. A status after which all pixels have been written becomes
/// an IppWarning: as an exception it would withhold the result. Every other failure is thrown on.
template <class Operation>
void run(Operation operation);

/// Issues the IppWarning of `exception` if all pixels have been written, and throws it on if not.
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
