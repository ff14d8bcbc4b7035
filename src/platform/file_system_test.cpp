#include "platform/file_system.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_calls.h"
#include "tests/support/hooked_file_calls.h"
#include "tests/support/temporary_folder.h"

namespace vndoc6::platform {
namespace {

namespace fs = std::filesystem;

// Each test in a folder of its own.
class FileSystem : public ::testing::Test {
 protected:
  void TearDown() override { file_calls() = real_; }

  Text Name(const char* name) const { return own_folder_.Name(name); }
  size_t FilesInFolder() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder_), {}));
  }
  void SetPermissions(const char* name, unsigned permissions) const {
    fs::permissions(folder_ / name, fs::perms(permissions));
  }
  unsigned Permissions(const char* name) const {
    return static_cast<unsigned>(fs::status(folder_ / name).permissions());
  }

  const testing::TemporaryFolder own_folder_;
  const fs::path& folder_ = own_folder_.path();
  const FileCalls real_ = file_calls();
};

// What ReadWholeFile gives.
using Bytes = std::optional<std::string>;

TEST_F(FileSystem, ReplacesTheContentAndNothingElse) {
  const Text name = Name("d\u00F6c");
  EXPECT_FALSE(FileExists(name));
  EXPECT_EQ(ReadWholeFile(name), Bytes());
  ASSERT_TRUE(ReplaceFileWith(name, "old"));
  SetPermissions("d\u00F6c", 0640);
  const std::string content("new\0\r\n\xFF", 7);
  ASSERT_TRUE(ReplaceFileWith(name, content));
  EXPECT_EQ(ReadWholeFile(name), Bytes(content));
  EXPECT_EQ(Permissions("d\u00F6c"), 0640u);
  ASSERT_TRUE(ReplaceFileWith(name, ""));
  EXPECT_EQ(ReadWholeFile(name), Bytes(""));
  EXPECT_EQ(FilesInFolder(), 1u);
  EXPECT_TRUE(DeleteFileNamed(name));
  EXPECT_FALSE(DeleteFileNamed(name));
}

// What somebody else saves is read by nobody who could not read it before. Only the administrator
// can try that.
TEST_F(FileSystem, NobodyGetsAccessByASave) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the administrator can own files for others";
  constexpr uid_t kOwner = 12345, kOther = 23456;
  constexpr gid_t kGroup = 12346, kOthersGroup = 23457;
  struct Case {
    uid_t saver;
    unsigned mode;
    uid_t owner;
    gid_t group;
    unsigned mode_after;
  };
  const Case cases[] = {
      {0, 0640, kOwner, kGroup, 0640},
      {kOther, 0666, kOther, kOthersGroup, 0606},  // the group can't be kept: its bits go
  };
  SetPermissions("", 0777);
  for (const Case& test : cases) {
    ASSERT_TRUE(ReplaceFileWith(Name("plan"), "before"));
    const std::string plan = (folder_ / "plan").string();
    ASSERT_EQ(::chown(plan.c_str(), kOwner, kGroup), 0);
    SetPermissions("plan", test.mode);
    const pid_t saver = ::fork();
    if (saver == 0) {
      const bool is_other =
          test.saver == 0 || (::setgroups(0, nullptr) == 0 && ::setgid(kOthersGroup) == 0 &&
                              ::setuid(test.saver) == 0);
      ::_exit(is_other && ReplaceFileWith(Name("plan"), "after") ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(saver, &status, 0), saver);
    EXPECT_EQ(status, 0);
    struct stat after {};
    ASSERT_EQ(::stat(plan.c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, test.owner);
    EXPECT_EQ(after.st_gid, test.group);
    EXPECT_EQ(after.st_mode & 0777, test.mode_after);
    EXPECT_EQ(ReadWholeFile(Name("plan")), "after");
    ASSERT_TRUE(DeleteFileNamed(Name("plan")));
  }
}

TEST_F(FileSystem, NamesThatCanBeNoFile) {
  fs::create_directory(folder_ / "folder");
  ASSERT_TRUE(ReplaceFileWith(Name("file"), "x"));
  const Text with_nul = Name("file") + Text(1, u'\0') + u"more";
  for (const Text& name :
       {Text(), with_nul, Name("folder"), Name("missing/file"), Name("file/below"),
        Text(u"/dev/null"), Name(std::string(300, 'n').c_str())}) {
    EXPECT_FALSE(ReplaceFileWith(name, "y")) << automation::ToUtf8(name);
    EXPECT_FALSE(CopyFileTo(Name("file"), name));
    EXPECT_FALSE(CopyFileTo(name, Name("copy")));
    EXPECT_EQ(ReadWholeFile(name), Bytes());
  }
  EXPECT_FALSE(FileExists(Name("folder")));
  EXPECT_FALSE(FileExists(with_nul));
  EXPECT_FALSE(DeleteFileNamed(with_nul));
  EXPECT_EQ(ModificationTime(Name("folder")), std::nullopt);
  EXPECT_EQ(ReadWholeFile(Name("file")), Bytes("x"));
  EXPECT_EQ(FilesInFolder(), 2u);
}

TEST_F(FileSystem, LinksStayAndWhatTheyPointToIsReplaced) {
  fs::create_directory(folder_ / "sub");
  fs::create_symlink("sub/next", folder_ / "link");
  fs::create_symlink("file", folder_ / "sub/next");
  ASSERT_TRUE(ReplaceFileWith(Name("link"), "first"));
  ASSERT_TRUE(ReplaceFileWith(Name("link"), "second"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "sub/next"));
  EXPECT_EQ(ReadWholeFile(Name("sub/file")), Bytes("second"));
  fs::create_symlink("circle", folder_ / "circle");
  EXPECT_FALSE(ReplaceFileWith(Name("circle"), "x"));
}

TEST_F(FileSystem, ACopyHasTheContentAndPermissionsButItsOwnTime) {
  const std::string large(200001, 'x');
  ASSERT_TRUE(ReplaceFileWith(Name("from"), large));
  ASSERT_TRUE(ReplaceFileWith(Name("to"), "y"));
  SetPermissions("from", 0600);
  fs::last_write_time(folder_ / "from", fs::file_time_type::clock::now() - std::chrono::hours(1));
  ASSERT_TRUE(CopyFileTo(Name("from"), Name("to")));
  EXPECT_EQ(ReadWholeFile(Name("to")), Bytes(large));
  EXPECT_EQ(Permissions("to"), 0600u);
  constexpr int64_t kHour = 36'000'000'000;
  const int64_t age = *ModificationTime(Name("to")) - *ModificationTime(Name("from"));
  EXPECT_GT(age, kHour / 2);
  EXPECT_LT(age, 2 * kHour);
}

TEST_F(FileSystem, GoesOnAfterInterruptionsAndShortWrites) {
  int calls = 0;
  const auto interrupted = [&] {
    errno = EINTR;
    return ++calls % 2 == 1;
  };
  file_calls().write = [&](int file, const void* bytes, size_t size) {
    return interrupted() ? -1 : real_.write(file, bytes, std::min<size_t>(size, 2));
  };
  file_calls().read = [&](int file, void* bytes, size_t size) {
    return interrupted() ? -1 : real_.read(file, bytes, std::min<size_t>(size, 3));
  };
  file_calls().fsync = [&](int file) { return interrupted() ? -1 : real_.fsync(file); };
  ASSERT_TRUE(ReplaceFileWith(Name("file"), "in small pieces"));
  EXPECT_EQ(ReadWholeFile(Name("file")), Bytes("in small pieces"));
  ASSERT_TRUE(CopyFileTo(Name("file"), Name("copy")));
  EXPECT_EQ(ReadWholeFile(Name("copy")), Bytes("in small pieces"));
}

// Lets one call fail, the `failing`-th of all that change or read something, and notes what was
// done.
class Faults {
 public:
  Faults(int failing, int error)
      : failing_(failing),
        error_(error),
        calls_([this](const char* call) { return Works(call); }) {}

  // The call that failed; empty when fewer were made.
  const std::string& failed() const { return failed_; }
  // The calls that worked.
  const std::vector<std::string>& done() const { return done_; }
  bool Renamed() const { return std::find(done_.begin(), done_.end(), "rename") != done_.end(); }

 private:
  bool Works(std::string_view call) {
    // Asking about names and tidying up afterwards are allowed to fail quietly; not tested here.
    if (call == "stat" || call == "readlink" || call == "unlink") return true;
    if (++made_ != failing_) {
      done_.emplace_back(call);
      return true;
    }
    failed_ = call;
    errno = error_;
    return false;
  }

  int failing_;
  int error_;
  int made_ = 0;
  std::string failed_;
  std::vector<std::string> done_;
  const testing::HookedFileCalls calls_;
};

TEST_F(FileSystem, WhicheverCallFailsTheNameHoldsTheWholeOldOrNewContent) {
  ASSERT_TRUE(ReplaceFileWith(Name("source"), "new"));
  const std::function<bool()> ways[] = {[&] { return ReplaceFileWith(Name("file"), "new"); },
                                        [&] { return CopyFileTo(Name("source"), Name("file")); }};
  for (const auto& replace : ways) {
    std::string failed = "first";
    for (int failing = 1; !failed.empty(); ++failing) {
      ASSERT_TRUE(ReplaceFileWith(Name("file"), "old"));
      bool renamed = false;
      bool reported = false;
      {
        Faults faults(failing, ENOSPC);
        reported = replace();
        renamed = faults.Renamed();
        failed = faults.failed();
      }
      EXPECT_EQ(ReadWholeFile(Name("file")), Bytes(renamed ? "new" : "old")) << failed;
      // In place but not flushed is a failure, too; closing what was only read can't be one.
      EXPECT_EQ(reported, renamed && failed != "fsync") << failed << failing;
      EXPECT_EQ(FilesInFolder(), 2u) << failed;
    }
  }
}

TEST_F(FileSystem, AFileThatCantBeReadToItsEndIsNotRead) {
  ASSERT_TRUE(ReplaceFileWith(Name("file"), "content"));
  std::string failed = "first";
  for (int failing = 1; !failed.empty(); ++failing) {
    Bytes bytes;
    {
      Faults faults(failing, EIO);
      bytes = ReadWholeFile(Name("file"));
      failed = faults.failed();
    }
    const bool harmless = failed.empty() || failed == "close";
    EXPECT_EQ(bytes, harmless ? Bytes("content") : Bytes()) << failed;
  }
}

// A name that reaches the disk before its content would lose both contents with the power.
TEST_F(FileSystem, TheContentIsOnTheDiskBeforeItGetsTheName) {
  ASSERT_TRUE(ReplaceFileWith(Name("file"), "old"));
  Faults none(0, 0);
  ASSERT_TRUE(ReplaceFileWith(Name("file"), "new"));
  std::string order;
  for (const std::string& call : none.done()) {
    if (call == "write" || call == "fsync" || call == "rename") order += call + " ";
  }
  EXPECT_EQ(order, "write fsync rename fsync ");
}

}  // namespace
}  // namespace vndoc6::platform
