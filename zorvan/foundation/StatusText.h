#pragma once

#include <cstdint>

namespace Zorvan::Ipp {

/// The message of a status code, a constant of the library. Codes without a message of their own share the
/// one of ippStsUnknownStatusCodeErr.
const char* ippStatusText(std::int32_t code);

}  // namespace Zorvan::Ipp
