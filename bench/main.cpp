// The benchmark program. Google Benchmark runs the measurements in random order, each several
// times; then the table of ratios follows. Its own arguments work, --benchmark_filter above all.
//
//   --smoke   small documents, once: whether everything runs
//   --guard   small documents; fails when a ratio is worse than it was by more than a wide margin
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "bench/fresh_process.h"
#include "bench/goals.h"
#include "bench/registration.h"

namespace vndoc6::bench {
namespace {

// More than other work on the machine can do to a ratio of medians.
constexpr double kGuardMargin = 3;

// Collects what was measured, and says on the way what that is.
class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      if (run.error_occurred) {
        failed_ = true;
        std::fprintf(stderr, "%s: %s\n", NameOf(run).c_str(), run.error_message.c_str());
        continue;
      }
      const double seconds =
          run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
      Keep(NameOf(run), seconds);
      for (const auto& [name, counter] : run.counters) Keep(NameOf(run) + "#" + name, counter);
    }
  }
  const Results& results() const { return results_; }
  bool failed() const { return failed_; }

 private:
  static std::string NameOf(const Run& run) {
    std::string name = run.run_name.function_name;
    if (!run.run_name.args.empty()) name += "/" + run.run_name.args;
    return name;
  }
  void Keep(const std::string& name, double value) { results_[name].push_back(value); }

  Results results_;
  bool failed_ = false;
};

void PrintMedians(const Results& results) {
  std::printf("%-52s %14s\n", "Median", "");
  for (auto [name, values] : results) {
    std::sort(values.begin(), values.end());
    const double median = values[values.size() / 2];
    if (name.find('#') == name.npos) {
      std::printf("%-52s %14.3f us\n", name.c_str(), median * 1e6);
    } else {
      std::printf("%-52s %14.2f\n", name.c_str(), median);
    }
  }
  std::printf("\n");
}

// Takes `flag` out of the arguments and says whether it was there.
bool TakeFlag(std::vector<char*>& arguments, const char* flag) {
  return std::erase_if(arguments,
                       [&](const char* argument) { return std::strcmp(argument, flag) == 0; }) > 0;
}

int Run(std::vector<char*> arguments) {
  const bool smoke = TakeFlag(arguments, "--smoke");
  const bool guard = TakeFlag(arguments, "--guard");
  const bool small = smoke || guard;
  std::string repetitions = "--benchmark_repetitions=" + std::string(smoke ? "1" : "5");
  std::string interleaving = "--benchmark_enable_random_interleaving=true";
  std::string least_time = "--benchmark_min_time=" + std::string(small ? "0.01" : "0.1");
  // Before the caller's own, which win.
  arguments.insert(arguments.begin() + 1,
                   {repetitions.data(), interleaving.data(), least_time.data()});
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

  RegisterDocumentBenchmarks(small);
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  PrintMedians(collector.results());
  const int missed = PrintGoals(collector.results(), small, guard ? kGuardMargin : 1);
  if (collector.failed()) return 1;
  return guard && missed > 0 ? 1 : 0;
}

}  // namespace
}  // namespace vndoc6::bench

int main(int argc, char** argv) {
  int exit_code = 0;
  if (vndoc6::bench::RunAsFreshProcess(argc, argv, exit_code)) return exit_code;
  return vndoc6::bench::Run(std::vector<char*>(argv, argv + argc));
}
