#include "file_lock.h"
#include "vndoc6/automation/text.h"

namespace vndoc {

std::filesystem::path LockName(const std::string& document) {
  std::filesystem::path file(vndoc6::automation::FromUtf8(document));
  std::error_code stays_as_it_was_given;
  const std::filesystem::path real = std::filesystem::weakly_canonical(file, stays_as_it_was_given);
  if (!real.empty()) file = real;
  std::filesystem::path name = ".";
  name += file.filename();
  name += ".lock";
  return file.replace_filename(name);
}

}  // namespace vndoc
