#pragma once

#include <cstdint>
#include <string>

namespace Zorvan::Test {

/// The number of cases of a test: few for slow emulators, a sample for quick runs, all, or the given number
/// of random ones.
enum class Level { few, quick, full, fuzz };

/// The options of a test program, besides GoogleTest's own.
struct Options {
  Level level = Level::quick;
  std::uint64_t seed = 1;
  bool everyOffset =
      false;                ///< with lowered limits: every width at every offset within a line, else a sample
  int rounds = 500;         ///< cases of each entry and variant at the level `fuzz`
  std::string entry;        ///< only entries whose name contains this
  std::string variant;      ///< only variants whose name contains this
  std::string resultsFile;  ///< where results_tests writes its file anew
  int expectedIndex = -1;   ///< the variant that this processor has to select; -1 for any
  int expectedCache = 0;    ///< the bytes of the largest cache that this processor reports; 0 for any
};

const Options& options();

/// With lowered limits the full level adds only the systematic cases: all others run with the library's
/// limits. Takes `--level=`, `--seed=`, `--entry=`, `--variant=`, `--rounds=`, `--write=`,
/// `--expected-index=` and `--expected-cache=`; ends the program with a text for all other options and for
/// invalid variants and numbers.
void parseOptions(int argc, char** argv);

}  // namespace Zorvan::Test
