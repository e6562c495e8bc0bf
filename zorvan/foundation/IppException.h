#pragma once

#include <exception>
#include <string>

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Status.h"

namespace Zorvan::Ipp {

/// Raised by every operation whose status is not zero; positive codes raise like negative ones. After the
/// warnings 2 (ippStsDivByZero) and 3 (ippStsSqrtNegArg) all pixels have been written. Any other code, also
/// 1 (ippStsNoOperation) and 29 (ippStsWrongIntersectROI), means that none has. The code is visible in the
/// text alone:
///
///     ippStsSizeErr: Incorrect value for data size( error Code : -6 )
///
/// The containers do not raise it: their failures are plain std::exception objects.
class ZORVAN_IPP_API IppException : public std::exception {
 public:
  /// Composes the text once, from the message of `status` and the code itself. A code that has no message
  /// reads as ippStsUnknownStatusCodeErr, followed by the code that was given. Where there is no memory for
  /// the text std::bad_alloc is raised instead.
  IppException(eIppResultStatus status);

  /// Takes over code and text.
  IppException(const IppException& source);

  /// Takes over code and text. Assigning an object to itself leaves it intact.
  IppException& operator=(const IppException& source);

  ~IppException() override;

  /// The text, valid as long as the object lives and is not assigned to.
  const char* what() const noexcept override;

 private:
  void _Parse();

  eIppResultStatus status_;
  std::string message_;
};

}  // namespace Zorvan::Ipp
