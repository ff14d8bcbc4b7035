// Registering and unregistering the DLL, and when it may be unloaded.
#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "published/library.h"
#include "tests/windows/server.h"

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

class RegistrationTest : public ServerTest {};

TEST_F(RegistrationTest, LeavesNothingBehind) {
  // What a run that was broken off may have left.
  ASSERT_EQ(server_.Install(false, L"user"), S_OK);
  // Another library's entries must survive.
  HKEY other = nullptr;
  RegCreateKeyW(HKEY_CURRENT_USER, L"Software\\Classes\\Interface\\{other}", &other);
  RegCloseKey(other);
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
  using Entry = HRESULT STDMETHODCALLTYPE();
  ASSERT_EQ(server_.Find<Entry>("DllRegisterServer")(), S_OK);
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
  EXPECT_EQ(server_.Find<Entry>("DllUnregisterServer")(), S_OK);
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

}  // namespace
}  // namespace vndoc6::com
