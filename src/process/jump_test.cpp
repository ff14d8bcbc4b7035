#include "vndoc6/process/jump.h"
#include "vndoc6/document/document.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "automation/inside.h"
#include "platform/file_system.h"
#include "platform/keys.h"
#include "tests/support/saved_text.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using testing::Kept;
using testing::SavedText;

TEST(Jump, AlwaysSavesItsNumber) {
  const auto jump = Make<vnJump>();
  jump->SetKey(u"k");
  EXPECT_EQ(SavedText(*jump), R"(K=~64"k":DN=~64"":FN=~64"":JID=0:)");
  jump->SetProcessID(-7);
  EXPECT_EQ(SavedText(*jump), R"(K=~64"k":DN=~64"":FN=~64"":JID=-7:)");
}

TEST(Jump, RecoversTheProcessFromFileNamesOfTheOldForm) {
  struct Case {
    const char16_t* file_name;
    int32_t stored;
    int32_t expected;
  };
  const Case kCases[] = {
      {u"000:X\\one\\42", 0, 42},
      {u"000:X\\one\\42 and more", 0, 42},
      {u"000:X\\one\\ -3.5x", 0, -4},
      {u"000:X\\one\\2.5", 0, 2},
      {u"000:X\\one\\42", 5, 5},
      {u"000:\\one\\two\\42", 0, 42},  // a backslash in the first five characters does not count
      {u"000:X\\one\\forty", 0, 0},
      {u"000:X\\one\\", 0, 0},
      {u"000:X\\42", 0, 0},
      {u"000:42", 0, 0},
      {u"000:", 0, 0},
      {u"000", 0, 0},
      {u"001:X\\one\\42", 0, 0},
      {u"000:X\\one\\2147483647.4", 0, 2147483647},
      {u"000:X\\one\\2147483648", 0, 0},
      {u"000:X\\one\\1e999", 0, 0},
  };
  for (const Case& test : kCases) {
    const auto saved = Make<vnJump>();
    saved->SetFileName(test.file_name);
    saved->SetProcessID(test.stored);
    const auto jump = Make<vnJump>();
    Inside::Read(*jump, Kept(SavedText(*saved)), Text());
    EXPECT_EQ(jump->ProcessID(), test.expected) << automation::ToUtf8(test.file_name);
  }
}

class JumpDocumentTest : public ::testing::Test {
 protected:
  Text PathOf(const char* name) const { return folder_.Name(name); }
  Text SavedDocument(const char* name, const Text& jump_to = {}) const {
    const auto document = Make<vnDocument>();
    if (!jump_to.empty()) {
      const auto jump = Make<vnJump>();
      jump->SetKey(u"jump");
      jump->SetFileName(jump_to);
      document->NewStep()->Jumps()->Add(jump.get());
    }
    EXPECT_TRUE(document->SaveAs(PathOf(name)));
    return PathOf(name);
  }
  static Ref<vnJump> To(const Text& file_name) {
    const auto jump = Make<vnJump>();
    jump->SetFileName(file_name);
    return jump;
  }

 private:
  testing::TemporaryFolder folder_;
};

TEST_F(JumpDocumentTest, OpensItsTargetOnceItExistsAndKeepsIt) {
  const auto jump = To(PathOf("later.vn6"));
  EXPECT_FALSE(jump->JumpDocument());
  EXPECT_FALSE(jump->JumpDocument());
  const Text name = SavedDocument("later.vn6");
  const Ref<vnDocument> target = jump->JumpDocument();
  ASSERT_TRUE(target);
  EXPECT_EQ(target->FileName(), name);
  jump->SetFileName(PathOf("other.vn6"));
  ASSERT_TRUE(platform::DeleteFileNamed(name));
  EXPECT_EQ(jump->JumpDocument(), target);
}

TEST_F(JumpDocumentTest, GivesNothingForWhatCannotBeLoaded) {
  EXPECT_FALSE(To(u"")->JumpDocument());
  std::ofstream(std::filesystem::path(PathOf("broken.vn6"))) << "no document";
  std::ofstream(std::filesystem::path(PathOf("old.vn5"))) << "no converter";
  for (const char* name : {"broken.vn6", "old.vn5"}) {
    const auto jump = To(PathOf(name));
    EXPECT_FALSE(jump->JumpDocument()) << name;
  }
}

TEST_F(JumpDocumentTest, AJumpToItsOwnDocumentOpensAnother) {
  const size_t before = automation::Object::LiveCount();
  {
    const Text name = SavedDocument("self.vn6", PathOf("self.vn6"));
    const auto document = Make<vnDocument>();
    ASSERT_TRUE(document->Load(name, u""));
    const Ref<vnJump> jump = document->Jumps()->Item(Variant(u"jump"));
    ASSERT_TRUE(jump);
    const Ref<vnDocument> target = jump->JumpDocument();
    ASSERT_TRUE(target);
    EXPECT_NE(target, document);
    const Ref<vnDocument> next = target->Jumps()->Item(Variant(1))->JumpDocument();
    EXPECT_TRUE(next);
    EXPECT_NE(next, target);
  }
  EXPECT_EQ(automation::Object::LiveCount(), before);
}

}  // namespace
}  // namespace vndoc6
