#pragma once

#include "numpy_api.h"

namespace Zorvan::Python {

// The functions of each family are added to the module by one of these.
void defineInitializer(py::module_& module);
void defineArithmetic(py::module_& module);
void defineLogical(py::module_& module);
void defineStatistic(py::module_& module);
void defineMorphology(py::module_& module);
void defineFiltering(py::module_& module);
void defineComputerVision(py::module_& module);

}  // namespace Zorvan::Python
