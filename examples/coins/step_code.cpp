#include "step_code.h"

#include <cctype>
#include <set>
#include <sstream>
#include <stdexcept>

namespace Coins {

extern const char* const stepSources[];

namespace {

// A definition starts at the left margin, and its closing brace stands there alone.
bool begins(const std::string& line, const std::string& function) {
  const bool atMargin = !line.empty() && line[0] != ' ' && line[0] != '/';
  return atMargin && line.find(" " + function + "(") != std::string::npos;
}

const std::set<std::string> kKeywords{"auto",   "bool",        "char",  "const", "constexpr", "double",
                                      "else",   "false",       "float", "for",   "if",        "int",
                                      "return", "static_cast", "true",  "while", "using",     "namespace"};

std::string escaped(char c) {
  switch (c) {
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '&':
      return "&amp;";
    default:
      return std::string(1, c);
  }
}

bool inWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

/// The class that the page gives a word, by how it is written: this code's types begin with capitals.
const char* kindOf(const std::string& word, char next) {
  if (kKeywords.count(word) != 0) return "key";
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
      if (!code.empty() || begins(line, function)) code += line + "\n";
      if (!code.empty() && line == "}") return code;
    }
  }
  throw std::logic_error("No step has a function " + function);
}

std::string highlighted(const std::string& code) {
  std::string html;
  const auto mark = [&](const char* kind, const std::string& text) {
    if (kind != nullptr) html += std::string("<span class=") + kind + ">";
    for (const char c : text) html += escaped(c);
    if (kind != nullptr) html += "</span>";
  };
  for (std::size_t at = 0; at < code.size();) {
    std::size_t end = at + 1;
    if (code.compare(at, 2, "//") == 0) {
      end = code.find('\n', at);
      mark("note", code.substr(at, end - at));
    } else if (inWord(code[at])) {
      while (end < code.size() && inWord(code[end])) ++end;
      const std::string word = code.substr(at, end - at);
      mark(kindOf(word, end < code.size() ? code[end] : ' '), word);
    } else {
      html += escaped(code[at]);
    }
    at = end;
  }
  return html;
}

}  // namespace Coins
