// How often this program allocated memory.
#pragma once

#include <cstddef>

namespace vndoc6::bench {

size_t AllocationCount();

}  // namespace vndoc6::bench
