// Whole documents: each measurement in a fresh process, at each size that its goals need.
#include <benchmark/benchmark.h>

#include <set>

#include "bench/fresh_process.h"
#include "bench/measurements.h"
#include "bench/registration.h"

namespace vndoc6::bench {
namespace {

// Flatness is told of what takes time; the rest says enough at one size.
constexpr std::string_view kAtAllSizes[] = {"load", "read", "save-kept", "save-changed", "create"};

void Prepare(size_t steps) {
  static std::set<size_t> prepared;
  if (prepared.insert(steps).second) MeasureInFreshProcess(kPrepare, steps);
}

void RunMeasurement(benchmark::State& state, const std::string& name, size_t steps) {
  Prepare(steps);
  for (auto _ : state) {
    const Measured measured = MeasureInFreshProcess(name, steps);
    state.SetIterationTime(measured.seconds);
    state.counters["bytes"] = static_cast<double>(measured.bytes);
  }
}

void Register(const std::string& name, size_t steps) {
  const std::string full_name = name + "/" + std::to_string(steps);
  benchmark::RegisterBenchmark(full_name.c_str(), RunMeasurement, name, steps)
      ->Iterations(1)
      ->UseManualTime();
}

}  // namespace

void RegisterDocumentBenchmarks(bool small) {
  for (const std::string& name : MeasurementNames()) {
    const bool at_all_sizes = std::ranges::find(kAtAllSizes, name) != std::end(kAtAllSizes);
    Register(name, small ? kSmall : kUsual);
    if (!at_all_sizes || small) continue;
    Register(name, kSmall);
    Register(name, kLarge);
  }
}

}  // namespace vndoc6::bench
