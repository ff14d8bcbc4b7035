#include "com/dual_vtable.h"

#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "com/direct_call.h"
#include "com/dispatch.h"
#include "com/face.h"
#include "com/type_library.h"

namespace vndoc6::com {
namespace {

// The methods of IDispatch, called with the interface pointer as COM passes it.

HRESULT STDMETHODCALLTYPE QueryInterface(FaceHead* self, REFIID iid, void** out) {
  return self->face->QueryInterface(iid, out);
}

ULONG STDMETHODCALLTYPE AddRef(FaceHead* self) { return self->face->AddRef(); }

ULONG STDMETHODCALLTYPE Release(FaceHead* self) { return self->face->Release(); }

HRESULT STDMETHODCALLTYPE GetTypeInfoCount(FaceHead* self, UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = self->object->GetClassInfo() != nullptr ? 1 : 0;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE GetTypeInfo(FaceHead* self, UINT index, LCID, ITypeInfo** type_info) {
  if (type_info == nullptr) return E_POINTER;
  *type_info = nullptr;
  const automation::ClassInfo* info = self->object->GetClassInfo();
  if (index != 0 || info == nullptr) return DISP_E_BADINDEX;
  return FindTypeInfo(ToIid(info->interface_id()), type_info);
}

HRESULT STDMETHODCALLTYPE GetIDsOfNames(FaceHead* self, REFIID reserved, LPOLESTR* names,
                                        UINT count, LCID, DISPID* ids) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  return GetIdsOfNames(*self->object, names, count, ids);
}

HRESULT STDMETHODCALLTYPE Invoke(FaceHead* self, DISPID id, REFIID reserved, LCID, WORD flags,
                                 DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                                 UINT* argument_at_fault) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (params == nullptr) return E_POINTER;
  const auto answer = CallDirectly(*self, id, flags, *params, result, exception);
  if (answer.has_value()) return *answer;
  return InvokeMember(*self, id, flags, *params, result, exception, argument_at_fault);
}

using Vtable = std::vector<const void*>;

Vtable MakeVtable(const automation::ClassInfo* info) {
  Vtable table{
      reinterpret_cast<const void*>(&QueryInterface),
      reinterpret_cast<const void*>(&AddRef),
      reinterpret_cast<const void*>(&Release),
      reinterpret_cast<const void*>(&GetTypeInfoCount),
      reinterpret_cast<const void*>(&GetTypeInfo),
      reinterpret_cast<const void*>(&GetIDsOfNames),
      reinterpret_cast<const void*>(&Invoke),
  };
  if (info != nullptr) {
    for (const auto& member : info->members()) table.push_back(member.vtable_entry);
  }
  return table;
}

}  // namespace

const void* const* DualVtable(const automation::ClassInfo* info) {
  // Apartments share the tables.
  static std::mutex mutex;
  static std::unordered_map<const automation::ClassInfo*, Vtable> tables;
  const std::lock_guard lock(mutex);
  const auto found = tables.find(info);
  if (found != tables.end()) return found->second.data();
  return tables.emplace(info, MakeVtable(info)).first->second.data();
}

}  // namespace vndoc6::com
