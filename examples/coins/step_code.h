#pragma once

#include <string>

namespace Coins {

/// The source text of the function of this name in the steps. Throws std::logic_error if no step has it.
std::string codeOf(const std::string& function);

/// C++ code as HTML, with comments, keywords, types, calls and numbers marked.
std::string highlighted(const std::string& code);

}  // namespace Coins
