#pragma once

#include <exception>
#include <string>

#include "zorvan/foundation/Export.h"
#include "zorvan/foundation/Status.h"

namespace Zorvan::Ipp {

/// Thrown by every operation whose status is not zero, whether positive or negative. After the warnings 2
/// (ippStsDivByZero) and 3 (ippStsSqrtNegArg) all pixels have been written. After every other code, including
/// 1 (ippStsNoOperation) and 29 (ippStsWrongIntersectROI), none has. The code is part of the text only:
///
///     ippStsSizeErr: Incorrect value for data size( error Code : -6 )
///
/// If there is no memory for the text, an operation throws std::bad_alloc instead. The containers do not
/// throw IppException: their failures are objects of a class derived from std::exception.
class ZORVAN_IPP_API IppException : public std::exception {
 public:
  /// Composes the text once, from the message of `status` and the code itself. A code that has no message
  /// gets that of ippStsUnknownStatusCodeErr, followed by the code. Throws std::bad_alloc if there is no
  /// memory for the text.
  IppException(eIppResultStatus status);

  /// Copies code and text.
  IppException(const IppException& source);

  /// Copies code and text. Assigning an object to itself leaves it intact.
  IppException& operator=(const IppException& source);

  /// Frees the text.
  ~IppException() override;

  /// The text, valid as long as the object lives and is not assigned to.
  const char* what() const noexcept override;

 private:
  void _Parse();

  eIppResultStatus status_;
  std::string message_;
};

}  // namespace Zorvan::Ipp
