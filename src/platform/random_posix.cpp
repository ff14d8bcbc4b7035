#include <pthread.h>
#include <sys/random.h>
#include <unistd.h>

#include <atomic>
#include <new>

#include "platform/random.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::platform {
namespace {

std::atomic<uint32_t> forks = 0;

}  // namespace

void FillRandomly(RandomBytes& bytes) {
  if (::getentropy(bytes.data(), bytes.size()) == 0) return;
  throw automation::Error(automation::kInvalidCall, u"The system gives no random numbers.");
}

uint32_t ForkCount() {
  static const int registered = ::pthread_atfork(nullptr, nullptr, [] { ++forks; });
  // It fails for want of memory only.
  if (registered != 0) throw std::bad_alloc();
  return forks.load(std::memory_order_relaxed);
}

}  // namespace vndoc6::platform
