#include "com/foreign_object.h"

#include <vector>

#include "com/entry.h"
#include "com/variants.h"
#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::com {
namespace {

using automation::Arguments;
using automation::CallKind;
using automation::Variant;

std::string NameOf(ITypeInfo& type_info) {
  OwnedBstr name;
  if (FAILED(type_info.GetDocumentation(MEMBERID_NIL, name.Receive(), nullptr, nullptr, nullptr))) {
    return {};
  }
  return automation::ToUtf8(name.text());
}

// The class name where the object tells it, else its interface's name as class names are derived
// from: without the leading underscore.
std::string ReadTypeName(const ComPtr<IUnknown>& object, const ComPtr<IDispatch>& dispatch) {
  ComPtr<ITypeInfo> type_info;
  if (const auto provider = object.As<IProvideClassInfo>()) {
    if (SUCCEEDED(provider->GetClassInfo(type_info.Receive())) && type_info) {
      return NameOf(*type_info.get());
    }
  }
  if (dispatch && SUCCEEDED(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, type_info.Receive())) &&
      type_info) {
    const std::string name = NameOf(*type_info.get());
    return name.starts_with('_') ? name.substr(1) : name;
  }
  return {};
}

// The arguments of a call in automation's reversed order: named ones first, then the positional.
class OutgoingArguments {
 public:
  OutgoingArguments(const Arguments& arguments, bool put)
      : values_(arguments.positional.size() + arguments.named.size()), passed_(values_.size()) {
    size_t next = 0;
    const size_t positional = arguments.positional.size() - (put ? 1 : 0);
    if (put) Add(next, arguments.positional.back(), DISPID_PROPERTYPUT);
    for (const auto& named : arguments.named) Add(next, named.value, named.parameter);
    for (size_t i = positional; i-- > 0; ++next) {
      WriteVariant(arguments.positional[i], values_[next]);
      passed_[next] = i < arguments.by_reference ? ReferenceTo(values_[next]) : values_[next];
    }
  }

  DISPPARAMS Params() {
    return {passed_.data(), names_.data(), static_cast<UINT>(values_.size()),
            static_cast<UINT>(names_.size())};
  }
  bool NewValueIsObject() const { return values_[0].vt == VT_DISPATCH; }

 private:
  void Add(size_t& next, const Variant& value, DISPID name) {
    WriteVariant(value, values_[next]);
    passed_[next] = values_[next];
    ++next;
    names_.push_back(name);
  }
  std::vector<OwnedVariant> values_;
  std::vector<VARIANT> passed_;  // the values, or references to them
  std::vector<DISPID> names_;
};

}  // namespace

ForeignObject::ForeignObject(ComPtr<IUnknown> object)
    : object_(std::move(object)), dispatch_(object_.As<IDispatch>()) {}

std::string_view ForeignObject::TypeName() const {
  if (type_name_.empty()) type_name_ = ReadTypeName(object_, dispatch_);
  return type_name_.empty() ? Object::TypeName() : type_name_;
}

int32_t ForeignObject::FindMember(std::u16string_view name) {
  if (!dispatch_) return automation::kNoMember;
  Text copy(name);
  auto* units = const_cast<wchar_t*>(AsWide(copy));
  DISPID id = DISPID_UNKNOWN;
  const HRESULT code = dispatch_->GetIDsOfNames(IID_NULL, &units, 1, LOCALE_USER_DEFAULT, &id);
  return SUCCEEDED(code) ? id : automation::kNoMember;
}

Variant ForeignObject::InvokeMember(int32_t id, CallKind kind, const Arguments& arguments) {
  if (!dispatch_) throw automation::Error(automation::kNotSupported);
  const bool put =
      Allows(kind, CallKind::kPut | CallKind::kPutRef) && !arguments.positional.empty();
  OutgoingArguments outgoing(arguments, put);
  DISPPARAMS params = outgoing.Params();
  auto flags = static_cast<WORD>(kind);
  // A put of either kind goes by reference when it is an object; objects that know puts only get
  // it as one.
  const bool either = Allows(kind, CallKind::kPut) && Allows(kind, CallKind::kPutRef);
  if (put && either) {
    flags = outgoing.NewValueIsObject() ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT;
  }
  OwnedVariant result;
  EXCEPINFO exception{};
  const auto invoke = [&] {
    return dispatch_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                             put ? nullptr : &result, &exception, nullptr);
  };
  HRESULT code = invoke();
  if (code == DISP_E_MEMBERNOTFOUND && either && flags == DISPATCH_PROPERTYPUTREF) {
    flags = DISPATCH_PROPERTYPUT;
    code = invoke();
  }
  if (FAILED(code)) RaiseFailure(code, &exception);
  return ReadVariant(result);
}

}  // namespace vndoc6::com
