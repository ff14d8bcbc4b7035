// How long the endurance tests go on. They are quick among the other tests; VNDOC6_SOAK multiplies
// their counts for a long run.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace vndoc6::testing {

// `quick` times the factor of a long run.
inline int32_t Times(int32_t quick) {
  const char* factor = std::getenv("VNDOC6_SOAK");
  const int32_t times = factor != nullptr ? std::atoi(factor) : 1;
  return quick * (times > 0 ? times : 1);
}

// Another seed in each long run, the same one otherwise.
inline uint32_t Seed() {
  const char* seed = std::getenv("VNDOC6_SEED");
  return seed != nullptr ? static_cast<uint32_t>(std::atoi(seed)) : 1;
}

}  // namespace vndoc6::testing
