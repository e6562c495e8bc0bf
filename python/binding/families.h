#pragma once

#include "numpy_api.h"

namespace Zorvan::Python {

// Each of these adds the functions of a family to the module.
void defineInitializer(py::module_& module);
void defineArithmetic(py::module_& module);
void defineLogical(py::module_& module);
void defineStatistic(py::module_& module);
void defineMorphology(py::module_& module);
void defineFiltering(py::module_& module);
void defineComputerVision(py::module_& module);

}  // namespace Zorvan::Python
