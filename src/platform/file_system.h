// Files, as the library needs them. The only part of the model that the platform decides;
// file_system_posix.cpp and file_system_windows.cpp hold the two versions.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "vndoc6/automation/text.h"

namespace vndoc6::platform {

// No name that holds a NUL names a file; a folder or a device is no file, where that matters.

bool FileExists(TextView name);

// The file's bytes; nothing when it can't be read.
std::optional<std::string> ReadWholeFile(TextView name);

// Writes to a fresh file beside `name`, flushes it to the disk and puts it in the place of `name`
// in one step, keeping owner, group, mode and access list of the file that was there as far as that
// may be done, and never giving access to who had none: at any instant the name holds
// the whole old or the whole new content. A link stays, what it points to is replaced. False when
// that can't be done; then nothing changed, unless only the very last step failed, flushing the
// folder: then the new content is there, but a loss of power may still undo it.
//
// `before_placing` is called when the bytes are on the disk and `name` still holds the old content;
// when it gives false, so does this.
bool ReplaceFileWith(TextView name, std::string_view bytes,
                     const std::function<bool()>& before_placing = {});
// False when ReplaceFileWith would fail whatever the bytes are, as far as that can be seen before.
bool MayReplaceFile(TextView name);

// Copies over `to` in the same way, with the permissions of `from` and the modification time of the
// copy's making. A link is replaced, not followed. False on failure.
bool CopyFileTo(TextView from, TextView to);
bool DeleteFileNamed(TextView name);

enum class Made { kYes, kNameIsTaken, kNo };
// Makes a file that nobody else has made. Never goes through a link.
Made MakeEmptyFile(TextView name);

// Equal for two names of one file, and different for two files that exist at one time.
struct FileIdentity {
  uint64_t volume = 0;
  uint64_t file = 0;
  bool operator==(const FileIdentity&) const = default;
};
// Nothing when there is no such file.
std::optional<FileIdentity> IdentityOf(TextView name);

// The last modification in ticks of 100 ns, to be compared only; nothing when there is no such
// file.
std::optional<int64_t> ModificationTime(TextView name);

}  // namespace vndoc6::platform
