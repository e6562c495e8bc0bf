#pragma once

#include <functional>
#include <string>

namespace Zorvan::Test {

/// Runs `call` and gives an empty text, or what stopped it: an access to unreadable memory, or an instruction
/// that the processor does not have. The program goes on.
std::string faultOf(const std::function<void()>& call);

}  // namespace Zorvan::Test
