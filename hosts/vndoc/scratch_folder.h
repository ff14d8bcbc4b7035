// A folder of one's own for files that are soon gone.
#pragma once

#include <filesystem>

#include "vndoc6/automation/text.h"

namespace vndoc {

// Made under the system's folder for temporary files, closed to other users, for documents may be
// secret; gone with this object, whatever is in it. Throws Failure when it can't be made.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  // The full name of a file in it.
  vndoc6::Text Name(const char* file) const;

 private:
  std::filesystem::path path_;
};

}  // namespace vndoc
