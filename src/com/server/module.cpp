// The functions by which COM and regsvr32 use the DLL.
#include "com/entry.h"
#include "com/platform_services.h"
#include "com/server/class_factory.h"
#include "com/server/compiler_runtime.h"
#include "com/server/registry.h"
#include "com/type_library.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/published/published.h"

using namespace vndoc6;
using com::Scope;

extern "C" {

// Threads are heard of, too: what the compiler's runtime keeps for each goes when it ends.
BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID process_ends) {
  if (reason == DLL_PROCESS_ATTACH) com::UsePlatformServices();
  if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) com::ReleaseCompilerRuntime();
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return com::Enter([&] {
    for (const PublishedClass& published : PublishedClasses()) {
      const automation::ClassInfo& info = published.info();
      if (com::ToIid(info.class_id()) != class_id) continue;
      return com::MakeCom<com::ClassFactory>(info)->QueryInterface(iid, out);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
  });
}

STDAPI DllCanUnloadNow() {
  if (com::HostReference::Count() != 0) return S_FALSE;
  com::ForgetTypeLibrary();
  return S_OK;
}

STDAPI DllRegisterServer() {
  return com::Enter([] { return com::RegisterModule(Scope::kMachine); });
}

STDAPI DllUnregisterServer() {
  return com::Enter([] { return com::UnregisterModule(Scope::kMachine); });
}

// `regsvr32 /n /i:user` registers for the current user only, without an administrator's rights.
STDAPI DllInstall(BOOL install, LPCWSTR command_line) {
  return com::Enter([&] {
    const bool user = command_line != nullptr && _wcsicmp(command_line, L"user") == 0;
    const Scope scope = user ? Scope::kUser : Scope::kMachine;
    return install != FALSE ? com::RegisterModule(scope) : com::UnregisterModule(scope);
  });
}

// How many objects of the model exist: for tests, which expect none once everything is released.
STDAPI_(ULONG) VNDoc6LiveObjects() { return static_cast<ULONG>(automation::Object::LiveCount()); }
}
