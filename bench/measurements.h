// What is measured of whole documents, by name. Each runs in a fresh process (fresh_process.h).
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "bench/fresh_process.h"

namespace vndoc6::bench {

// Writes the files that the others read, once for each size.
inline constexpr const char* kPrepare = "prepare";

// Throws std::runtime_error for an unknown name, and when the operation fails.
Measured Measure(const std::string& name, size_t steps);

// All but kPrepare.
std::vector<std::string> MeasurementNames();

}  // namespace vndoc6::bench
