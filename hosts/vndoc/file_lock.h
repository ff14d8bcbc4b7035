// FileLock: keeps other vndoc processes from changing a document meanwhile.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace vndoc {

// Waits until no other process has the lock. Goes with the process, however that ends. Lies in a
// file of its own beside the document, ".plan.vn6.lock", for the document is replaced when it is
// saved; one that was left there by a process that was killed is nobody's and locks nothing.
//
// Where no such file can be made, or locked, there is no lock: a folder that can't be written, a
// file system without locks.
class FileLock {
 public:
  explicit FileLock(const std::string& document);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  class Held;
  std::unique_ptr<Held> held_;
};

// Where the lock of a document lies, whichever of the document's names is given.
std::filesystem::path LockName(const std::string& document);

}  // namespace vndoc
