#pragma once

#include <functional>
#include <string>

namespace Zorvan::Test {

/// Runs `call` and returns an empty text, or the fault that ended it: an access to unreadable memory, or an
/// instruction that the processor does not have. The program continues.
std::string faultOf(const std::function<void()>& call);

}  // namespace Zorvan::Test
