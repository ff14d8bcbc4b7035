#include <windows.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/file_system.h"
#include "platform/keys.h"
#include "platform/read_to_end.h"

namespace vndoc6::platform {
namespace {

constexpr size_t kLargestPiece = size_t{1} << 30;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// An open file, closed at the end.
class File {
 public:
  File(const std::wstring& name, DWORD access, DWORD sharing, DWORD creation, DWORD flags = 0)
      : file_(::CreateFileW(name.c_str(), access, sharing, nullptr, creation,
                            FILE_ATTRIBUTE_NORMAL | flags, nullptr)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { Close(); }

  bool IsOpen() const { return file_ != INVALID_HANDLE_VALUE; }
  HANDLE handle() const { return file_; }
  bool IsRegular() const { return IsOpen() && ::GetFileType(file_) == FILE_TYPE_DISK; }
  // How many bytes came, 0 at the end; nothing on failure.
  std::optional<size_t> Read(char* bytes, size_t size) const {
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(std::min(size, kLargestPiece));
    if (!::ReadFile(file_, bytes, wanted, &count, nullptr)) return std::nullopt;
    return count;
  }
  bool WriteAll(std::string_view bytes) const {
    while (!bytes.empty()) {
      DWORD count = 0;
      const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kLargestPiece));
      if (!::WriteFile(file_, bytes.data(), wanted, &count, nullptr) || count == 0) return false;
      bytes.remove_prefix(count);
    }
    return true;
  }
  bool Flush() const { return ::FlushFileBuffers(file_) != 0; }
  bool Close() {
    if (!IsOpen()) return true;
    return ::CloseHandle(std::exchange(file_, INVALID_HANDLE_VALUE)) != 0;
  }

 private:
  HANDLE file_;
};

// The name as the system wants it; empty, which names no file, when it can have no such form.
std::wstring SystemName(TextView name) {
  if (name.find(u'\0') != name.npos) return {};
  return {name.begin(), name.end()};
}

bool Exists(const std::wstring& name) {
  return ::GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// False for a folder and for a file that is marked as not to be written.
bool MayReplace(const std::wstring& name) {
  constexpr DWORD kForbidding = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
  const DWORD attributes = ::GetFileAttributesW(name.c_str());
  return !name.empty() &&
         (attributes == INVALID_FILE_ATTRIBUTES || (attributes & kForbidding) == 0);
}

// The name behind all links, so that replacing the file keeps them.
std::wstring FollowLinks(const std::wstring& name) {
  const DWORD attributes = ::GetFileAttributesW(name.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_REPARSE_POINT)) {
    return name;
  }
  const File target(name, 0, kShareAll, OPEN_EXISTING);
  std::array<wchar_t, 32768> path;
  const DWORD size = target.IsOpen()
                         ? ::GetFinalPathNameByHandleW(target.handle(), path.data(),
                                                       static_cast<DWORD>(path.size()), 0)
                         : 0;
  return size > 0 && size < path.size() ? std::wstring(path.data(), size) : name;
}

// A fresh name in the folder of `name`.
std::wstring FreshNameBeside(const std::wstring& name) {
  const size_t folder_end = name.find_last_of(L"\\/:");
  const std::wstring folder = folder_end != name.npos ? name.substr(0, folder_end + 1) : L"";
  return folder + L"." + SystemName(NewKey()) + L".tmp";
}

// A fresh file beside the one it is to replace; gone again unless it did.
class Replacement {
 public:
  // `target` is no link, or one that is to be replaced.
  explicit Replacement(std::wstring target)
      : target_(std::move(target)),
        name_(FreshNameBeside(target_)),
        file_(name_, GENERIC_WRITE, 0, CREATE_NEW),
        discard_(file_.IsOpen()) {}
  ~Replacement() {
    file_.Close();
    if (discard_) ::DeleteFileW(name_.c_str());
  }

  bool Write(std::string_view bytes) const { return file_.IsOpen() && file_.WriteAll(bytes); }

  // Puts the file in its place for good, unless `before_placing` forbids it.
  bool Place(const std::function<bool()>& before_placing = {}) {
    if (!file_.Flush() || !file_.Close()) return false;
    if (before_placing && !before_placing()) return false;
    const bool replaces = Exists(target_);
    const bool placed = Move();
    // A replacing that failed half-way may have left the fresh file as the only one.
    discard_ = !placed && (!replaces || Exists(target_));
    return placed;
  }

 private:
  // A program that reads the target just now may be in the way for a moment.
  bool Move() const {
    constexpr DWORD kPause = 10;
    for (int tries = 50; tries > 0; --tries) {
      // Replacing keeps permissions and attributes, where there is a file and its system can do it.
      if (::ReplaceFileW(target_.c_str(), name_.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                         nullptr, nullptr) ||
          ::MoveFileExW(name_.c_str(), target_.c_str(),
                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return true;
      }
      const DWORD error = ::GetLastError();
      if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED) return false;
      ::Sleep(kPause);
    }
    return false;
  }

  std::wstring target_;
  std::wstring name_;
  File file_;
  bool discard_;
};

std::optional<WIN32_FILE_ATTRIBUTE_DATA> StatusOf(TextView name) {
  WIN32_FILE_ATTRIBUTE_DATA status{};
  if (!::GetFileAttributesExW(SystemName(name).c_str(), GetFileExInfoStandard, &status) ||
      (status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
    return std::nullopt;
  }
  return status;
}

}  // namespace

bool FileExists(TextView name) { return StatusOf(name).has_value(); }

std::optional<std::string> ReadWholeFile(TextView name) {
  const File file(SystemName(name), GENERIC_READ, kShareAll, OPEN_EXISTING,
                  FILE_FLAG_SEQUENTIAL_SCAN);
  LARGE_INTEGER length{};
  if (!file.IsRegular() || !::GetFileSizeEx(file.handle(), &length)) return std::nullopt;
  return ReadToEnd(file, static_cast<size_t>(length.QuadPart));
}

bool ReplaceFileWith(TextView name, std::string_view bytes,
                     const std::function<bool()>& before_placing) {
  const std::wstring target = SystemName(name);
  if (!MayReplace(target)) return false;
  Replacement replacement(FollowLinks(target));
  return replacement.Write(bytes) && replacement.Place(before_placing);
}

bool MayReplaceFile(TextView name) { return MayReplace(SystemName(name)); }

bool CopyFileTo(TextView from, TextView to) {
  const File source(SystemName(from), GENERIC_READ, kShareAll, OPEN_EXISTING,
                    FILE_FLAG_SEQUENTIAL_SCAN);
  const std::wstring target = SystemName(to);
  if (!source.IsRegular() || !MayReplace(target)) return false;
  Replacement replacement(target);
  std::array<char, 65536> piece;
  while (const auto count = source.Read(piece.data(), piece.size())) {
    if (*count == 0) return replacement.Place();
    if (!replacement.Write({piece.data(), *count})) return false;
  }
  return false;
}

bool DeleteFileNamed(TextView name) { return ::DeleteFileW(SystemName(name).c_str()) != 0; }

Made MakeEmptyFile(TextView name) {
  const File file(SystemName(name), GENERIC_WRITE, 0, CREATE_NEW);
  if (file.IsOpen()) return Made::kYes;
  return ::GetLastError() == ERROR_FILE_EXISTS ? Made::kNameIsTaken : Made::kNo;
}

std::optional<FileIdentity> IdentityOf(TextView name) {
  const File file(SystemName(name), 0, kShareAll, OPEN_EXISTING);
  BY_HANDLE_FILE_INFORMATION status{};
  if (!file.IsRegular() || !::GetFileInformationByHandle(file.handle(), &status)) {
    return std::nullopt;
  }
  return FileIdentity{status.dwVolumeSerialNumber,
                      uint64_t{status.nFileIndexHigh} << 32 | status.nFileIndexLow};
}

std::optional<int64_t> ModificationTime(TextView name) {
  const auto status = StatusOf(name);
  if (!status) return std::nullopt;
  const FILETIME& time = status->ftLastWriteTime;
  return static_cast<int64_t>(uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

}  // namespace vndoc6::platform
