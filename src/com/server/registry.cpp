#include "com/server/registry.h"

#include <string>
#include <vector>

#include "com/type_library.h"
#include "vndoc6/published/library.h"
#include "vndoc6/published/published.h"

namespace vndoc6::com {
namespace {

using automation::ClassInfo;
using automation::FromUtf8;
using automation::Guid;

// One registry value below Software\Classes; an empty name is the key's default value.
struct Entry {
  Text key;
  Text name;
  Text value;
};

constexpr TextView kVersion = u"6.0";
static_assert(kLibraryMajorVersion == 6 && kLibraryMinorVersion == 0);
constexpr TextView kPlatform = sizeof(void*) == 8 ? u"win64" : u"win32";

Text GuidText(const Guid& guid) {
  wchar_t buffer[40];
  const int length = StringFromGUID2(ToIid(guid), buffer, 40);
  return Text(AsText(buffer, static_cast<size_t>(length - 1)));
}

Text ClassKey(const ClassInfo& info) { return u"CLSID\\" + GuidText(info.class_id()); }
Text ProgIdText(const ClassInfo& info) { return FromUtf8(ProgrammaticId(info)); }
Text InterfaceKey(const Guid& id) { return u"Interface\\" + GuidText(id); }
Text LibraryKey() { return u"TypeLib\\" + GuidText(kLibraryId); }
Text LibraryVersionKey() { return LibraryKey() + u"\\" + Text(kVersion); }
Text LibraryPlatformKey() { return LibraryVersionKey() + u"\\0\\" + Text(kPlatform); }

void AddClass(const ClassInfo& info, const Text& module, std::vector<Entry>& entries) {
  const Text key = ClassKey(info);
  const Text prog_id = ProgIdText(info);
  entries.push_back({key, u"", prog_id});
  entries.push_back({key + u"\\InprocServer32", u"", module});
  entries.push_back({key + u"\\InprocServer32", u"ThreadingModel", u"Apartment"});
  entries.push_back({key + u"\\ProgID", u"", prog_id});
  entries.push_back({key + u"\\Programmable", u"", u""});
  entries.push_back({key + u"\\TypeLib", u"", GuidText(kLibraryId)});
  entries.push_back({key + u"\\Version", u"", Text(kVersion)});
  entries.push_back({prog_id, u"", FromUtf8(info.help())});
  entries.push_back({prog_id + u"\\CLSID", u"", GuidText(info.class_id())});
}

void AddInterface(const Guid& id, const Text& name, const Guid& marshaller,
                  std::vector<Entry>& entries) {
  const Text key = InterfaceKey(id);
  entries.push_back({key, u"", name});
  entries.push_back({key + u"\\ProxyStubClsid32", u"", GuidText(marshaller)});
  entries.push_back({key + u"\\TypeLib", u"", GuidText(kLibraryId)});
  entries.push_back({key + u"\\TypeLib", u"Version", Text(kVersion)});
}

void AddTypeLibrary(const Text& module, std::vector<Entry>& entries) {
  entries.push_back({LibraryVersionKey(), u"", FromUtf8(kLibraryHelp)});
  entries.push_back({LibraryPlatformKey(), u"", module});
  entries.push_back({LibraryVersionKey() + u"\\FLAGS", u"", u"0"});
  entries.push_back(
      {LibraryVersionKey() + u"\\HELPDIR", u"", module.substr(0, module.rfind(u'\\'))});
}

std::vector<Entry> AllEntries() {
  const Text module = ModulePath();
  std::vector<Entry> entries;
  AddTypeLibrary(module, entries);
  for (const PublishedClass& published : PublishedClasses()) {
    const ClassInfo& info = published.info();
    AddClass(info, module, entries);
    AddInterface(info.interface_id(), FromUtf8(DefaultInterfaceName(info)), kDualMarshaller,
                 entries);
    if (published.events != nullptr) {
      AddInterface(published.events().id, FromUtf8(published.events().name), kDispatchMarshaller,
                   entries);
    }
  }
  return entries;
}

// An open registry key.
class Key {
 public:
  Key() = default;
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  HKEY get() const { return key_; }
  HKEY* Receive() { return &key_; }

 private:
  HKEY key_ = nullptr;
};

HKEY Root(Scope scope) { return scope == Scope::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE; }
Text Below(const Text& key) { return u"Software\\Classes\\" + key; }

LSTATUS Write(Scope scope, const Entry& entry) {
  Key key;
  const LSTATUS opened =
      RegCreateKeyExW(Root(scope), AsWide(Below(entry.key)), 0, nullptr, REG_OPTION_NON_VOLATILE,
                      KEY_SET_VALUE, nullptr, key.Receive(), nullptr);
  if (opened != ERROR_SUCCESS) return opened;
  const auto size = static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t));
  return RegSetValueExW(key.get(), AsWide(entry.name), 0, REG_SZ,
                        reinterpret_cast<const BYTE*>(entry.value.c_str()), size);
}

LSTATUS Delete(Scope scope, const Text& key) {
  const LSTATUS deleted = RegDeleteTreeW(Root(scope), AsWide(Below(key)));
  return deleted == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : deleted;
}

// The other view of the registry, where a system that runs programs of both bitnesses keeps the
// classes of the other one. Programmatic identifiers and type libraries stand in both.
constexpr REGSAM kOtherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

LSTATUS Open(Scope scope, const Text& name, REGSAM view, Key& key) {
  return RegOpenKeyExW(Root(scope), AsWide(Below(name)), 0, KEY_QUERY_VALUE | view, key.Receive());
}

// A key that can't be opened is there.
bool Exists(Scope scope, const Text& name, REGSAM view = 0) {
  Key key;
  const LSTATUS opened = Open(scope, name, view, key);
  return opened != ERROR_FILE_NOT_FOUND && opened != ERROR_PATH_NOT_FOUND;
}

// A key that can't be looked into is not empty.
bool IsEmpty(Scope scope, const Text& name) {
  Key key;
  if (Open(scope, name, 0, key) != ERROR_SUCCESS) return false;
  DWORD keys = 0, values = 0;
  const LSTATUS queried = RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &keys, nullptr,
                                           nullptr, &values, nullptr, nullptr, nullptr, nullptr);
  return queried == ERROR_SUCCESS && keys == 0 && values == 0;
}

// For keys that others put entries into as well. Never takes a key below along, not even one that
// was put there this moment.
LSTATUS DeleteIfEmpty(Scope scope, const Text& name) {
  if (!IsEmpty(scope, name)) return ERROR_SUCCESS;
  return RegDeleteKeyW(Root(scope), AsWide(Below(name)));
}

// The library's entry is shared by the DLLs of both bitnesses; the last one takes it along.
LSTATUS DeleteTypeLibrary(Scope scope) {
  const Text platforms = LibraryVersionKey() + u"\\0";
  LSTATUS status = Delete(scope, LibraryPlatformKey());
  if (status == ERROR_SUCCESS) status = DeleteIfEmpty(scope, platforms);
  if (status == ERROR_SUCCESS && !Exists(scope, platforms)) {
    status = Delete(scope, LibraryVersionKey());
  }
  return status == ERROR_SUCCESS ? DeleteIfEmpty(scope, LibraryKey()) : status;
}

// A user who has registered nothing else has no use for the keys around the entries. Those of the
// machine are everybody's and stay.
LSTATUS DeleteEmptyContainers() {
  LSTATUS status = ERROR_SUCCESS;
  for (const char16_t* container : {u"CLSID", u"Interface", u"TypeLib"}) {
    const LSTATUS deleted = DeleteIfEmpty(Scope::kUser, container);
    if (status == ERROR_SUCCESS) status = deleted;
  }
  return status;
}

}  // namespace

HRESULT RegisterModule(Scope scope) {
  for (const Entry& entry : AllEntries()) {
    const LSTATUS written = Write(scope, entry);
    if (written == ERROR_SUCCESS) continue;
    UnregisterModule(scope);
    return HRESULT_FROM_WIN32(static_cast<unsigned long>(written));
  }
  return S_OK;
}

HRESULT UnregisterModule(Scope scope) {
  LSTATUS failed = DeleteTypeLibrary(scope);
  const auto remove = [&](const Text& key) {
    const LSTATUS deleted = Delete(scope, key);
    if (failed == ERROR_SUCCESS) failed = deleted;
  };
  for (const PublishedClass& published : PublishedClasses()) {
    const ClassInfo& info = published.info();
    remove(ClassKey(info));
    // The DLL of the other bitness may still be registered, and goes by the same name.
    if (!Exists(scope, ClassKey(info), kOtherView)) remove(ProgIdText(info));
    remove(InterfaceKey(info.interface_id()));
    if (published.events != nullptr) remove(InterfaceKey(published.events().id));
  }
  if (failed == ERROR_SUCCESS && scope == Scope::kUser) failed = DeleteEmptyContainers();
  return failed == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(static_cast<unsigned long>(failed));
}

}  // namespace vndoc6::com
