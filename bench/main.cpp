// Compares the library's operations with plain loops and the streaming limit on the same data.

#include <benchmark/benchmark.h>
#include <sched.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/families.h"
#include "bench/support/Suite.h"
#include "bench/support/sizes.h"
#include "zorvan/primitives/frame/Processor.h"
#include "zorvan/primitives/frame/Variants.h"

namespace Zorvan::Bench {

namespace {

// The plain loop and the limit are inlined, but the library is called. The time of a call on one pixel shows
// the cost of the call, which matters for small images.
constexpr std::int64_t mostPixelsBesideCall = 64 * 64;
constexpr Size onePixel = {1, 1};

// Results of larger images are not compared: that would need a second set of images, and differences show at
// small sizes too.
constexpr std::int64_t mostComparedPixels = 640 * 480;

constexpr const char* helpText =
    "zorvan_bench [options]\n"
    "  --variant=<name>|all   measure this variant, or every one that the processor supports\n"
    "                         (default: the one that the library selects for this processor)\n"
    "  --sizes=<set>          usual: from 64x64 to 4096x4096 (the default)\n"
    "                         quick: two of them\n"
    "                         limits: pairs on both sides of each size from which an operation takes\n"
    "                         another path, with a short time for each; use it with --variant=all to\n"
    "                         measure a change of a kernel\n"
    "                         or your own sizes: 1024x1000,1024x1048\n"
    "  --quick                the quick sizes and a short time for each; with --sizes, that time for those\n"
    "  --benchmark_filter=<regex>, --benchmark_out=<file>, --benchmark_list_tests and the other options\n"
    "                         of the benchmark framework; names are <operation>/<pixels>/<size>/<variant>\n";

struct Options {
  std::string variant;
  std::string sizes;
  bool quick = false;
};

/// The rest of an argument that begins with `name`.
std::optional<std::string> valueOf(std::string_view argument, std::string_view name) {
  if (!argument.starts_with(name)) return {};
  return std::string(argument.substr(name.size()));
}

/// The arguments without the name of the output file.
std::string commandLine(int argc, char** argv) {
  std::string words = "./run bench";
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (!argument.starts_with("--benchmark_out")) words.append(" ").append(argument);
  }
  return words;
}

/// Removes the options of this program from the command line.
Options takeOptions(int& argc, char** argv) {
  Options options;
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--quick") {
      options.quick = true;
    } else if (const auto variant = valueOf(argument, "--variant=")) {
      options.variant = *variant;
    } else if (const auto sizes = valueOf(argument, "--sizes=")) {
      options.sizes = *sizes;
    } else {
      argv[kept++] = argv[i];
    }
  }
  argc = kept;
  if (options.sizes.empty()) options.sizes = options.quick ? "quick" : "usual";
  return options;
}

/// The indices of the variants to measure. Variants that this processor does not support are reported and
/// skipped.
std::vector<int> variantsToMeasure(const std::string& requested) {
  Primitives::coreSelectVariant();
  const int selected = Primitives::variantIndex;
  if (requested.empty()) return {selected};

  std::vector<int> variants;
  std::string skipped;
  bool known = requested == "all";
  for (int i = 0; i < Primitives::variantCount; ++i) {
    if (requested != "all" && requested != Primitives::variantNames[i]) continue;
    known = true;
    if (i <= selected) {
      variants.push_back(i);
    } else {
      std::fprintf(stderr, "%s: skipped, this processor does not support it\n", Primitives::variantNames[i]);
      skipped.append(skipped.empty() ? "" : " ").append(Primitives::variantNames[i]);
    }
  }
  if (!known) {
    std::fprintf(stderr, "no variant %s; there are: all", requested.c_str());
    for (const char* name : Primitives::variantNames) std::fprintf(stderr, " %s", name);
    std::fprintf(stderr, "\n");
    std::exit(2);
  }
  if (!skipped.empty()) benchmark::AddCustomContext("skipped_variants", skipped);
  return variants;
}

/// Pins the process to its current processor: times of different processors must not be mixed in one minimum.
void pin() {
  const int cpu = sched_getcpu();
  cpu_set_t set;
  CPU_ZERO(&set);
  if (cpu >= 0) CPU_SET(cpu, &set);
  const bool pinned = cpu >= 0 && sched_setaffinity(0, sizeof(set), &set) == 0;
  benchmark::AddCustomContext("pinned_to", pinned ? std::to_string(cpu) : "none");
}

std::string processorName() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
  }
  return "unknown";
}

void compare(benchmark::State& state, const Operation& operation, Size size, int variant, Effort effort) {
  Primitives::variantIndex = variant;
  if (pixelsOf(size) <= mostComparedPixels && !operation.agreesAt(size)) {
    state.SkipWithError("the result is not that of the plain loop");
    return;
  }
  const Contest contest = operation.contestAt(size);
  Result result;
  for (auto _ : state) {
    result = measure(contest, effort);
    state.SetIterationTime(result.ours.nanoseconds * 1e-9);
  }
  state.SetLabel(result.limitLoop);
  state.counters["limit_ns"] = result.limit.nanoseconds;
  state.counters["plain_ns"] = result.plain.nanoseconds;
  if (pixelsOf(size) <= mostPixelsBesideCall) {
    state.counters["call_ns"] = measure(operation.contestAt(onePixel).ours, effort).nanoseconds;
  }
  state.counters["ours_noise"] = result.ours.noise;
  state.counters["plain_noise"] = result.plain.noise;
  state.counters["limit_noise"] = result.limit.noise;
  state.counters["rounds"] = result.rounds;
  state.counters["bytes"] = static_cast<double>(operation.bytesPerPixel * pixelsOf(size));
}

/// Calls on large images take milliseconds, so a stable minimum needs more time.
Effort effortFor(Size size, const Options& options) {
  if (options.sizes == "limits") return {0.1, 6};
  if (options.quick) return {0.3, 6};
  const bool large = pixelsOf(size) > 4'000'000;
  return {large ? 6.0 : 2.0, 12};
}

std::vector<Size> sizesToMeasure(const std::string& requested) {
  const std::vector<Size> sizes = sizesNamed(requested);
  if (sizes.empty()) {
    std::fprintf(stderr, "no sizes '%s'; there are: usual quick limits <width>x<height>,...\n",
                 requested.c_str());
    std::exit(2);
  }
  return sizes;
}

int registerAll(const Suite& suite, const std::vector<int>& variants, const Options& options) {
  const std::vector<Size> sizes = sizesToMeasure(options.sizes);
  int count = 0;
  for (const Operation& operation : suite.operations()) {
    for (const Size size : sizes) {
      const Effort effort = effortFor(size, options);
      for (const int variant : variants) {
        const std::string name = operation.name + "/" + operation.pixels + "/" + std::to_string(size.width) +
                                 "x" + std::to_string(size.height) + "/" + Primitives::variantNames[variant];
        benchmark::RegisterBenchmark(name.c_str(),
                                     [&operation, size, variant, effort](auto& state) {
                                       compare(state, operation, size, variant, effort);
                                     })
            ->Iterations(1)
            ->UseManualTime();
        ++count;
      }
    }
  }
  return count;
}

/// Prints a line for each contest when it ends.
class Progress : public benchmark::BenchmarkReporter {
 public:
  explicit Progress(int count) : count_(count) {}

  bool ReportContext(const Context&) override {
    std::fprintf(stderr, "  done %-46s %12s %8s %8s  %s\n", "of at most", "ns", "x limit", "x plain",
                 "limit by");
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      std::fprintf(stderr, "%4d/%d %-46s ", ++done_, count_, run.run_name.function_name.c_str());
      if (run.error_occurred) {
        std::fprintf(stderr, "%s\n", run.error_message.c_str());
        failed_ = true;
        continue;
      }
      const double ours = run.GetAdjustedRealTime();
      std::fprintf(stderr, "%12.0f %8.2f %8.2f  %s\n", ours, ours / run.counters.at("limit_ns"),
                   ours / run.counters.at("plain_ns"), run.report_label.c_str());
    }
  }

  bool failed() const { return failed_; }

 private:
  int count_;
  int done_ = 0;
  bool failed_ = false;
};

int run(int argc, char** argv) {
  const std::string command = commandLine(argc, argv);
  const Options options = takeOptions(argc, argv);
  benchmark::Initialize(&argc, argv, [] { std::fputs(helpText, stdout); });
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

  pin();
  benchmark::AddCustomContext("processor", processorName());
  benchmark::AddCustomContext("compiler", __VERSION__);
  benchmark::AddCustomContext("command", command);
  const std::vector<int> variants = variantsToMeasure(options.variant);
  Suite suite;
  addInitializer(suite);
  addArithmetic(suite);
  addLogical(suite);
  addMorphology(suite);
  addStatistic(suite);
  addFiltering(suite);
  addComputerVision(suite);
  Progress progress(registerAll(suite, variants, options));
  const std::size_t matching = benchmark::RunSpecifiedBenchmarks(&progress);
  benchmark::Shutdown();
  if (matching == 0) return 2;
  return progress.failed() ? 1 : 0;
}

}  // namespace

}  // namespace Zorvan::Bench

int main(int argc, char** argv) { return Zorvan::Bench::run(argc, argv); }
