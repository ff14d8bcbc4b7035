#include "com/server/class_factory.h"

#include "com/entry.h"
#include "com/objects.h"

namespace vndoc6::com {

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  return Enter([&] {
    const automation::Ref<automation::Object> object = info_.Create();
    return ExportObject(*object)->QueryInterface(iid, out);
  });
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  HostReference::Lock(lock != FALSE);
  return S_OK;
}

}  // namespace vndoc6::com
