#include <windows.h>
// After windows.h, whose types it needs.
#include <bcrypt.h>

#include "platform/random.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::platform {

void FillRandomly(RandomBytes& bytes) {
  const NTSTATUS status = ::BCryptGenRandom(nullptr, bytes.data(), static_cast<ULONG>(bytes.size()),
                                            BCRYPT_USE_SYSTEM_PREFERRED_RNG);
  if (status >= 0) return;
  throw automation::Error(automation::kInvalidCall, u"The system gives no random numbers.");
}

// There is no fork here.
uint32_t ForkCount() { return 0; }

}  // namespace vndoc6::platform
