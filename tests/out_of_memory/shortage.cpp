#include "tests/out_of_memory/shortage.h"

#include <cstdlib>
#include <new>

namespace {

size_t live_blocks = 0;
size_t until_failure = 0;  // 0 for never
bool lasts = false;
bool failed = false;

void* Allocate(size_t size) noexcept {
  if (until_failure > 0 && --until_failure == 0) {
    failed = true;
    if (lasts) until_failure = 1;
    return nullptr;
  }
  void* const block = std::malloc(size > 0 ? size : 1);
  if (block != nullptr) ++live_blocks;
  return block;
}

void Free(void* block) noexcept {
  if (block == nullptr) return;
  --live_blocks;
  std::free(block);
}

}  // namespace

void* operator new(size_t size) {
  if (void* block = Allocate(size)) return block;
  throw std::bad_alloc();
}
void* operator new[](size_t size) { return operator new(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, size_t) noexcept { Free(block); }
void operator delete[](void* block, size_t) noexcept { Free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Free(block); }

namespace vndoc6::testing {

Shortage::Shortage(size_t first, bool lasting) {
  failed = false;
  lasts = lasting;
  until_failure = first;
}

Shortage::~Shortage() { until_failure = 0; }

bool Shortage::came() const { return failed; }

size_t LiveBlocks() { return live_blocks; }

}  // namespace vndoc6::testing
