#include "errors.h"

#include <cstdlib>
#include <exception>

namespace Zorvan::Python {

namespace {

py::object classNamed(const char* name) { return py::module_::import("zorvan_ipp._types").attr(name); }

void setIppError(const py::object& code, const py::object& name, const std::string& message) {
  const py::object error = classNamed("IppError")(code, name, message);
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(error.ptr())), error.ptr());
}

}  // namespace

/// The text has the form "name: message( error Code : code )".
Report reportOf(const Ipp::IppException& exception) {
  const std::string text = exception.what();
  const std::string label = "( error Code : ";
  const std::size_t colon = text.find(": "), tail = text.rfind(label);
  return {std::atoi(text.c_str() + tail + label.size()), text.substr(0, colon),
          text.substr(colon + 2, tail - colon - 2)};
}

void throwIppError(Ipp::eIppResultStatus status, const std::string& explanation) {
  const Report report = reportOf(Ipp::IppException(status));
  setIppError(py::int_(report.code), py::str(report.name), report.message + ": " + explanation);
  throw py::error_already_set();
}

void setPythonError() {
  try {
    try {
      throw;
    } catch (const py::error_already_set&) {
      throw;
    } catch (const py::builtin_exception& error) {
      error.set_error();
    } catch (const Ipp::IppException& exception) {
      const Report report = reportOf(exception);
      setIppError(py::int_(report.code), py::str(report.name), report.message);
    } catch (const std::bad_alloc&) {
      PyErr_NoMemory();
    } catch (const std::exception& exception) {  // from the containers, with a text only
      setIppError(py::none(), py::none(), exception.what());
    }
  } catch (
      py::error_already_set& error) {  // from Python, also if raised while another exception was translated
    error.restore();
  }
}

void warnOrRethrow(const Ipp::IppException& exception) {
  const Report report = reportOf(exception);
  if (report.code != Ipp::ippStsDivByZero && report.code != Ipp::ippStsSqrtNegArg) throw;
  py::module_::import("warnings")
      .attr("warn")(classNamed("IppWarning")(report.code, report.name, report.message));
}

}  // namespace Zorvan::Python
