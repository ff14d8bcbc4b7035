// A disk with one folder, in memory, behind the library's file calls: it fails when told so, and
// its power can be cut at any moment.
//
// What was written but not flushed may be lost when the power goes, and so may a change of a folder
// (a new, renamed or removed entry) before that folder was flushed. Each of these survives or not,
// independently of the others, as a seed says. A file whose bytes were not flushed keeps a part of
// them and may hold noise behind it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_calls.h"
#include "tests/hostile_text.h"

namespace vndoc6::testing {

class MemoryDisk {
 public:
  // What the names of its files begin with; no file can be made elsewhere.
  static constexpr const char* kFolder = "/disk/";

  // Takes the place of the system's calls until it is destroyed.
  MemoryDisk();
  ~MemoryDisk() { platform::file_calls() = real_; }
  MemoryDisk(const MemoryDisk&) = delete;
  MemoryDisk& operator=(const MemoryDisk&) = delete;

  // The content of each file, by name: what a process sees now.
  using Files = std::map<std::string, std::string>;
  Files Now() const;
  // What may be there after the power went now, one possibility for each seed.
  Files AfterPowerLoss(uint32_t seed) const;
  // Begins anew with these files, all on the disk.
  void Start(const Files& files);

  // Asked before every call; another number than 0 lets the call fail with it.
  std::function<int(const char* call)> fault = [](const char*) { return 0; };

 private:
  struct Inode {
    std::string bytes;
    std::string flushed;  // what is on the disk for certain
    int64_t time = 0;
  };
  using Folder = std::map<std::string, std::shared_ptr<Inode>>;
  // A change of one entry that is not on the disk for certain; renaming is one change of two.
  struct Change {
    std::string removed;
    std::string added;
    std::shared_ptr<Inode> inode;
  };
  struct OpenFile {
    std::shared_ptr<Inode> inode;  // null for the folder
    size_t position = 0;
  };

  template <class Result, class... Params>
  void Serve(std::function<Result(Params...)>& call, const char* name,
             Result (MemoryDisk::*serve)(Params...));
  int Open(const char* name, int flags, unsigned mode);
  int Fstat(int file, struct stat* result);
  int Stat(const char* name, struct stat* result);
  std::ptrdiff_t Readlink(const char* name, char* target, size_t size);
  std::ptrdiff_t Read(int file, void* bytes, size_t size);
  std::ptrdiff_t Write(int file, const void* bytes, size_t size);
  int Fchmod(int file, unsigned mode);
  int Fsync(int file);
  int Close(int file);
  int Rename(const char* from, const char* to);
  int Unlink(const char* name);
  int Describe(const Inode& inode, struct stat* result) const;
  static void Apply(const Change& change, Folder& folder);
  void Do(const Change& change);

  Folder now_;
  Folder flushed_;
  std::vector<Change> pending_;  // since the folder was flushed
  std::map<int, OpenFile> open_;
  int next_file_ = 100;
  int64_t time_ = 1;
  const platform::FileCalls real_ = platform::file_calls();
};

}  // namespace vndoc6::testing
