#include "platform/file_access_posix.h"

#include <unistd.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif

namespace vndoc6::platform {
namespace {

constexpr unsigned kGroupBits = 0070;

#ifdef __linux__
constexpr const char* kListName = "system.posix_acl_access";

std::string ListOf(int file) {
  constexpr size_t kLargest = 65536;
  std::string list(kLargest, '\0');
  const ssize_t size = ::fgetxattr(file, kListName, list.data(), list.size());
  list.resize(size > 0 ? static_cast<size_t>(size) : 0);
  return list;
}

bool SetList(int file, const std::string& list) {
  return ::fsetxattr(file, kListName, list.data(), list.size(), 0) == 0;
}
#else
// Elsewhere lists are not files' attributes; a file that takes another's place has none.
std::string ListOf(int /*file*/) { return {}; }
bool SetList(int /*file*/, const std::string& /*list*/) { return false; }
#endif

}  // namespace

FileAccess AccessOf(int file, const struct stat& status) {
  return {status.st_mode & 0777, status.st_uid, status.st_gid, ListOf(file)};
}

unsigned KeepAccess(int file, const FileAccess& access) {
  struct stat own {};
  if (::fstat(file, &own) != 0) return access.mode & ~kGroupBits;
  const bool has_group =
      own.st_gid == access.group || ::fchown(file, static_cast<uid_t>(-1), access.group) == 0;
  const bool has_list = access.list.empty() || SetList(file, access.list);
  // Last, for the owner alone may set the rest. Where it fails, whoever saves owns the file, as a
  // rule: nobody but the system's administrator can give a file away.
  [[maybe_unused]] const bool has_owner =
      own.st_uid == access.owner || ::fchown(file, access.owner, static_cast<gid_t>(-1)) == 0;
  return has_group && has_list ? access.mode : access.mode & ~kGroupBits;
}

}  // namespace vndoc6::platform
