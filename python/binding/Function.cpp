#include "Function.h"

#include <algorithm>
#include <string_view>

namespace Zorvan::Python {

namespace {

[[noreturn]] void throwTypeError(const std::string& text) { throw py::type_error(text); }

}  // namespace

Signature::Signature(const char* documentation) {
  const std::string_view line =
      std::string_view(documentation).substr(0, std::string_view(documentation).find('\n'));
  const std::size_t open = line.find('('), close = line.rfind(')');
  name_ = line.substr(0, open);

  // Parameters are separated by commas outside the brackets of defaults.
  std::string_view rest = line.substr(open + 1, close - open - 1);
  while (!rest.empty()) {
    int depth = 0;
    std::size_t end = 0;
    for (; end < rest.size() && (depth > 0 || rest[end] != ','); ++end) {
      depth += rest[end] == '(';
      depth -= rest[end] == ')';
    }
    std::string_view parameter = rest.substr(0, end);
    rest = rest.substr(std::min(rest.size(), end + 1));
    parameter.remove_prefix(std::min(parameter.size(), parameter.find_first_not_of(' ')));
    const std::size_t equals = parameter.find('=');
    if (equals == std::string_view::npos) required_ = parameters_.size() + 1;
    parameters_.push_back(PyUnicode_InternFromString(std::string(parameter.substr(0, equals)).c_str()));
  }
}

std::size_t Signature::indexOf(PyObject* keyword) const {
  const auto found = std::find(parameters_.begin(), parameters_.end(), keyword);
  if (found != parameters_.end()) return static_cast<std::size_t>(found - parameters_.begin());
  for (std::size_t index = 0; index < parameters_.size(); ++index) {  // a name that is not interned
    if (PyUnicode_Compare(parameters_[index], keyword) == 0) return index;
  }
  throwTypeError(name_ + "() got an unexpected keyword argument '" +
                 std::string(py::str(py::handle(keyword))) + "'");
}

void Signature::read(PyObject* const* arguments, Py_ssize_t positional, PyObject* keywords,
                     Value* values) const {
  const auto given = static_cast<std::size_t>(positional);
  if (given > parameters_.size()) {
    throwTypeError(name_ + "() takes at most " + std::to_string(parameters_.size()) + " arguments (" +
                   std::to_string(given) + " given)");
  }
  std::copy(arguments, arguments + positional, values);
  const Py_ssize_t named = keywords == nullptr ? 0 : PyTuple_GET_SIZE(keywords);
  for (Py_ssize_t index = 0; index < named; ++index) {
    PyObject* const keyword = PyTuple_GET_ITEM(keywords, index);
    Value& value = values[indexOf(keyword)];
    if (value != nullptr) {
      throwTypeError(name_ + "() got multiple values for argument '" +
                     std::string(py::str(py::handle(keyword))) + "'");
    }
    value = arguments[positional + index];
  }
  for (std::size_t index = 0; index < required_; ++index) {
    if (values[index] == nullptr) {
      throwTypeError(name_ + "() is missing the argument '" +
                     std::string(py::str(py::handle(parameters_[index]))) + "'");
    }
  }
}

}  // namespace Zorvan::Python
