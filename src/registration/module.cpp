// The functions by which COM and regsvr32 use the DLL.
#include "automation/object.h"
#include "published/published.h"
#include "registration/class_factory.h"
#include "registration/compiler_runtime.h"
#include "registration/registry.h"
#include "windows/entry.h"
#include "windows/platform_services.h"
#include "windows/type_library.h"

using namespace vndoc6;
using windows::Scope;

extern "C" {

// Threads are heard of, too: what the compiler's runtime keeps for each goes when it ends.
BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID process_ends) {
  if (reason == DLL_PROCESS_ATTACH) windows::UsePlatformServices();
  if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) windows::ReleaseCompilerRuntime();
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return windows::Enter([&] {
    for (const PublishedClass& published : PublishedClasses()) {
      const automation::ClassInfo& info = published.info();
      if (windows::ToIid(info.class_id()) != class_id) continue;
      return windows::MakeCom<windows::ClassFactory>(info)->QueryInterface(iid, out);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
  });
}

STDAPI DllCanUnloadNow() {
  if (windows::HostReference::Count() != 0) return S_FALSE;
  windows::ForgetTypeLibrary();
  return S_OK;
}

STDAPI DllRegisterServer() {
  return windows::Enter([] { return windows::RegisterModule(Scope::kMachine); });
}

STDAPI DllUnregisterServer() {
  return windows::Enter([] { return windows::UnregisterModule(Scope::kMachine); });
}

// `regsvr32 /n /i:user` registers for the current user only, without an administrator's rights.
STDAPI DllInstall(BOOL install, LPCWSTR command_line) {
  return windows::Enter([&] {
    const bool user = command_line != nullptr && _wcsicmp(command_line, L"user") == 0;
    const Scope scope = user ? Scope::kUser : Scope::kMachine;
    return install != FALSE ? windows::RegisterModule(scope) : windows::UnregisterModule(scope);
  });
}

// How many objects of the model exist: for tests, which expect none once everything is released.
STDAPI_(ULONG) VNDoc6LiveObjects() { return static_cast<ULONG>(automation::Object::LiveCount()); }
}
