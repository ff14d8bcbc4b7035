#include <windows.h>

#include <filesystem>
#include <memory>

#include "command.h"
#include "process.h"
#include "vndoc6/automation/text.h"

namespace vndoc {
namespace {

std::wstring Wide(const std::string& text) {
  const Text units = vndoc6::automation::FromUtf8(text);
  return {units.begin(), units.end()};
}

[[noreturn]] void Fail(const std::string& what) {
  const std::error_code error(static_cast<int>(GetLastError()), std::system_category());
  throw Failure(what + ": " + error.message());
}

struct CloseIt {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<HANDLE, CloseIt>;

Handle OpenInheritable(const wchar_t* name, DWORD access, DWORD creation, DWORD flags) {
  SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
  constexpr DWORD kSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE handle = CreateFileW(name, access, kSharing, &inheritable, creation, flags, nullptr);
  if (handle == INVALID_HANDLE_VALUE) Fail("a temporary file can't be opened");
  return Handle(handle);
}

// Gone as soon as nobody has it open, whatever happens.
Handle TemporaryFile() {
  wchar_t folder[MAX_PATH + 1];
  wchar_t name[MAX_PATH + 1];
  if (GetTempPathW(MAX_PATH, folder) == 0 || GetTempFileNameW(folder, L"vnd", 0, name) == 0) {
    Fail("no temporary file");
  }
  return OpenInheritable(name, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING,
                         FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE);
}

void Rewind(HANDLE file) { SetFilePointer(file, 0, nullptr, FILE_BEGIN); }

void Write(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    constexpr size_t kAtOnce = size_t{1} << 30;
    DWORD written = 0;
    const auto size = static_cast<DWORD>(std::min(bytes.size(), kAtOnce));
    if (WriteFile(file, bytes.data(), size, &written, nullptr) == 0) {
      Fail("a temporary file can't be written");
    }
    bytes.remove_prefix(written);
  }
  Rewind(file);
}

std::string Read(HANDLE file) {
  Rewind(file);
  std::string bytes;
  char part[65536];
  for (DWORD size = 0;; bytes.append(part, size)) {
    if (ReadFile(file, part, sizeof part, &size, nullptr) == 0) {
      Fail("a temporary file can't be read");
    }
    if (size == 0) return bytes;
  }
}

// As programs take their command line apart: backslashes count only in front of a quote.
std::wstring Quoted(const std::wstring& argument) {
  std::wstring quoted = L"\"";
  size_t backslashes = 0;
  for (const wchar_t unit : argument) {
    if (unit == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = unit == L'\\' ? backslashes + 1 : 0;
    quoted += unit;
  }
  quoted.append(backslashes, L'\\');
  return quoted + L'"';
}

// Empty for a program that is not there.
std::wstring FindProgram(const std::wstring& name) {
  SetSearchPathMode(BASE_SEARCH_PATH_ENABLE_SAFE_SEARCHMODE);
  wchar_t path[MAX_PATH + 1];
  const DWORD size = SearchPathW(nullptr, name.c_str(), L".exe", MAX_PATH, path, nullptr);
  return size == 0 || size > MAX_PATH ? std::wstring() : std::wstring(path, size);
}

}  // namespace

std::optional<Ended> RunProgram(const std::string& name, const std::vector<std::string>& arguments,
                                std::string_view input) {
  const std::wstring program = FindProgram(Wide(name));
  if (program.empty()) return std::nullopt;
  std::wstring command_line = Quoted(program);
  for (const std::string& argument : arguments) command_line += L' ' + Quoted(Wide(argument));
  const Handle in = TemporaryFile();
  const Handle out = TemporaryFile();
  const Handle errors = TemporaryFile();
  Write(in.get(), input);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = in.get();
  startup.hStdOutput = out.get();
  startup.hStdError = errors.get();
  PROCESS_INFORMATION started{};
  if (CreateProcessW(program.c_str(), command_line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                     nullptr, nullptr, &startup, &started) == 0) {
    Fail(name);
  }
  const Handle process(started.hProcess);
  const Handle thread(started.hThread);
  WaitForSingleObject(process.get(), INFINITE);
  DWORD status = 1;
  GetExitCodeProcess(process.get(), &status);
  return Ended{static_cast<int>(status), Read(out.get()), Read(errors.get())};
}

}  // namespace vndoc
