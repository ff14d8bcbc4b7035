#include "com/server/compiler_runtime.h"

#ifdef __MINGW32__

#include <pthread.h>
#include <windows.h>

// Of the C++ runtime, which declares it nowhere: frees the reserve for exceptions, 73 KB.
namespace __gnu_cxx {
void __freeres();
}

// Of the C runtime: what the module wants called when threads come and go.
extern "C" const IMAGE_TLS_DIRECTORY _tls_used;

namespace vndoc6::com {
namespace {

// The runtime takes a slot of thread local storage on first use and never frees it. A process has
// some 1,000 slots, so a host that loads and unloads the DLL as often would be aborted. Which slot
// it is shows when the first use comes early and takes the slot that was free just before.
DWORD runtime_slot = TLS_OUT_OF_INDEXES;

void NTAPI NoteRuntimeSlot(void*, DWORD reason, void*) {
  if (reason != DLL_PROCESS_ATTACH) return;
  const DWORD slot = TlsAlloc();
  TlsFree(slot);
  pthread_self();
  // Another thread may have been quicker to take it.
  if (TlsGetValue(slot) != nullptr) runtime_slot = slot;
}

// The system calls what stands in this section before all constructors, in the order of the names.
__attribute__((section(".CRT$XLB"), used)) const PIMAGE_TLS_CALLBACK kNoteRuntimeSlot =
    &NoteRuntimeSlot;

}  // namespace

void ReleaseCompilerRuntime() {
  // As if this thread ended: its handle and its state of exceptions go.
  const auto* callback = reinterpret_cast<const PIMAGE_TLS_CALLBACK*>(_tls_used.AddressOfCallBacks);
  for (; *callback != nullptr; ++callback) (*callback)(nullptr, DLL_THREAD_DETACH, nullptr);
  __gnu_cxx::__freeres();
  if (runtime_slot != TLS_OUT_OF_INDEXES) TlsFree(runtime_slot);
}

}  // namespace vndoc6::com

#else

namespace vndoc6::com {

void ReleaseCompilerRuntime() {}

}  // namespace vndoc6::com

#endif
