#include "tests/support/Options.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <system_error>

#include "zorvan/primitives/frame/Variants.h"

#include "tests/support/Limits.h"

namespace Zorvan::Test {
namespace {

Options parsed;

[[noreturn]] void refuse(const std::string& argument) {
  std::fprintf(
      stderr,
      "unknown argument: %s\n"
      "known: --level=few|quick|full|fuzz --rounds=N --seed=N --entry=TEXT --variant=TEXT "
      "--write=FILE --expected-index=N --expected-cache=N, and GoogleTest's --gtest_... flags\nvariants:",
      argument.c_str());
  for (const char* name : Primitives::variantNames) std::fprintf(stderr, " %s", name);
  std::fprintf(stderr, "\n");
  std::exit(2);
}

Level levelOf(std::string_view name, const std::string& argument) {
  if (name == "few") return Level::few;
  if (name == "quick") return Level::quick;
  if (name == "full") return Level::full;
  if (name == "fuzz") return Level::fuzz;
  refuse(argument);
}

std::uint64_t numberOf(std::string_view digits, std::uint64_t highest, const std::string& argument) {
  std::uint64_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [rest, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || rest != end || number > highest) refuse(argument);
  return number;
}

int intOf(std::string_view digits, const std::string& argument) {
  return static_cast<int>(numberOf(digits, std::numeric_limits<int>::max(), argument));
}

bool isPartOfAVariant(const std::string& text) {
  for (const std::string name : Primitives::variantNames) {
    if (name.find(text) != std::string::npos) return true;
  }
  return false;
}

}  // namespace

const Options& options() { return parsed; }

void parseOptions(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    const auto equals = argument.find('=');
    if (equals == std::string::npos) refuse(argument);
    const std::string key = argument.substr(0, equals);
    const std::string value = argument.substr(equals + 1);
    if (key == "--level") {
      parsed.level = levelOf(value, argument);
    } else if (key == "--seed") {
      parsed.seed = numberOf(value, std::numeric_limits<std::uint64_t>::max(), argument);
    } else if (key == "--rounds") {
      parsed.rounds = intOf(value, argument);
      if (parsed.rounds == 0) refuse(argument);
    } else if (key == "--entry") {
      parsed.entry = value;
    } else if (key == "--variant") {
      if (!isPartOfAVariant(value)) refuse(argument);
      parsed.variant = value;
    } else if (key == "--write") {
      parsed.resultsFile = value;
    } else if (key == "--expected-index") {
      parsed.expectedIndex = intOf(value, argument);
    } else if (key == "--expected-cache") {
      parsed.expectedCache = intOf(value, argument);
    } else {
      refuse(argument);
    }
  }
  if (limitsAreLowered && parsed.level == Level::full) {
    parsed.level = Level::quick;
    parsed.everyOffset = true;
  }
}

}  // namespace Zorvan::Test
