// The benchmarks whose number depends on how the program is called.
#pragma once

#include <cstddef>

namespace vndoc6::bench {

// Steps in a document.
inline constexpr size_t kSmall = 1000;
inline constexpr size_t kUsual = 10000;
inline constexpr size_t kLarge = 100000;

// Registers whole documents at all sizes, or only the small one.
void RegisterDocumentBenchmarks(bool small);

}  // namespace vndoc6::bench
