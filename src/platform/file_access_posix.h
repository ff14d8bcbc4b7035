// Who may do what with a file, kept when another file takes its place.
#pragma once

#include <sys/stat.h>

#include <string>

namespace vndoc6::platform {

struct FileAccess {
  // Without the bits that run a program as its owner: that may be somebody else now.
  unsigned mode = 0;
  uid_t owner = 0;
  gid_t group = 0;
  // The access control list as the system has it; empty for none. With one, the group's bits in
  // `mode` are what the list may give at most.
  std::string list;
};

// Of an open file with that status.
FileAccess AccessOf(int file, const struct stat& status);

// Gives an open file, which is new, the owner, the group and the list. Gives the mode that goes
// with what could be kept: what depended on a group or a list that could not be goes, for nobody
// may read the new file who could not read the old one.
unsigned KeepAccess(int file, const FileAccess& access);

}  // namespace vndoc6::platform
