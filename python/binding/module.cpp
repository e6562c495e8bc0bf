// The module zorvan_ipp._binding. The package zorvan_ipp exports its functions.

#define ZORVAN_IPP_FILLS_NUMPY_TABLE
#include "numpy_api.h"

#include "families.h"

namespace {

/// The macro returns from the function around it when numpy is too old or too new.
bool fillNumpyTable() {
  import_array1(false);
  return true;
}

}  // namespace

PYBIND11_MODULE(_binding, module) {
  using namespace Zorvan::Python;
  if (!fillNumpyTable()) throw pybind11::error_already_set();
  defineInitializer(module);
  defineArithmetic(module);
  defineLogical(module);
  defineStatistic(module);
  defineMorphology(module);
  defineFiltering(module);
  defineComputerVision(module);
}
