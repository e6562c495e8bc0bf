#include "step_code.h"

#include <cctype>
#include <set>
#include <sstream>
#include <stdexcept>

#include "html_text.h"

namespace Coins {

extern const char* const stepSources[];

namespace {

// A definition begins in the first column, and its closing brace is alone in the first column.
bool beginsDefinition(const std::string& line, const std::string& function) {
  const bool atMargin = !line.empty() && line[0] != ' ' && line[0] != '/';
  return atMargin && line.find(" " + function + "(") != std::string::npos;
}

const std::set<std::string> keywords{"auto",   "bool",        "char",  "const", "constexpr", "double",
                                     "else",   "false",       "float", "for",   "if",        "int",
                                     "return", "static_cast", "true",  "while", "using",     "namespace"};

bool inWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

/// The CSS class of a word, null for none. Types of this code begin with a capital.
const char* cssClassOf(const std::string& word, char next) {
  if (keywords.count(word) != 0) return "key";
  if (std::isdigit(static_cast<unsigned char>(word[0])) != 0) return "number";
  const bool capital = std::isupper(static_cast<unsigned char>(word[0])) != 0;
  if (next == '(') return "call";
  return capital || word == "u8" ? "type" : nullptr;
}

}  // namespace

std::string codeOf(const std::string& function) {
  for (const char* const* source = stepSources; *source != nullptr; ++source) {
    std::istringstream lines(*source);
    std::string code;
    for (std::string line; std::getline(lines, line);) {
      if (!code.empty() || beginsDefinition(line, function)) code += line + "\n";
      if (!code.empty() && line == "}") return code;
    }
  }
  throw std::logic_error("No step has a function " + function);
}

std::string highlighted(const std::string& code) {
  std::string html;
  const auto mark = [&](const char* cssClass, const std::string& text) {
    if (cssClass != nullptr) html += std::string("<span class=") + cssClass + ">";
    html += escaped(text);
    if (cssClass != nullptr) html += "</span>";
  };
  for (std::size_t at = 0; at < code.size();) {
    std::size_t end = at + 1;
    if (code.compare(at, 2, "//") == 0) {
      end = code.find('\n', at);
      mark("note", code.substr(at, end - at));
    } else if (inWord(code[at])) {
      while (end < code.size() && inWord(code[end])) ++end;
      const std::string word = code.substr(at, end - at);
      mark(cssClassOf(word, end < code.size() ? code[end] : ' '), word);
    } else {
      mark(nullptr, code.substr(at, 1));
    }
    at = end;
  }
  return html;
}

}  // namespace Coins
