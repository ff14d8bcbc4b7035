// Any member, with any arguments, in any order: errors that hosts know, and nothing left behind.
#include <cstdint>
#include <cstdlib>

#include "tests/support/memory_disk.h"
#include "tests/support/random_calls.h"
#include "vndoc6/automation/object.h"

using vndoc6::testing::MemoryDisk;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static MemoryDisk disk;
  disk.Start({});
  const vndoc6::Text folder = vndoc6::automation::FromUtf8(MemoryDisk::kFolder);
  vndoc6::testing::RandomCalls({data, size}, folder).Run();
  if (vndoc6::automation::Object::LiveCount() != 0) std::abort();
  return 0;
}
