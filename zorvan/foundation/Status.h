#pragma once

#include <cstdint>

#include "zorvan/foundation/Export.h"

namespace Zorvan::Ipp {

/// Outcome of an operation. Zero is success, negative codes are errors, positive codes are warnings.
enum ZORVAN_IPP_API eIppResultStatus : std::int32_t {
#define ZORVAN_IPP_STATUS(code, name, text) name = code,
#define ZORVAN_IPP_PLAIN_STATUS(code, text)
#include "zorvan/foundation/StatusTable.def"
};

}  // namespace Zorvan::Ipp
