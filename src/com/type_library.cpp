#include "com/type_library.h"

#include <mutex>

#include "com/entry.h"

namespace vndoc6::com {
namespace {

std::mutex mutex;
// Not a ComPtr: nothing may be released when the process ends and other DLLs are gone already.
ITypeLib* library = nullptr;

}  // namespace

Text ModulePath() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&ModulePath), &module);
  // The longest path that Windows has.
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
  return Text(AsText(path.data(), path.size()));
}

ComPtr<ITypeLib> TypeLibrary() {
  const std::lock_guard lock(mutex);
  if (library == nullptr) LoadTypeLibEx(AsWide(ModulePath()), REGKIND_NONE, &library);
  return ComPtr<ITypeLib>(library);
}

HRESULT FindTypeInfo(const GUID& guid, ITypeInfo** type_info) noexcept {
  return Enter([&] {
    const ComPtr<ITypeLib> found = TypeLibrary();
    return found ? found->GetTypeInfoOfGuid(guid, type_info) : TYPE_E_CANTLOADLIBRARY;
  });
}

void ForgetTypeLibrary() {
  const std::lock_guard lock(mutex);
  if (library != nullptr) std::exchange(library, nullptr)->Release();
}

}  // namespace vndoc6::com
