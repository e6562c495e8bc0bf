#include "zorvan/foundation/IppException.h"

#include "zorvan/foundation/StatusText.h"

namespace Zorvan::Ipp {

IppException::IppException(eIppResultStatus status) : status_(status) { _Parse(); }

IppException::IppException(const IppException& source) = default;

IppException& IppException::operator=(const IppException& source) {
  if (this != &source) {
    std::exception::operator=(source);
    message_ = source.message_;
  }
  status_ = source.status_;
  return *this;
}

IppException::~IppException() = default;

const char* IppException::what() const noexcept { return message_.c_str(); }

// Callers match on this form: no separator stands between the message and the opening parenthesis.
void IppException::_Parse() {
  message_ = ippStatusText(status_);
  message_ += "( error Code : " + std::to_string(static_cast<std::int32_t>(status_)) + " )";
}

}  // namespace Zorvan::Ipp
