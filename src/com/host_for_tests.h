// A host as the door's tests need one: late-bound calls of which everything can be seen.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "com/com_object.h"
#include "com/face.h"
#include "com/gadget_for_tests.h"
#include "com/objects.h"
#include "com/platform_services.h"

namespace vndoc6::com {

// A VARIANT that can be copied and written down.
struct Value : VARIANT {
  Value() { VariantInit(this); }
  Value(int32_t number) : Value() {
    vt = VT_I4;
    lVal = number;
  }
  Value(double number) : Value() {
    vt = VT_R8;
    dblVal = number;
  }
  Value(bool flag) : Value() {
    vt = VT_BOOL;
    boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  }
  Value(const wchar_t* text) : Value() {
    vt = VT_BSTR;
    bstrVal = SysAllocString(text);
  }
  template <class T>
  Value(const ComPtr<T>& object) : Value() {
    vt = VT_DISPATCH;
    pdispVal = object.template As<IDispatch>().Detach();
  }
  Value(const VARIANT& other) : Value() { Copy(other); }
  Value(const Value& other) : Value(static_cast<const VARIANT&>(other)) {}
  Value& operator=(const Value& other) {
    Copy(other);
    return *this;
  }
  ~Value() { VariantClear(this); }

  static Value Missing() {
    Value value;
    value.vt = VT_ERROR;
    value.scode = DISP_E_PARAMNOTFOUND;
    return value;
  }
  // A reference to `target`, which must live longer.
  static Value Reference(VARIANT& target) {
    Value value;
    value.vt = VT_BYREF | VT_VARIANT;
    value.pvarVal = &target;
    return value;
  }
  static Value Reference(VARTYPE type, void* target) {
    Value value;
    value.vt = static_cast<VARTYPE>(VT_BYREF | type);
    value.byref = target;
    return value;
  }

  std::wstring Text() const {
    return vt == VT_BSTR ? std::wstring(bstrVal, SysStringLen(bstrVal)) : L"(no text)";
  }
  ComPtr<IDispatch> Object() const {
    return ComPtr<IDispatch>(vt == VT_DISPATCH ? pdispVal : nullptr);
  }

 private:
  void Copy(const VARIANT& other) { VariantCopy(this, const_cast<VARIANT*>(&other)); }
};

// What a call gave.
struct Answer {
  HRESULT code = S_OK;
  Value value;
  HRESULT scode = S_OK;
  std::wstring description;
  std::wstring source;
  UINT argument = 99;
};

inline std::wstring TakeString(BSTR string) {
  std::wstring text = string != nullptr ? std::wstring(string) : L"";
  SysFreeString(string);
  return text;
}

inline DISPID IdOf(IDispatch* object, const wchar_t* name) {
  auto* units = const_cast<wchar_t*>(name);
  DISPID id = DISPID_UNKNOWN;
  object->GetIDsOfNames(IID_NULL, &units, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

// Calls with positional arguments in their natural order, after `named` ones.
inline Answer Invoke(const ComPtr<IDispatch>& object, DISPID id, WORD flags,
                     std::vector<Value> arguments = {},
                     std::vector<std::pair<DISPID, Value>> named = {}) {
  std::vector<Value> passed;
  std::vector<DISPID> names;
  for (const auto& [name, value] : named) {
    names.push_back(name);
    passed.push_back(value);
  }
  passed.insert(passed.end(), arguments.rbegin(), arguments.rend());
  DISPPARAMS params{passed.data(), names.data(), static_cast<UINT>(passed.size()),
                    static_cast<UINT>(names.size())};
  EXCEPINFO exception{};
  Answer answer;
  answer.code = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, &answer.value,
                               &exception, &answer.argument);
  answer.scode = exception.scode;
  answer.description = TakeString(exception.bstrDescription);
  answer.source = TakeString(exception.bstrSource);
  return answer;
}

inline Answer Get(const ComPtr<IDispatch>& object, const wchar_t* name,
                  std::vector<Value> arguments = {}) {
  return Invoke(object, IdOf(object.get(), name), DISPATCH_PROPERTYGET, std::move(arguments));
}
inline Answer Call(const ComPtr<IDispatch>& object, const wchar_t* name,
                   std::vector<Value> arguments = {}) {
  return Invoke(object, IdOf(object.get(), name), DISPATCH_METHOD, std::move(arguments));
}
inline Answer Put(const ComPtr<IDispatch>& object, const wchar_t* name, const Value& value,
                  WORD flags = DISPATCH_PROPERTYPUT) {
  return Invoke(object, IdOf(object.get(), name), flags, {}, {{DISPID_PROPERTYPUT, value}});
}

// Every test begins and ends without an object of the library or of the door.
class DoorTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr)));
    UsePlatformServices();
  }
  void TearDown() override {
    OleUninitialize();
    EXPECT_EQ(automation::Object::LiveCount(), 0u);
    EXPECT_EQ(HostReference::Count(), 0);
  }
  static ComPtr<IDispatch> MakeGadget() { return ExportObject(*automation::Make<Gadget>()); }
  static Gadget& GadgetOf(const ComPtr<IDispatch>& face) {
    return dynamic_cast<Gadget&>(*ImportObject(face.get()));
  }
};

}  // namespace vndoc6::com
