// Compares the library's operations with plain loops and the streaming limit on the same data.

#include <benchmark/benchmark.h>
#include <sched.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
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
    "                         shapes: widths from 1 to 130, and odd sides; use it with --ours\n"
    "                         or your own sizes: 1024x1000,1024x1048\n"
    "  --seconds=<number>     the time for each row\n"
    "  --ours                 measure the library only: no plain loop, no limit\n"
    "  --serve                as --ours, with rows and numbers of calls from standard input\n"
    "  --layout=<name>|all    where the rows of images begin: tight (without gaps, the default), padded (on\n"
    "                         cache lines, with gaps) or odd (on all pixels of a line); the last two only\n"
    "                         with --ours\n"
    "  --quick                the quick sizes and a short time for each; with --sizes, that time for those\n"
    "  --benchmark_filter=<regex>, --benchmark_out=<file>, --benchmark_list_tests and the other options\n"
    "                         of the benchmark framework; names are <operation>/<pixels>/<size>/<variant>,\n"
    "                         and /<layout> for rows with gaps\n";

struct Options {
  std::string variant;
  std::string sizes;
  std::vector<Layout> layouts = {Layout::tight};
  double seconds = 0;  // 0: by size
  bool quick = false;
  bool oursOnly = false;
  bool serve = false;
};

[[noreturn]] void refuse(const std::string& text) {
  std::fprintf(stderr, "%s\n", text.c_str());
  std::exit(2);
}

std::vector<Layout> layoutsNamed(const std::string& requested) {
  std::vector<Layout> layouts;
  for (const Layout layout : {Layout::tight, Layout::padded, Layout::odd}) {
    if (requested == "all" || requested == layoutNames[static_cast<int>(layout)]) layouts.push_back(layout);
  }
  if (layouts.empty()) refuse("no layout '" + requested + "'; there are: all tight padded odd");
  return layouts;
}

double secondsOf(const std::string& text) {
  char* end = nullptr;
  const double seconds = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !(seconds > 0)) refuse("'" + text + "' is not a number of seconds");
  return seconds;
}

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
    } else if (const auto layouts = valueOf(argument, "--layout=")) {
      options.layouts = layoutsNamed(*layouts);
    } else if (const auto seconds = valueOf(argument, "--seconds=")) {
      options.seconds = secondsOf(*seconds);
    } else if (argument == "--ours") {
      options.oursOnly = true;
    } else if (argument == "--serve") {
      options.serve = true;
      options.oursOnly = true;
    } else {
      argv[kept++] = argv[i];
    }
  }
  argc = kept;
  if (options.sizes.empty()) options.sizes = options.quick ? "quick" : "usual";
  if (!options.oursOnly && options.layouts != std::vector{Layout::tight}) {
    refuse("the plain loops and the limit have no gaps between rows: use --layout with --ours");
  }
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
    std::string names;
    for (const char* name : Primitives::variantNames) names.append(" ").append(name);
    refuse("no variant " + requested + "; there are: all" + names);
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

/// A field of the first processor.
std::string processorField(std::string_view name) {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) continue;
    if (line.substr(0, line.find_last_not_of(" \t", colon - 1) + 1) == name) return line.substr(colon + 2);
  }
  return "unknown";
}

/// Maker, family and model: the name alone, of a virtual machine, can stand for several generations.
std::string processorKind() {
  return processorField("vendor_id") + " family " + processorField("cpu family") + " model " +
         processorField("model");
}

/// What one benchmark measures.
struct Row {
  const Operation* operation;
  Size size;
  int variant;
  Layout layout;
};

void compare(benchmark::State& state, const Row& row, Effort effort) {
  const Operation& operation = *row.operation;
  const Size size = row.size;
  Primitives::variantIndex = row.variant;
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

void measureOurs(benchmark::State& state, const Row& row, Effort effort) {
  Primitives::variantIndex = row.variant;
  const Contestant contestant = row.operation->oursAt(row.size, row.layout);
  Timing timing;
  for (auto _ : state) {
    timing = measure(contestant, effort);
    state.SetIterationTime(timing.nanoseconds * 1e-9);
  }
  state.counters["ours_noise"] = timing.noise;
}

/// Calls on large images take milliseconds, so a stable minimum needs more time.
Effort effortFor(Size size, const Options& options) {
  if (options.seconds > 0) return {options.seconds, 6};
  if (options.sizes == "limits") return {0.1, 6};
  if (options.quick) return {0.3, 6};
  const bool large = pixelsOf(size) > 4'000'000;
  return {large ? 6.0 : 2.0, 12};
}

std::vector<Size> sizesToMeasure(const std::string& requested) {
  const std::vector<Size> sizes = sizesNamed(requested);
  if (sizes.empty()) {
    refuse("no sizes '" + requested + "'; there are: usual quick limits shapes <width>x<height>,...");
  }
  return sizes;
}

std::string nameOf(const Row& row) {
  std::string name = row.operation->name + "/" + row.operation->pixels + "/" +
                     std::to_string(row.size.width) + "x" + std::to_string(row.size.height) + "/" +
                     Primitives::variantNames[row.variant];
  if (row.layout != Layout::tight) name.append("/").append(layoutNames[static_cast<int>(row.layout)]);
  return name;
}

std::vector<Row> rowsToMeasure(const Suite& suite, const Options& options) {
  const std::vector<Size> sizes = sizesToMeasure(options.sizes);
  const std::vector<int> variants = variantsToMeasure(options.variant);
  std::vector<Row> rows;
  for (const Operation& operation : suite.operations()) {
    for (const Size size : sizes) {
      for (const int variant : variants) {
        for (const Layout layout : options.layouts) rows.push_back({&operation, size, variant, layout});
      }
    }
  }
  return rows;
}

void registerRows(const std::vector<Row>& rows, const Options& options) {
  for (const Row& row : rows) {
    const Effort effort = effortFor(row.size, options);
    const auto run = [=, oursOnly = options.oursOnly](benchmark::State& state) {
      if (oursOnly) {
        measureOurs(state, row, effort);
      } else {
        compare(state, row, effort);
      }
    };
    benchmark::RegisterBenchmark(nameOf(row).c_str(), run)->Iterations(1)->UseManualTime();
  }
}

/// Answers requests from standard input, so that a script can let the programs of two builds run alternately.
/// The name of a row prepares its images, and a number of calls is answered by the nanoseconds of one of
/// them.
int serve(const std::vector<Row>& rows) {
  Contestant contestant;
  for (std::string line; std::getline(std::cin, line);) {
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return nameOf(r) == line; });
    if (row != rows.end()) {
      Primitives::variantIndex = row->variant;
      contestant = row->operation->oursAt(row->size, row->layout);
      std::cout << "ready" << std::endl;
    } else if (const int calls = std::atoi(line.c_str()); calls > 0 && contestant.run) {
      contestant.run(1);  // the other program has used the caches since
      std::cout << timeOf(contestant, calls) << std::endl;
    } else {
      refuse("no row and no number of calls: " + line);
    }
  }
  return 0;
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
      if (run.run_type == Run::RT_Aggregate) continue;
      std::fprintf(stderr, "%4d/%d %-46s ", ++done_, count_, run.run_name.function_name.c_str());
      if (run.error_occurred) {
        std::fprintf(stderr, "%s\n", run.error_message.c_str());
        failed_ = true;
        continue;
      }
      const double ours = run.GetAdjustedRealTime();
      std::fprintf(stderr, "%12.0f", ours);
      if (run.counters.contains("limit_ns")) {
        std::fprintf(stderr, " %8.2f %8.2f  %s", ours / run.counters.at("limit_ns"),
                     ours / run.counters.at("plain_ns"), run.report_label.c_str());
      }
      std::fprintf(stderr, "\n");
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
  benchmark::AddCustomContext("processor", processorField("model name"));
  benchmark::AddCustomContext("kind", processorKind());
  benchmark::AddCustomContext("compiler", __VERSION__);
  benchmark::AddCustomContext("command", command);
  Suite suite;
  addInitializer(suite);
  addArithmetic(suite);
  addLogical(suite);
  addMorphology(suite);
  addStatistic(suite);
  addFiltering(suite);
  addComputerVision(suite);
  addChains(suite);
  const std::vector<Row> rows = rowsToMeasure(suite, options);
  if (options.serve) return serve(rows);
  registerRows(rows, options);
  Progress progress(static_cast<int>(rows.size()));
  const std::size_t matching = benchmark::RunSpecifiedBenchmarks(&progress);
  benchmark::Shutdown();
  if (matching == 0) return 2;
  return progress.failed() ? 1 : 0;
}

}  // namespace

}  // namespace Zorvan::Bench

int main(int argc, char** argv) { return Zorvan::Bench::run(argc, argv); }
