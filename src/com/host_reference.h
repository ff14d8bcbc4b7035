// What keeps the DLL loaded: how many of its COM objects hosts hold.
#pragma once

#include <atomic>

namespace vndoc6::com {

// A member of every object that a host can hold.
class HostReference {
 public:
  HostReference() { ++count_; }
  ~HostReference() { --count_; }
  HostReference(const HostReference&) = delete;
  HostReference& operator=(const HostReference&) = delete;

  static long Count() { return count_; }
  // A host's explicit lock on the DLL, besides the objects.
  static void Lock(bool lock) { count_ += lock ? 1 : -1; }

 private:
  static inline std::atomic<long> count_ = 0;
};

}  // namespace vndoc6::com
