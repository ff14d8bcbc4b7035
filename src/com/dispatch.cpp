#include "com/dispatch.h"

#include <array>
#include <memory>

#include "com/entry.h"
#include "com/variants.h"
#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::com {
namespace {

using automation::Arguments;
using automation::CallKind;
using automation::ClassInfo;
using automation::NamedArgument;
using automation::Object;
using automation::Variant;

// A list that needs no memory of its own while it is short.
template <class T, size_t kInline>
class ShortList {
 public:
  explicit ShortList(size_t capacity) {
    if (capacity <= kInline) {
      items_ = reinterpret_cast<T*>(inline_.data());
    } else {
      overflow_ = std::make_unique<Slot[]>(capacity);
      items_ = reinterpret_cast<T*>(overflow_.get());
    }
  }
  ShortList(const ShortList&) = delete;
  ShortList& operator=(const ShortList&) = delete;
  ~ShortList() { std::destroy_n(items_, size_); }

  template <class... Args>
  void Append(Args&&... args) {
    std::construct_at(items_ + size_, std::forward<Args>(args)...);
    ++size_;
  }
  std::span<const T> items() const { return {items_, size_}; }

 private:
  struct alignas(T) Slot {
    std::byte bytes[sizeof(T)];
  };
  std::array<Slot, kInline> inline_;
  std::unique_ptr<Slot[]> overflow_;
  T* items_;
  size_t size_ = 0;
};

// How many of the call's arguments are named ones. In DISPPARAMS they come first, and the
// positional ones follow in reverse.
UINT NamedCount(const DISPPARAMS& params) { return std::min(params.cNamedArgs, params.cArgs); }

bool NamesNewValue(const DISPPARAMS& params, UINT index) {
  return index < NamedCount(params) && params.rgdispidNamedArgs[index] == DISPID_PROPERTYPUT;
}

// Script engines send some calls with other flags than the member was declared with: `x.Prop()` as
// a method, an object assigned without Set as a put, and one with Set as a putref even where the
// property has only a put.
CallKind AllowedKinds(const Object& object, DISPID id, WORD flags) {
  auto allowed = static_cast<CallKind>(flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET |
                                                DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF));
  if (Allows(allowed, CallKind::kCall)) allowed = allowed | CallKind::kGet;
  if (!Allows(allowed, CallKind::kPut | CallKind::kPutRef)) return allowed;
  const ClassInfo* info = object.GetClassInfo();
  const bool as_declared = info != nullptr && info->Find(id, allowed) != nullptr;
  return as_declared ? allowed : allowed | CallKind::kPut | CallKind::kPutRef;
}

Variant ReadArgument(const VARIANT& value, int parameter) {
  return automation::ForArgument(parameter, [&] { return ReadVariant(value); });
}

// Where the argument for a parameter stands in DISPPARAMS. The new value of a put is the last
// parameter, whatever its number.
UINT ArgumentIndex(const DISPPARAMS& params, int parameter) {
  const UINT named = NamedCount(params);
  const UINT positional = params.cArgs - named;
  if (static_cast<UINT>(parameter) < positional) {
    return params.cArgs - 1 - static_cast<UINT>(parameter);
  }
  for (UINT i = 0; i < named; ++i) {
    if (params.rgdispidNamedArgs[i] == parameter) return i;
  }
  return 0;
}

HRESULT Report(const Fault& fault, const DISPPARAMS& params, UINT* argument_at_fault) {
  if (fault.argument >= 0 && argument_at_fault != nullptr) {
    *argument_at_fault = ArgumentIndex(params, fault.argument);
  }
  return fault.binding;
}

Variant Call(Object& object, DISPID id, CallKind allowed, const DISPPARAMS& params) {
  const UINT named = NamedCount(params);
  const UINT positional = params.cArgs - named;
  ShortList<Variant, 8> values(params.cArgs);
  for (UINT i = 0; i < positional; ++i) {
    values.Append(ReadArgument(params.rgvarg[params.cArgs - 1 - i], static_cast<int>(i)));
  }
  if (named == 0) return object.InvokeMember(id, allowed, {values.items(), {}});
  ShortList<NamedArgument, 4> by_name(named);
  for (UINT i = 0; i < named; ++i) {
    if (NamesNewValue(params, i)) {
      values.Append(ReadArgument(params.rgvarg[i], static_cast<int>(positional)));
    } else {
      const DISPID parameter = params.rgdispidNamedArgs[i];
      by_name.Append(parameter, ReadArgument(params.rgvarg[i], parameter));
    }
  }
  return object.InvokeMember(id, allowed, {values.items(), by_name.items()});
}

DISPID FindParameter(const ClassInfo& info, DISPID member, TextView name) {
  for (const auto& row : info.members()) {
    if (row.id != member) continue;
    for (size_t i = 0; i < row.parameters.size(); ++i) {
      if (automation::EqualsAsciiFolded(row.parameters[i].name, name)) {
        return static_cast<DISPID>(i);
      }
    }
  }
  return DISPID_UNKNOWN;
}

}  // namespace

HRESULT GetIdsOfNames(Object& object, LPOLESTR* names, UINT count, DISPID* ids) noexcept {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (count == 0) return E_INVALIDARG;
  return Enter([&] {
    ids[0] = object.FindMember(AsText(names[0]));
    HRESULT code = ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
    const ClassInfo* info = object.GetClassInfo();
    for (UINT i = 1; i < count; ++i) {
      const bool known = info != nullptr && ids[0] != DISPID_UNKNOWN;
      ids[i] = known ? FindParameter(*info, ids[0], AsText(names[i])) : DISPID_UNKNOWN;
      if (ids[i] == DISPID_UNKNOWN) code = DISP_E_UNKNOWNNAME;
    }
    return code;
  });
}

HRESULT InvokeMember(const automation::DualHead& self, DISPID id, WORD flags,
                     const DISPPARAMS& params, VARIANT* result, EXCEPINFO* exception,
                     UINT* argument_at_fault) noexcept {
  if (result != nullptr) result->vt = VT_EMPTY;
  const automation::Running running(self);
  return automation::Guarded(
      [&] {
        const Variant value = Call(*running, id, AllowedKinds(*running, id, flags), params);
        if (result != nullptr) WriteVariant(value, *result);
        return S_OK;
      },
      [&] {
        Fault fault = CaughtFault();
        return fault.binding != S_OK ? Report(fault, params, argument_at_fault)
                                     : ReportException(std::move(fault), exception);
      });
}

}  // namespace vndoc6::com
