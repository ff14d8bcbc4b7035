// Objects of the host's own, created by the DLL through their programmatic identifiers: a title
// handler, a converter for older files, field definitions, and a database that is bound.
#include <fstream>
#include <functional>
#include <map>

#include "com/host_for_tests.h"
#include "tests/windows/server.h"

namespace vndoc6::com {
namespace {

using Action = std::function<Value(const std::vector<Value>& arguments)>;

// A COM object made of functions, called by name however the member is called.
class HostMade final : public ComObject<IDispatch> {
 public:
  explicit HostMade(std::map<std::wstring, Action> members) : members_(std::move(members)) {}

  // How the first argument of the call that runs was passed.
  static inline VARTYPE first_passed_as = VT_EMPTY;

  // What its type information calls it.
  void SetTypeName(const wchar_t* name) {
    void* library = nullptr;
    ASSERT_EQ(
        CreateTypeLib2(SYS_WIN32, L"host made.tlb", reinterpret_cast<ICreateTypeLib2**>(&library)),
        S_OK);
    const auto maker = ComPtr<ICreateTypeLib2>::Adopt(static_cast<ICreateTypeLib2*>(library));
    ICreateTypeInfo* created = nullptr;
    const std::wstring name_of_its_own(name);
    ASSERT_EQ(maker->CreateTypeInfo(const_cast<wchar_t*>(name_of_its_own.c_str()), TKIND_DISPATCH,
                                    &created),
              S_OK);
    type_ = ComPtr<ICreateTypeInfo>::Adopt(created).As<ITypeInfo>();
  }

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = type_ ? 1 : 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** type) override {
    *type = nullptr;
    if (!type_) return E_NOTIMPL;
    *type = ComPtr<ITypeInfo>(type_).Detach();
    return S_OK;
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    const auto found = members_.find(names[0]);
    ids[0] = found == members_.end()
                 ? DISPID_UNKNOWN
                 : static_cast<DISPID>(std::distance(members_.begin(), found)) + 1;
    return found == members_.end() ? DISP_E_UNKNOWNNAME : S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                      EXCEPINFO* exception, UINT*) override {
    std::vector<Value> arguments(params->cArgs);
    for (UINT i = 0; i < params->cArgs; ++i) {
      VariantCopyInd(&arguments[params->cArgs - 1 - i], &params->rgvarg[i]);
      first_passed_as = params->rgvarg[i].vt;
    }
    try {
      const Value value = std::next(members_.begin(), id - 1)->second(arguments);
      if (result != nullptr) VariantCopy(result, const_cast<Value*>(&value));
      return S_OK;
    } catch (const std::exception&) {
      *exception = {};
      exception->scode = static_cast<SCODE>(0x800A0035);
      return DISP_E_EXCEPTION;
    }
  }

 private:
  const std::map<std::wstring, Action> members_;
  ComPtr<ITypeInfo> type_;
};

// Makes `members` creatable under a programmatic identifier as long as it lives.
class RegisteredClass final : public IClassFactory {
 public:
  RegisteredClass(const wchar_t* programmatic_id, std::map<std::wstring, Action> members)
      : programmatic_id_(programmatic_id), members_(std::move(members)) {
    CLSID class_id{};
    CoCreateGuid(&class_id);
    wchar_t text[40];
    StringFromGUID2(class_id, text, 40);
    RegSetValueW(HKEY_CLASSES_ROOT, (programmatic_id_ + L"\\CLSID").c_str(), REG_SZ, text, 0);
    CoRegisterClassObject(class_id, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
  }
  RegisteredClass(const RegisteredClass&) = delete;
  RegisteredClass& operator=(const RegisteredClass&) = delete;
  virtual ~RegisteredClass() {
    CoRevokeClassObject(cookie_);
    RegDeleteKeyW(HKEY_CLASSES_ROOT, (programmatic_id_ + L"\\CLSID").c_str());
    RegDeleteKeyW(HKEY_CLASSES_ROOT, programmatic_id_.c_str());
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const bool known = iid == IID_IUnknown || iid == IID_IClassFactory;
    *out = known ? static_cast<IClassFactory*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }  // lives on the test's stack
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** out) override {
    return MakeCom<HostMade>(members_)->QueryInterface(iid, out);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  const std::wstring programmatic_id_;
  const std::map<std::wstring, Action> members_;
  DWORD cookie_ = 0;
};

class ForeignHandlersTest : public ServerTest {
 protected:
  static ComPtr<IDispatch> Part(const ComPtr<IDispatch>& object, const wchar_t* name) {
    return Get(object, name).value.Object();
  }
  static void UseTitleHandler(const ComPtr<IDispatch>& document, const wchar_t* programmatic_id) {
    Call(Part(document, L"Properties"), L"Add", {L"Titles Handler", programmatic_id});
  }
};

TEST_F(ForeignHandlersTest, TitlesComeFromTheHandlerNamedInTheDocument) {
  ComPtr<IDispatch> given;
  const RegisteredClass handler(L"VNDoc6Test.Titles",
                                {{L"RequiresDirect", [](const auto&) { return Value(false); }},
                                 {L"Document",
                                  [&](const auto& arguments) {
                                    given = arguments[0].Object();
                                    return Value();
                                  }},
                                 {L"LoadTitles", [&](const auto&) {
                                    const ComPtr<IDispatch> titles = Part(given, L"Titles");
                                    Call(titles, L"AddTitle", {7, L"mgr", L"Manager"});
                                    Call(titles, L"AddTitle", {8, L"MGR", L"Taken"});
                                    given = {};
                                    return Value(0);
                                  }}});
  const ComPtr<IDispatch> document = server_.Create("vnDocument");
  UseTitleHandler(document, L"VNDoc6Test.Titles");
  const ComPtr<IDispatch> titles = Part(document, L"Titles");
  EXPECT_EQ(Get(titles, L"Count").value.lVal, 1);
  EXPECT_EQ(Get(titles, L"HandlerAvailable").value.boolVal, VARIANT_TRUE);
  EXPECT_EQ(Get(Get(titles, L"Item", {L"Mgr"}).value.Object(), L"DisplayName").value.Text(),
            L"Manager");
}

TEST_F(ForeignHandlersTest, AHandlerThatFailsLeavesTheListEmpty) {
  const RegisteredClass handler(
      L"VNDoc6Test.Broken",
      {{L"RequiresDirect", [](const auto&) -> Value { throw std::exception(); }}});
  for (const wchar_t* name : {L"VNDoc6Test.Broken", L"VNDoc6Test.NotThere"}) {
    const ComPtr<IDispatch> document = server_.Create("vnDocument");
    UseTitleHandler(document, name);
    const ComPtr<IDispatch> titles = Part(document, L"Titles");
    EXPECT_EQ(Get(titles, L"Count").value.lVal, 0);
    EXPECT_EQ(Get(titles, L"HandlerAvailable").value.boolVal, VARIANT_FALSE);
    EXPECT_EQ(Get(titles, L"HandlerRequiresDirect").value.lVal, 2);
  }
}

TEST_F(ForeignHandlersTest, AnyDatabaseOfTheRightTypeIsBoundAndHandedOn) {
  ComPtr<IDispatch> handed_on;
  const RegisteredClass handler(L"VNDoc6Test.Direct",
                                {{L"RequiresDirect", [](const auto&) { return Value(true); }},
                                 {L"Document", [](const auto&) { return Value(); }},
                                 {L"Database",
                                  [&](const auto& arguments) {
                                    handed_on = arguments[0].Object();
                                    return Value();
                                  }},
                                 {L"LoadTitles", [](const auto&) { return Value(0); }}});
  const ComPtr<IDispatch> document = server_.Create("vnDocument");
  UseTitleHandler(document, L"VNDoc6Test.Direct");
  const ComPtr<IDispatch> titles = Part(document, L"Titles");
  EXPECT_EQ(Get(titles, L"HandlerAvailable").value.boolVal, VARIANT_FALSE);

  const auto database = MakeCom<HostMade>(std::map<std::wstring, Action>{});
  Put(document, L"Database", ComPtr<IDispatch>(database.get()), DISPATCH_PROPERTYPUTREF);
  EXPECT_EQ(Part(document, L"Database").get(), nullptr);
  database->SetTypeName(L"osDatabase");
  Put(document, L"Database", ComPtr<IDispatch>(database.get()), DISPATCH_PROPERTYPUTREF);
  EXPECT_EQ(Part(document, L"Database").get(), static_cast<IDispatch*>(database.get()));
  EXPECT_EQ(Get(titles, L"HandlerAvailable").value.boolVal, VARIANT_TRUE);
  EXPECT_EQ(handed_on.get(), static_cast<IDispatch*>(database.get()));
}

TEST_F(ForeignHandlersTest, OlderFilesAndFieldDefinitionsGoThroughTheHostsClasses) {
  std::wstring text;
  const RegisteredClass field_defs(L"Fields.FieldDefs", {{L"Text", [&](const auto& arguments) {
                                                            if (!arguments.empty()) {
                                                              text = arguments[0].Text();
                                                            }
                                                            return Value(text.c_str());
                                                          }}});
  std::wstring file;
  const RegisteredClass converter(L"VNDoc6Converters.VN5",
                                  {{L"ImportDocument", [&](const auto& arguments) {
                                      EXPECT_EQ(HostMade::first_passed_as, VT_BYREF | VT_BSTR);
                                      file = arguments[0].Text();
                                      const ComPtr<IDispatch> document = arguments[1].Object();
                                      Put(document, L"IR", 41);
                                      Call(document, L"SetFieldDefsSteps", {L"fields", L"form"});
                                      return Value(0);
                                    }}});
  std::ofstream("old.vn5") << "an older document";
  const ComPtr<IDispatch> document = server_.Create("vnDocument");
  EXPECT_EQ(Call(document, L"Load", {L"old.vn5", L""}).value.boolVal, VARIANT_TRUE);
  EXPECT_EQ(file, L"old.vn5");
  EXPECT_EQ(Get(document, L"IR").value.lVal, 42);
  EXPECT_EQ(Get(Part(document, L"FieldDefsSteps"), L"Text").value.Text(), L"fields");
  EXPECT_EQ(text, L"fields");
  DeleteFileW(L"old.vn5");
}

}  // namespace
}  // namespace vndoc6::com
