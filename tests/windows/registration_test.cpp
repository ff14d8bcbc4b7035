// Registering and unregistering the DLL, and when it may be unloaded.
#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "com/foreign_object.h"
#include "com/host_for_tests.h"
#include "tests/windows/server.h"
#include "vndoc6/published/library.h"

namespace vndoc6::com {
namespace {

// Every key and value below a key of HKEY_CURRENT_USER, as lines.
void ReadTree(const std::wstring& path, std::set<std::wstring>& lines) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
  wchar_t name[1024];
  for (DWORD i = 0;; ++i) {
    DWORD length = 1024, size = 4096, type = 0;
    BYTE data[4096];
    if (RegEnumValueW(key, i, name, &length, nullptr, &type, data, &size) != ERROR_SUCCESS) break;
    const std::wstring value(reinterpret_cast<wchar_t*>(data), type == REG_SZ ? size / 2 - 1 : 0);
    lines.insert(path + L"|" + name + L"=" + value);
  }
  for (DWORD i = 0;; ++i) {
    DWORD length = 1024;
    if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    lines.insert(path + L"\\" + name);
    ReadTree(path + L"\\" + name, lines);
  }
  RegCloseKey(key);
}

std::set<std::wstring> UserClasses() {
  std::set<std::wstring> lines;
  ReadTree(L"Software\\Classes", lines);
  return lines;
}

class RegistrationTest : public ServerTest {
 protected:
  HRESULT RegisterForTheMachine() const { return Run("DllRegisterServer"); }
  HRESULT UnregisterForTheMachine() const { return Run("DllUnregisterServer"); }

 private:
  HRESULT Run(const char* entry) const {
    return server_.Find<HRESULT STDMETHODCALLTYPE()>(entry)();
  }
};

TEST_F(RegistrationTest, LeavesNothingBehind) {
  // What a run that was broken off may have left.
  ASSERT_EQ(server_.Install(false, L"user"), S_OK);
  // Another library's entries must survive: a key below, a value beside.
  RegSetValueW(HKEY_CURRENT_USER, L"Software\\Classes\\Interface\\{other}", REG_SZ, L"other", 0);
  RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Classes\\TypeLib", L"other", REG_SZ, L"", 2);
  const auto before = UserClasses();
  ASSERT_EQ(server_.Install(true, L"user"), S_OK);
  const auto registered = UserClasses();
  EXPECT_GT(registered.size(), before.size() + 300);
  EXPECT_EQ(std::count_if(registered.begin(), registered.end(),
                          [](const std::wstring& line) {
                            return line.ends_with(L"\\InprocServer32|ThreadingModel=Apartment");
                          }),
            static_cast<std::ptrdiff_t>(PublishedClasses().size()));
  EXPECT_EQ(server_.Install(true, L"user"), S_OK);
  EXPECT_EQ(UserClasses(), registered);
  EXPECT_EQ(server_.Install(false, L"user"), S_OK);
  EXPECT_EQ(UserClasses(), before);
  EXPECT_EQ(server_.Install(false, L"user"), S_OK);
  RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Classes\\Interface\\{other}");
  RegDeleteKeyValueW(HKEY_CURRENT_USER, L"Software\\Classes\\TypeLib", L"other");
}

// What all programs of the machine share stays when it looks empty.
TEST_F(RegistrationTest, TheMachinesContainersStay) {
  constexpr const wchar_t* kMachine = L"Software\\Classes\\VNDoc6Test.Machine";
  HKEY machine = nullptr;
  ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, kMachine, &machine), ERROR_SUCCESS);
  ASSERT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine), ERROR_SUCCESS);
  EXPECT_EQ(RegisterForTheMachine(), S_OK);
  EXPECT_EQ(UnregisterForTheMachine(), S_OK);
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  std::set<std::wstring> left;
  ReadTree(kMachine, left);
  const std::wstring classes = std::wstring(kMachine) + L"\\Software\\Classes";
  EXPECT_THAT(left, testing::ElementsAre(std::wstring(kMachine) + L"\\Software", classes,
                                         classes + L"\\CLSID", classes + L"\\Interface",
                                         classes + L"\\TypeLib"));
  RegCloseKey(machine);
  RegDeleteTreeW(HKEY_CURRENT_USER, kMachine);
}

// Both go by the same programmatic identifiers.
TEST_F(RegistrationTest, TheOtherBitnessKeepsItsNames) {
  EXPECT_EQ(UnregisterForTheMachine(), S_OK);
  constexpr REGSAM kOtherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
  const automation::ClassInfo& info = PublishedClasses()[0].info();
  wchar_t class_id[40];
  StringFromGUID2(ToIid(info.class_id()), class_id, 40);
  const std::wstring key = std::wstring(L"Software\\Classes\\CLSID\\") + class_id;
  const std::wstring name =
      AsWide(u"Software\\Classes\\" + automation::FromUtf8(ProgrammaticId(info)));
  const auto is_there = [](const std::wstring& path) {
    HKEY found = nullptr;
    if (RegOpenKeyW(HKEY_LOCAL_MACHINE, path.c_str(), &found) != ERROR_SUCCESS) return false;
    RegCloseKey(found);
    return true;
  };
  HKEY other = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_WRITE | kOtherView,
                            nullptr, &other, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(other);
  // A system of one bitness has one view.
  const bool two_views = !is_there(key);
  EXPECT_EQ(RegisterForTheMachine(), S_OK);
  EXPECT_EQ(UnregisterForTheMachine(), S_OK);
  EXPECT_EQ(is_there(name), two_views);
  RegDeleteKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), kOtherView, 0);
  EXPECT_EQ(UnregisterForTheMachine(), S_OK);
  EXPECT_FALSE(is_there(name));
}

// As a user without an administrator's rights does it.
TEST_F(RegistrationTest, RegistersForTheUserThroughRegsvr32) {
  const auto run = [](std::wstring options) {
    std::wstring line = L"regsvr32.exe /s /n " + options + L" \"" + AsWide(Server::Path()) + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    DWORD code = 1;
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
      return code;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return code;
  };
  ASSERT_EQ(server_.Install(true, L"user"), S_OK);
  const auto expected = UserClasses();
  ASSERT_EQ(server_.Install(false, L"user"), S_OK);
  const auto before = UserClasses();
  EXPECT_EQ(run(L"/i:user"), 0u);
  EXPECT_EQ(UserClasses(), expected);
  EXPECT_EQ(run(L"/u /i:user"), 0u);
  EXPECT_EQ(UserClasses(), before);
}

// For the whole machine: Wine looks up programmatic identifiers nowhere else.
TEST_F(RegistrationTest, MakesEveryClassCreatableByName) {
  ASSERT_EQ(RegisterForTheMachine(), S_OK);
  for (const PublishedClass& published : PublishedClasses()) {
    const automation::ClassInfo& info = published.info();
    SCOPED_TRACE(info.name());
    CLSID class_id;
    ASSERT_EQ(CLSIDFromProgID(AsWide(automation::FromUtf8(ProgrammaticId(info))), &class_id), S_OK);
    EXPECT_EQ(class_id, ToIid(info.class_id()));
    void* object = nullptr;
    ASSERT_EQ(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, ToIid(info.interface_id()),
                               &object),
              S_OK);
    static_cast<IUnknown*>(object)->Release();
  }
  ComPtr<ITypeLib> library;
  EXPECT_EQ(LoadRegTypeLib(ToIid(kLibraryId), 6, 0, 0, library.Receive()), S_OK);
  library = {};
  EXPECT_EQ(UnregisterForTheMachine(), S_OK);
}

TEST_F(RegistrationTest, RefusesWhatItDoesNotOffer) {
  EXPECT_FALSE(server_.Factory(CLSID_StdFont));
  const auto factory = server_.Factory(ToIid(PublishedClasses()[0].info().class_id()));
  ASSERT_TRUE(factory);
  void* object = &object;
  EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IPersistFile, &object), E_NOINTERFACE);
}

// What Explorer shows of the file.
TEST_F(RegistrationTest, TheFileTellsItsVersion) {
  const Text path = Server::Path();
  std::vector<std::byte> block(GetFileVersionInfoSizeW(AsWide(path), nullptr));
  ASSERT_FALSE(block.empty());
  ASSERT_TRUE(GetFileVersionInfoW(AsWide(path), 0, static_cast<DWORD>(block.size()), block.data()));
  void* found = nullptr;
  UINT size = 0;
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", &found, &size));
  const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(found);
  EXPECT_EQ(HIWORD(fixed->dwFileVersionMS), kLibraryMajorVersion);
  EXPECT_EQ(LOWORD(fixed->dwFileVersionMS), kLibraryMinorVersion);
  EXPECT_EQ(fixed->dwFileType, static_cast<DWORD>(VFT_DLL));
  ASSERT_TRUE(
      VerQueryValueW(block.data(), L"\\StringFileInfo\\040904B0\\ProductName", &found, &size));
  EXPECT_STREQ(static_cast<const wchar_t*>(found), L"VNDoc6");
}

TEST_F(RegistrationTest, StaysLoadedWhileAnythingIsHeld) {
  EXPECT_EQ(server_.CanUnloadNow(), S_OK);
  {
    const auto factory = server_.Factory(ToIid(PublishedClasses()[0].info().class_id()));
    EXPECT_EQ(server_.CanUnloadNow(), S_FALSE);
    factory->LockServer(TRUE);
    factory->LockServer(FALSE);
  }
  const auto document = server_.Create("vnDocument");
  EXPECT_EQ(server_.CanUnloadNow(), S_FALSE);
}

// An object and sink of the host's that asks when it goes whether the DLL can be unloaded, as
// hosts do that clean up. Both that and its handler of events may let go of `held`.
class Witness final : public ComObject<IDispatch> {
 public:
  struct Test {
    const Server& server;
    std::vector<ComPtr<IUnknown>> held;
    std::vector<HRESULT> answers;
  };
  explicit Witness(Test& test) : test_(test) {}
  ~Witness() override { Ask(); }

  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    Ask();
    return S_OK;
  }

 private:
  void Ask() {
    test_.held.clear();
    test_.answers.push_back(test_.server.CanUnloadNow());
  }
  Test& test_;
};

// A document that is all a host has, with one witness among its sinks and one among its values.
struct Witnessed {
  explicit Witnessed(const Server& server) : test{server, {}, {}} {
    document = server.Create("vnDocument");
    step = Call(document, L"NewStep").value.Object();
    Put(document, L"ChangeEvents", true);
    ComPtr<IEnumConnectionPoints> points;
    document.As<IConnectionPointContainer>()->EnumConnectionPoints(points.Receive());
    points->Next(1, point.Receive(), nullptr);
    EXPECT_EQ(point->Advise(MakeCom<Witness>(test).get(), &cookie), S_OK);
    const auto bag = Get(step, L"Properties").value.Object();
    EXPECT_EQ(Call(bag, L"Add", {L"w", MakeCom<Witness>(test)}).code, S_OK);
  }
  // The next witness that is asked lets go of the host's references; `used` is among them.
  template <class Interface>
  Interface* LeaveToWitness(const ComPtr<Interface>& used) {
    Interface* const raw = used.get();
    test.held = {document.As<IUnknown>(), step.As<IUnknown>(), point.As<IUnknown>()};
    document = step = {};
    point = {};
    return raw;
  }

  Witness::Test test;
  ComPtr<IDispatch> document, step;
  ComPtr<IConnectionPoint> point;
  DWORD cookie = 0;
};

TEST_F(RegistrationTest, StaysLoadedUntilTheLastReferenceHasLetGoOfEverything) {
  Witnessed host(server_);
  host.point = {};
  host.document = {};
  host.step = {};
  EXPECT_THAT(host.test.answers, testing::ElementsAre(S_FALSE, S_FALSE));
}

TEST_F(RegistrationTest, StaysLoadedWhileACallRuns) {
  // Straight to the slot, and with an argument to convert.
  for (Value key : {Value(L"a"), Value(5)}) {
    Witnessed host(server_);
    const DISPID id = IdOf(host.step.get(), L"ContainerKey");
    IDispatch* const step = host.LeaveToWitness(host.step);
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{&key, &put, 1, 1};
    EXPECT_EQ(
        step->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr),
        S_OK);
    EXPECT_THAT(host.test.answers, testing::ElementsAre(S_FALSE, S_FALSE, S_FALSE));
  }
  Witnessed host(server_);
  IConnectionPoint* const point = host.LeaveToWitness(host.point);
  EXPECT_EQ(point->Unadvise(host.cookie), S_OK);
  EXPECT_THAT(host.test.answers, testing::ElementsAre(S_FALSE, S_FALSE));
}

// A process may load two copies, as this one has a second one built in.
TEST_F(RegistrationTest, ObjectsOfAnotherCopyAreAHosts) {
  const auto step = server_.Create("vnStep");
  EXPECT_TRUE(dynamic_cast<ForeignObject*>(ImportObject(step.get()).get()));
  const auto own = ExportObject(*automation::Make<Gadget>());
  const auto bag = server_.Create("Properties");
  EXPECT_EQ(Call(bag, L"Add", {L"k", own}).code, S_OK);
  EXPECT_EQ(Put(server_.Create("vnFigure"), L"Step", own, DISPATCH_PROPERTYPUTREF).code,
            DISP_E_TYPEMISMATCH);
}

}  // namespace
}  // namespace vndoc6::com
