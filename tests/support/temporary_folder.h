// A folder of a test's own, gone with everything in it when the test ends.
#pragma once

#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "platform/keys.h"
#include "vndoc6/automation/text.h"

namespace vndoc6::testing {

class TemporaryFolder {
 public:
  // The blank is there to be stumbled over.
  TemporaryFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("vndoc6 " + automation::ToUtf8(platform::NewKey()))) {
    std::filesystem::create_directory(path_);
  }
  ~TemporaryFolder() {
    std::error_code ignored;  // of what a test has closed to itself
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  Text Name(std::string_view file) const { return (path_ / file).u16string(); }
  void Write(std::string_view file, std::string_view bytes) const {
    std::ofstream(path_ / file, std::ios::binary) << bytes;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace vndoc6::testing
