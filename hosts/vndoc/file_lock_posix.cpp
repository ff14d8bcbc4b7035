#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "file_lock.h"

namespace vndoc {
namespace {

// Who may not write another one's lock may still wait for it.
int Open(const char* name) {
  constexpr int kFlags = O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const int file = open(name, O_RDWR | kFlags, 0666);
  return file < 0 && errno == EACCES ? open(name, O_RDONLY | (kFlags & ~O_CREAT)) : file;
}

bool Lock(int file) {
  int result = flock(file, LOCK_EX);
  while (result != 0 && errno == EINTR) result = flock(file, LOCK_EX);
  return result == 0;
}

// False when the one who had the lock has removed the file.
bool IsStillThere(int file, const char* name) {
  struct stat opened {};
  struct stat named {};
  return fstat(file, &opened) == 0 && lstat(name, &named) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

}  // namespace

class FileLock::Held {
 public:
  explicit Held(std::filesystem::path name) : name_(std::move(name)) {
    while ((file_ = Open(name_.c_str())) >= 0) {
      if (!Lock(file_) || IsStillThere(file_, name_.c_str())) return;
      close(file_);
    }
  }
  // Whoever waits for it finds it gone, and makes another.
  ~Held() {
    if (file_ < 0) return;
    unlink(name_.c_str());
    close(file_);
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

 private:
  std::filesystem::path name_;
  int file_ = -1;
};

FileLock::FileLock(const std::string& document)
    : held_(std::make_unique<Held>(LockName(document))) {}
FileLock::~FileLock() = default;

}  // namespace vndoc
