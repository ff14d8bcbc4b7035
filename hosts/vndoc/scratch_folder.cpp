#include "scratch_folder.h"

#include "command.h"
#include "platform/keys.h"

namespace vndoc {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
  try {
    path_ = fs::temp_directory_path() /
            ("vndoc " + vndoc6::automation::ToUtf8(vndoc6::platform::NewKey()));
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
