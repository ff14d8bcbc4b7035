#include <windows.h>

#include <utility>

#include "file_lock.h"

namespace vndoc {

class FileLock::Held {
 public:
  // Nobody else can open it, and it is gone with its last handle.
  explicit Held(const std::filesystem::path& name) {
    constexpr DWORD kPause = 5;
    // While the file goes away it can't be opened; so it is where nothing may be written.
    int tries_without_access = 400;
    while (true) {
      file_ = ::CreateFileW(name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
      if (file_ != INVALID_HANDLE_VALUE) return;
      const DWORD error = ::GetLastError();
      const bool is_held = error == ERROR_SHARING_VIOLATION;
      const bool may_go = error == ERROR_ACCESS_DENIED && tries_without_access-- > 0;
      if (!is_held && !may_go) return;
      ::Sleep(kPause);
    }
  }
  ~Held() {
    if (file_ != INVALID_HANDLE_VALUE) ::CloseHandle(file_);
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

 private:
  HANDLE file_ = INVALID_HANDLE_VALUE;
};

FileLock::FileLock(const std::string& document)
    : held_(std::make_unique<Held>(LockName(document))) {}
FileLock::~FileLock() = default;

}  // namespace vndoc
