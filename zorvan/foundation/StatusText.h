#pragma once

#include <cstdint>

namespace Zorvan::Ipp {

/// The message of a status code, as a static string. A code without a message has that of
/// ippStsUnknownStatusCodeErr.
const char* ippStatusText(std::int32_t code);

}  // namespace Zorvan::Ipp
