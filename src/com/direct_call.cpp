#include "com/direct_call.h"

#include "com/entry.h"
#include "com/variants.h"
#include "vndoc6/automation/class_info.h"

namespace vndoc6::com {
namespace {

using automation::CallKind;
using automation::ClassInfo;
using automation::DualHead;
using automation::MemberInfo;

const MemberInfo* FindMember(const DualHead& self, DISPID id, CallKind kind) {
  const ClassInfo* info = self.object->GetClassInfo();
  const MemberInfo* member = info != nullptr ? info->Find(id, kind) : nullptr;
  return member != nullptr && member->vtable_entry != nullptr ? member : nullptr;
}

// What the slot left in the thread's error object.
HRESULT Answer(HRESULT code, EXCEPINFO* exception) {
  return SUCCEEDED(code) ? S_OK : ReportErrorObject(code, exception);
}

std::optional<HRESULT> Get(DualHead& self, DISPID id, VARIANT& result, EXCEPINFO* exception) {
  const MemberInfo* member = FindMember(self, id, CallKind::kGet);
  const VARTYPE type = member != nullptr ? PlainType(member->result.kind) : VARTYPE{VT_EMPTY};
  if (type == VT_EMPTY || !member->parameters.empty()) return std::nullopt;
  // Every value stands at the same place of a VARIANT.
  using Slot = HRESULT STDMETHODCALLTYPE(DualHead*, void* out);
  const HRESULT code =
      reinterpret_cast<Slot*>(const_cast<void*>(member->vtable_entry))(&self, &result.byref);
  result.vt = SUCCEEDED(code) ? type : VARTYPE{VT_EMPTY};
  return Answer(code, exception);
}

template <class Value>
HRESULT PutValue(DualHead& self, const MemberInfo& member, Value value) {
  using Slot = HRESULT STDMETHODCALLTYPE(DualHead*, Value);
  return reinterpret_cast<Slot*>(const_cast<void*>(member.vtable_entry))(&self, value);
}

HRESULT PutPlain(DualHead& self, const MemberInfo& member, const VARIANT& value) {
  switch (value.vt) {
    case VT_BOOL:
    case VT_I2:
      return PutValue(self, member, value.iVal);
    case VT_I4:
      return PutValue(self, member, value.lVal);
    case VT_R4:
      return PutValue(self, member, value.fltVal);
    case VT_R8:
    case VT_DATE:
      return PutValue(self, member, value.dblVal);
    case VT_CY:
      return PutValue(self, member, value.cyVal);
    default:
      return PutValue(self, member, value.bstrVal);
  }
}

std::optional<HRESULT> Put(DualHead& self, DISPID id, const VARIANT& value, EXCEPINFO* exception) {
  if (value.vt == VT_EMPTY) return std::nullopt;
  const MemberInfo* member = FindMember(self, id, CallKind::kPut);
  if (member == nullptr || member->parameters.size() != 1 ||
      PlainType(member->parameters.front().type.kind) != value.vt) {
    return std::nullopt;
  }
  return Answer(PutPlain(self, *member, value), exception);
}

bool HasNewValueOnly(const DISPPARAMS& params) {
  return params.cArgs == 1 && params.cNamedArgs == 1 &&
         params.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
}

}  // namespace

std::optional<HRESULT> CallDirectly(DualHead& self, DISPID id, WORD flags, const DISPPARAMS& params,
                                    VARIANT* result, EXCEPINFO* exception) noexcept {
  // Scripts read a property as a method, too.
  constexpr WORD kGetFlags = DISPATCH_PROPERTYGET | DISPATCH_METHOD;
  if ((flags & kGetFlags) != 0 && params.cArgs == 0 && result != nullptr) {
    return Get(self, id, *result, exception);
  }
  if (flags == DISPATCH_PROPERTYPUT && HasNewValueOnly(params)) {
    return Put(self, id, params.rgvarg[0], exception);
  }
  return std::nullopt;
}

}  // namespace vndoc6::com
