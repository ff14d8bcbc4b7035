#include "scratch_folder.h"

#include <random>

#include "command.h"

namespace vndoc {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
  try {
    std::random_device random;
    std::string name = "vndoc";
    for (int i = 0; i < 4; ++i) name += ' ' + std::to_string(random());
    path_ = fs::temp_directory_path() / name;
    if (!fs::create_directory(path_))
      throw Failure("a folder for temporary files is there already");
    fs::permissions(path_, fs::perms::owner_all);
  } catch (const fs::filesystem_error& error) {
    throw Failure("no folder for temporary files: " + error.code().message());
  }
}

ScratchFolder::~ScratchFolder() {
  std::error_code harmless;  // what is left of a temporary folder
  fs::remove_all(path_, harmless);
}

vndoc6::Text ScratchFolder::Name(const char* file) const { return (path_ / file).u16string(); }

}  // namespace vndoc
