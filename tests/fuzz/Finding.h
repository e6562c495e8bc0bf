#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace Zorvan::Test {

/// Ends the program, so that the fuzzer stores the input.
[[noreturn]] inline void finding(const std::string& text) {
  std::fprintf(stderr, "FINDING: %s\n", text.c_str());
  std::abort();
}

inline std::string asText(const std::string& text) { return text; }
template <class Number>
std::string asText(Number number) {
  return std::to_string(number);
}

template <class Value>
void requireSame(const std::string& what, const Value& actual, const Value& expected) {
  if (!(actual == expected)) finding(what + ": " + asText(actual) + " instead of " + asText(expected));
}

}  // namespace Zorvan::Test
