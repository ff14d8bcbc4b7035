// Measurements that each run in a process of their own: its memory is fresh, as a host's is that
// opens one document, and nothing that ran before can warm it up.
#pragma once

#include <cstddef>
#include <string>

namespace vndoc6::bench {

struct Measured {
  double seconds = 0;  // processor time; of a durable save the time on the clock
  size_t bytes = 0;    // what the operation left on the heap, or the size that it is about
};

// Runs a measurement (measurements.h) on a document of `steps` steps. Throws std::runtime_error
// when it fails.
Measured MeasureInFreshProcess(const std::string& name, size_t steps);

// The folder of the files that the measurements work on: made on the first call, gone with the
// process that made it.
const std::string& BenchFolder();

// Whether this process is there for one measurement; then runs it and sets the exit code.
bool RunAsFreshProcess(int argc, char** argv, int& exit_code);

}  // namespace vndoc6::bench
