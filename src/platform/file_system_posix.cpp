#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <utility>

#include "platform/file_access_posix.h"
#include "platform/file_calls.h"
#include "platform/file_system.h"
#include "platform/keys.h"
#include "platform/read_to_end.h"

namespace vndoc6::platform {
namespace {

// Some systems refuse larger pieces.
constexpr size_t kLargestPiece = size_t{1} << 30;
// As many links as the kernel follows.
constexpr int kMostLinks = 40;

int FlushToDisk(int file) {
#ifdef F_FULLFSYNC
  // There, fsync alone leaves the bytes in the drive's cache. Not every file system has the call.
  if (::fcntl(file, F_FULLFSYNC) == 0) return 0;
#endif
  return ::fsync(file);
}

// Repeats a call that a signal interrupted.
template <class Call>
auto Retried(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

// An open file, closed at the end.
class File {
 public:
  File(const std::string& name, int flags, unsigned mode = 0)
      : file_(Retried([&] { return file_calls().open(name.c_str(), flags | O_CLOEXEC, mode); })),
        open_error_(IsOpen() ? 0 : errno) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { Close(); }

  bool IsOpen() const { return file_ != -1; }
  int handle() const { return file_; }
  int open_error() const { return open_error_; }
  // Its status when it is a regular file.
  std::optional<struct stat> RegularStatus() const {
    struct stat status {};
    if (!IsOpen() || file_calls().fstat(file_, &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode)) return std::nullopt;
    return status;
  }
  // How many bytes came, 0 at the end; nothing on failure.
  std::optional<size_t> Read(char* bytes, size_t size) const {
    const auto count =
        Retried([&] { return file_calls().read(file_, bytes, std::min(size, kLargestPiece)); });
    if (count < 0) return std::nullopt;
    return static_cast<size_t>(count);
  }
  bool WriteAll(std::string_view bytes) const {
    while (!bytes.empty()) {
      const auto count = Retried([&] {
        return file_calls().write(file_, bytes.data(), std::min(bytes.size(), kLargestPiece));
      });
      if (count <= 0) return false;
      bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
  }
  bool SetMode(unsigned mode) const {
    return Retried([&] { return file_calls().fchmod(file_, mode); }) == 0;
  }
  bool Flush() const {
    return Retried([&] { return file_calls().fsync(file_); }) == 0;
  }
  // False when the system reports a late failure of a write.
  bool Close() {
    if (!IsOpen()) return true;
    // Interrupted or not, the file is closed afterwards.
    return file_calls().close(std::exchange(file_, -1)) == 0 || errno == EINTR;
  }

 private:
  int file_;
  int open_error_;
};

// The name as the system wants it; empty, which names no file, when it can have no such form.
std::string SystemName(TextView name) {
  return name.find(u'\0') == name.npos ? automation::ToUtf8(name) : std::string();
}

// The part of a name up to its last '/', or "./".
std::string FolderOf(const std::string& name) {
  const size_t slash = name.rfind('/');
  return slash != name.npos ? name.substr(0, slash + 1) : std::string("./");
}

// What the link `name` points to; nothing when it is no link.
std::optional<std::string> LinkTarget(const std::string& name) {
  std::array<char, 4096> target;
  const auto size = file_calls().readlink(name.c_str(), target.data(), target.size());
  if (size <= 0 || static_cast<size_t>(size) == target.size()) return std::nullopt;
  const std::string_view text(target.data(), static_cast<size_t>(size));
  return text.front() == '/' ? std::string(text) : FolderOf(name).append(text);
}

// The name behind all links, so that replacing the file keeps them.
std::string FollowLinks(std::string name) {
  for (int followed = 0; followed < kMostLinks; ++followed) {
    auto target = LinkTarget(name);
    if (!target) break;
    name = std::move(*target);
  }
  return name;
}

// A fresh file beside the one it is to replace; gone again unless it did.
class Replacement {
 public:
  // `target` is no link, or one that is to be replaced. Without an access it gets that of any
  // new file.
  Replacement(std::string target, std::optional<FileAccess> access)
      : target_(std::move(target)),
        name_(FolderOf(target_) + "." + automation::ToUtf8(NewKey()) + ".tmp"),
        access_(std::move(access)),
        folder_(FolderOf(target_), O_RDONLY | O_DIRECTORY),
        // Nobody else may read it before it has its own access.
        file_(name_, O_WRONLY | O_CREAT | O_EXCL, access_ ? 0600 : 0666),
        discard_(file_.IsOpen()) {}
  ~Replacement() {
    if (discard_) file_calls().unlink(name_.c_str());
  }

  bool Write(std::string_view bytes) const { return file_.IsOpen() && file_.WriteAll(bytes); }

  // Puts the file in its place for good, unless `before_placing` forbids it.
  bool Place(const std::function<bool()>& before_placing = {}) {
    // A folder that may be written but not read can't be flushed.
    if (!folder_.IsOpen() && folder_.open_error() != EACCES) return false;
    if (access_ && !file_.SetMode(KeepAccess(file_.handle(), *access_))) return false;
    if (!file_.Flush() || !file_.Close()) return false;
    if (before_placing && !before_placing()) return false;
    if (file_calls().rename(name_.c_str(), target_.c_str()) != 0) return false;
    discard_ = false;
    // Nor can every file system flush a folder.
    return !folder_.IsOpen() || folder_.Flush() || errno == EINVAL || errno == ENOTSUP;
  }

 private:
  std::string target_;
  std::string name_;
  std::optional<FileAccess> access_;
  File folder_;
  File file_;
  bool discard_;
};

// False when `name` must not be replaced: a file that can't be written, a folder, a device. Else
// sets the access to that of the file that is there, if any.
bool MayReplace(const std::string& name, std::optional<FileAccess>& access) {
  if (name.empty()) return false;
  // Without blocking: opening a pipe that nobody reads waits for ever.
  const File previous(name, O_WRONLY | O_NONBLOCK);
  if (!previous.IsOpen()) return previous.open_error() == ENOENT;
  const auto status = previous.RegularStatus();
  if (status) access = AccessOf(previous.handle(), *status);
  return status.has_value();
}

std::optional<struct stat> StatusOf(TextView name) {
  struct stat status {};
  if (file_calls().stat(SystemName(name).c_str(), &status) != 0) return std::nullopt;
  return status;
}

}  // namespace

FileCalls& file_calls() {
  static FileCalls calls{
      [](const char* name, int flags, unsigned mode) {
        return ::open(name, flags, static_cast<mode_t>(mode));
      },
      [](int file, struct stat* result) { return ::fstat(file, result); },
      [](const char* name, struct stat* result) { return ::stat(name, result); },
      &::readlink,
      &::read,
      &::write,
      [](int file, unsigned mode) { return ::fchmod(file, static_cast<mode_t>(mode)); },
      &FlushToDisk,
      &::close,
      [](const char* from, const char* to) { return ::rename(from, to); },
      &::unlink};
  return calls;
}

bool FileExists(TextView name) {
  const auto status = StatusOf(name);
  return status && !S_ISDIR(status->st_mode);
}

std::optional<std::string> ReadWholeFile(TextView name) {
  const File file(SystemName(name), O_RDONLY | O_NONBLOCK);
  const auto status = file.RegularStatus();
  if (!status) return std::nullopt;
  return ReadToEnd(file, static_cast<size_t>(status->st_size));
}

bool ReplaceFileWith(TextView name, std::string_view bytes,
                     const std::function<bool()>& before_placing) {
  const std::string target = SystemName(name);
  std::optional<FileAccess> access;
  if (!MayReplace(target, access)) return false;
  Replacement replacement(FollowLinks(target), std::move(access));
  return replacement.Write(bytes) && replacement.Place(before_placing);
}

bool MayReplaceFile(TextView name) {
  std::optional<FileAccess> ignored;
  return MayReplace(SystemName(name), ignored);
}

bool CopyFileTo(TextView from, TextView to) {
  const File source(SystemName(from), O_RDONLY | O_NONBLOCK);
  const auto status = source.RegularStatus();
  const std::string target = SystemName(to);
  std::optional<FileAccess> ignored;
  if (!status || !(LinkTarget(target) || MayReplace(target, ignored))) return false;
  // A copy is no easier to read than what was copied.
  Replacement replacement(target, AccessOf(source.handle(), *status));
  std::array<char, 65536> piece;
  while (const auto count = source.Read(piece.data(), piece.size())) {
    if (*count == 0) return replacement.Place();
    if (!replacement.Write({piece.data(), *count})) return false;
  }
  return false;
}

bool DeleteFileNamed(TextView name) { return file_calls().unlink(SystemName(name).c_str()) == 0; }

Made MakeEmptyFile(TextView name) {
  const File file(SystemName(name), O_WRONLY | O_CREAT | O_EXCL, 0600);
  if (file.IsOpen()) return Made::kYes;
  return file.open_error() == EEXIST ? Made::kNameIsTaken : Made::kNo;
}

std::optional<FileIdentity> IdentityOf(TextView name) {
  const auto status = StatusOf(name);
  if (!status) return std::nullopt;
  return FileIdentity{static_cast<uint64_t>(status->st_dev), static_cast<uint64_t>(status->st_ino)};
}

std::optional<int64_t> ModificationTime(TextView name) {
  const auto status = StatusOf(name);
  if (!status || S_ISDIR(status->st_mode)) return std::nullopt;
#ifdef __APPLE__
  const struct timespec& time = status->st_mtimespec;
#else
  const struct timespec& time = status->st_mtim;
#endif
  // Ticks of 100 ns, which hold any year up to 29,000.
  constexpr int64_t kTicksPerSecond = 10'000'000;
  constexpr int64_t kMostSeconds = std::numeric_limits<int64_t>::max() / kTicksPerSecond - 1;
  const auto seconds = std::clamp<int64_t>(time.tv_sec, -kMostSeconds, kMostSeconds);
  return seconds * kTicksPerSecond + time.tv_nsec / 100;
}

}  // namespace vndoc6::platform
