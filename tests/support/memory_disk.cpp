#include "tests/support/memory_disk.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace vndoc6::testing {
namespace {

int Fail(int error) {
  errno = error;
  return -1;
}

bool IsInFolder(const std::string& name) {
  const std::string_view folder = MemoryDisk::kFolder;
  return name.substr(0, folder.size()) == folder && name.find('/', folder.size()) == name.npos;
}

}  // namespace

template <class Result, class... Params>
void MemoryDisk::Serve(std::function<Result(Params...)>& call, const char* name,
                       Result (MemoryDisk::*serve)(Params...)) {
  call = [this, name, serve](Params... params) -> Result {
    const int error = fault(name);
    return error == 0 ? (this->*serve)(params...) : Fail(error);
  };
}

MemoryDisk::MemoryDisk() {
  platform::FileCalls& calls = platform::file_calls();
  Serve(calls.open, "open", &MemoryDisk::Open);
  Serve(calls.fstat, "fstat", &MemoryDisk::Fstat);
  Serve(calls.stat, "stat", &MemoryDisk::Stat);
  Serve(calls.readlink, "readlink", &MemoryDisk::Readlink);
  Serve(calls.read, "read", &MemoryDisk::Read);
  Serve(calls.write, "write", &MemoryDisk::Write);
  Serve(calls.fchmod, "fchmod", &MemoryDisk::Fchmod);
  Serve(calls.fsync, "fsync", &MemoryDisk::Fsync);
  Serve(calls.rename, "rename", &MemoryDisk::Rename);
  Serve(calls.unlink, "unlink", &MemoryDisk::Unlink);
  calls.close = [this](int file) {
    const int error = fault("close");
    // Whatever it reports, the system closes the file.
    Close(file);
    return error == 0 ? 0 : Fail(error);
  };
}

MemoryDisk::Files MemoryDisk::Now() const {
  Files files;
  for (const auto& [name, inode] : now_) files[name] = inode->bytes;
  return files;
}

MemoryDisk::Files MemoryDisk::AfterPowerLoss(uint32_t seed) const {
  Random random(seed);
  Folder folder = flushed_;
  for (const Change& change : pending_) {
    if (Below(random, 2) == 0) Apply(change, folder);
  }
  Files files;
  for (const auto& [name, inode] : folder) {
    std::string bytes = inode->bytes;
    if (bytes != inode->flushed) {
      // Anything between what was flushed and what was written, noise included.
      switch (Below(random, 3)) {
        case 0:
          bytes = inode->flushed;
          break;
        case 1:
          bytes.resize(Below(random, bytes.size() + 1));
          break;
        default:
          std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(Below(random, bytes.size() + 1)),
                    bytes.end(), '\0');
      }
    }
    files[name] = bytes;
  }
  return files;
}

void MemoryDisk::Start(const Files& files) {
  now_.clear();
  for (const auto& [name, bytes] : files) {
    now_[name] = std::make_shared<Inode>(Inode{bytes, bytes, ++time_});
  }
  flushed_ = now_;
  pending_.clear();
  open_.clear();
}

void MemoryDisk::Apply(const Change& change, Folder& folder) {
  folder.erase(change.removed);
  if (change.inode) folder[change.added] = change.inode;
}

void MemoryDisk::Do(const Change& change) {
  Apply(change, now_);
  pending_.push_back(change);
}

int MemoryDisk::Open(const char* name, int flags, unsigned /*mode*/) {
  OpenFile file;
  if (!(flags & O_DIRECTORY)) {
    const auto found = now_.find(name);
    if (found != now_.end()) {
      if (flags & O_EXCL) return Fail(EEXIST);
      file.inode = found->second;
    } else {
      if (!(flags & O_CREAT) || !IsInFolder(name)) return Fail(ENOENT);
      file.inode = std::make_shared<Inode>(Inode{{}, {}, ++time_});
      Do({{}, name, file.inode});
    }
  }
  open_[++next_file_] = file;
  return next_file_;
}

int MemoryDisk::Describe(const Inode& inode, struct stat* result) const {
  *result = {};
  result->st_mode = S_IFREG | 0644;
  result->st_ino = reinterpret_cast<ino_t>(&inode);
  result->st_size = static_cast<off_t>(inode.bytes.size());
  result->st_mtim.tv_sec = inode.time;
  return 0;
}

int MemoryDisk::Fstat(int file, struct stat* result) {
  return Describe(*open_.at(file).inode, result);
}

int MemoryDisk::Stat(const char* name, struct stat* result) {
  const auto found = now_.find(name);
  return found != now_.end() ? Describe(*found->second, result) : Fail(ENOENT);
}

std::ptrdiff_t MemoryDisk::Readlink(const char* /*name*/, char* /*target*/, size_t /*size*/) {
  return Fail(EINVAL);
}

std::ptrdiff_t MemoryDisk::Read(int file, void* bytes, size_t size) {
  OpenFile& open = open_.at(file);
  const size_t count = std::min(size, open.inode->bytes.size() - open.position);
  std::memcpy(bytes, open.inode->bytes.data() + open.position, count);
  open.position += count;
  return static_cast<std::ptrdiff_t>(count);
}

// In two pieces at least, so that the power can go between them.
std::ptrdiff_t MemoryDisk::Write(int file, const void* bytes, size_t size) {
  Inode& inode = *open_.at(file).inode;
  const size_t count = size > 1 ? size - size / 2 : size;
  inode.bytes.append(static_cast<const char*>(bytes), count);
  inode.time = ++time_;
  return static_cast<std::ptrdiff_t>(count);
}

int MemoryDisk::Fchmod(int /*file*/, unsigned /*mode*/) { return 0; }

int MemoryDisk::Fsync(int file) {
  if (const auto& inode = open_.at(file).inode) {
    inode->flushed = inode->bytes;
  } else {
    flushed_ = now_;
    pending_.clear();
  }
  return 0;
}

int MemoryDisk::Close(int file) { return open_.erase(file) == 1 ? 0 : Fail(EBADF); }

int MemoryDisk::Rename(const char* from, const char* to) {
  const auto found = now_.find(from);
  if (found == now_.end()) return Fail(ENOENT);
  Do({from, to, found->second});
  return 0;
}

int MemoryDisk::Unlink(const char* name) {
  if (now_.find(name) == now_.end()) return Fail(ENOENT);
  Do({name, {}, nullptr});
  return 0;
}

}  // namespace vndoc6::testing
