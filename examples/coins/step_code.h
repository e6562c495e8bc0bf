#pragma once

#include <string>

namespace Coins {

/// The source text of the step's function of this name, as it was compiled. Throws std::logic_error if no
/// step has it.
std::string codeOf(const std::string& function);

/// The text of C++ code as HTML, its comments, words and figures marked.
std::string highlighted(const std::string& code);

}  // namespace Coins
