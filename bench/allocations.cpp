#include "bench/allocations.h"

#include <cstdlib>
#include <new>

namespace {
size_t allocation_count = 0;
}

void* operator new(size_t size) {
  ++allocation_count;
  if (void* const memory = std::malloc(size != 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

namespace vndoc6::bench {

size_t AllocationCount() { return allocation_count; }

}  // namespace vndoc6::bench
