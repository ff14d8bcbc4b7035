// The file system's Windows version.
#include "platform/file_system.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace vndoc6::platform {
namespace {

using Bytes = std::optional<std::string>;

constexpr TextView kFile = u"vndoc6_d\u00F6c";
constexpr TextView kCopy = u"vndoc6_copy";
constexpr wchar_t kCopyName[] = L"vndoc6_copy";

class FileSystemOnWindows : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(ReplaceFileWith(kFile, "old")); }
  void TearDown() override {
    DeleteFileNamed(kFile);
    DeleteFileNamed(kCopy);
    EXPECT_FALSE(FileExists(kFile));
    // Nothing is left beside them.
    WIN32_FIND_DATAW found;
    EXPECT_EQ(::FindFirstFileW(L".{*.tmp", &found), INVALID_HANDLE_VALUE);
  }
};

TEST_F(FileSystemOnWindows, ReplacesAndCopiesWholeFiles) {
  for (const std::string& content :
       {std::string("new\0\r\n\xFF", 7), std::string(300000, 'x'), std::string()}) {
    ASSERT_TRUE(ReplaceFileWith(kFile, content));
    EXPECT_EQ(ReadWholeFile(kFile), Bytes(content));
    ASSERT_TRUE(CopyFileTo(kFile, kCopy));
    EXPECT_EQ(ReadWholeFile(kCopy), Bytes(content));
    EXPECT_GE(*ModificationTime(kCopy), *ModificationTime(kFile));
  }
}

TEST_F(FileSystemOnWindows, NamesThatCanBeNoFile) {
  for (const Text& name : {Text(), Text(u"vndoc6\0more", 11), Text(u"."), Text(u"missing\\file"),
                           Text(u"NUL"), Text(kFile) + u"\\below", Text(u"vndoc6?")}) {
    EXPECT_FALSE(ReplaceFileWith(name, "x")) << automation::ToUtf8(name);
    EXPECT_FALSE(CopyFileTo(kFile, name)) << automation::ToUtf8(name);
    EXPECT_EQ(ReadWholeFile(name), Bytes()) << automation::ToUtf8(name);
  }
  EXPECT_FALSE(FileExists(u"."));
  EXPECT_EQ(ReadWholeFile(kFile), Bytes("old"));
}

TEST_F(FileSystemOnWindows, AFileThatIsReadOnlyOrInUseStaysAsItIs) {
  ASSERT_TRUE(CopyFileTo(kFile, kCopy));
  ASSERT_TRUE(::SetFileAttributesW(kCopyName, FILE_ATTRIBUTE_READONLY));
  EXPECT_FALSE(ReplaceFileWith(kCopy, "new"));
  EXPECT_FALSE(CopyFileTo(kFile, kCopy));
  ASSERT_TRUE(::SetFileAttributesW(kCopyName, FILE_ATTRIBUTE_NORMAL));
  const HANDLE user = ::CreateFileW(kCopyName, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(user, INVALID_HANDLE_VALUE);
  EXPECT_FALSE(ReplaceFileWith(kCopy, "new"));
  ::CloseHandle(user);
  EXPECT_EQ(ReadWholeFile(kCopy), Bytes("old"));
}

}  // namespace
}  // namespace vndoc6::platform
