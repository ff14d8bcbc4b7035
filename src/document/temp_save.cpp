#include "document/temp_save.h"

#include "automation/inside.h"
#include "document/own_files.h"
#include "platform/file_system.h"
#include "vndoc6/details/details.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {

Text TempSaveName(const Text& file_name) {
  constexpr size_t kEnding = 4;
  if (file_name.size() >= kEnding) {
    const Text ending =
        automation::AsciiLower(TextView(file_name).substr(file_name.size() - kEnding));
    if (ending == u".vnc" || ending == u".vn6") {
      return file_name.substr(0, file_name.size() - 3) + u"~vnc";
    }
  }
  return file_name + u".~vnc";
}

void vnDocument::TempSaveDocument() const {
  if (!platform::FileExists(file_name_)) return;
  const Text temp_save = TempSaveName(file_name_);
  if (platform::FileExists(temp_save) && !own_files_->IsReadWhole(file_name_)) return;
  // In one step: until the copy is whole on the disk, the one that is there stays.
  platform::CopyFileTo(file_name_, temp_save);
}

void vnDocument::TempSaveClear() const {
  const Text temp_save = TempSaveName(file_name_);
  if (platform::FileExists(temp_save)) platform::DeleteFileNamed(temp_save);
}

int32_t vnDocument::TempSaveTest(const Text& psFileName) const {
  const auto file_time = platform::ModificationTime(psFileName);
  const auto temp_save_time = platform::ModificationTime(TempSaveName(psFileName));
  if (!file_time || !temp_save_time) return 0;
  return *temp_save_time > *file_time ? 2 : 1;
}

void vnDocument::EnableWrite(const Text& psPassword) {
  const Text& password = Inside::write_password(*details_);
  allow_write_ = password.empty() || psPassword == password;
}

bool vnDocument::SetReadPassword(const Text& psPassword) {
  if (allow_write_) Inside::StoreReadPassword(*details_, psPassword);
  return false;  // also when it was set: hosts have always got this
}

bool vnDocument::SetWritePassword(const Text& psPassword) {
  if (allow_write_) Inside::StoreWritePassword(*details_, psPassword);
  return false;  // likewise
}

}  // namespace vndoc6
