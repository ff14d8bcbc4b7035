// Makes the program's allocations fail. Belongs to this test program alone: it replaces operator
// new.
#pragma once

#include <cstddef>

namespace vndoc6::testing {

// While it exists, the `first`-th allocation from now fails, and if `lasting` all after it.
class Shortage {
 public:
  Shortage(size_t first, bool lasting);
  ~Shortage();
  Shortage(const Shortage&) = delete;
  Shortage& operator=(const Shortage&) = delete;

  // Whether an allocation failed.
  bool came() const;
};

// How many blocks are in use.
size_t LiveBlocks();

}  // namespace vndoc6::testing
