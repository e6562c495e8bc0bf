#pragma once

#include <exception>
#include <string>
#include <utility>

namespace Zorvan::Ipp {

/// What the containers throw. Users catch std::exception and read the text; the class is not part of the
/// interface.
class TextException : public std::exception {
 public:
  explicit TextException(std::string text) : text_(std::move(text)) {}
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

}  // namespace Zorvan::Ipp
