// The system calls behind file_system_posix.cpp, replaceable one by one, so that tests can make
// each of them fail. Absent on Windows.
#pragma once

#include <cstddef>
#include <functional>

struct stat;

namespace vndoc6::platform {

// Each works as the call of its name: -1 and errno on failure.
struct FileCalls {
  std::function<int(const char* name, int flags, unsigned mode)> open;
  std::function<int(int file, struct stat* result)> fstat;
  std::function<int(const char* name, struct stat* result)> stat;
  std::function<std::ptrdiff_t(const char* name, char* target, size_t size)> readlink;
  std::function<std::ptrdiff_t(int file, void* bytes, size_t size)> read;
  std::function<std::ptrdiff_t(int file, const void* bytes, size_t size)> write;
  std::function<int(int file, unsigned mode)> fchmod;
  std::function<int(int file)> fsync;  // to the disk itself, past the drive's cache where possible
  std::function<int(int file)> close;
  std::function<int(const char* from, const char* to)> rename;
  std::function<int(const char* name)> unlink;
};

// The calls in use; the system's own until a test replaces them, while no other thread uses files.
FileCalls& file_calls();

}  // namespace vndoc6::platform
