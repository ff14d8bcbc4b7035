#include "vndoc6/content/restore.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "tests/support/random_document.h"
#include "tests/support/recording_listener.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/content/compare.h"
#include "vndoc6/content/walk.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc6 {
namespace {

using automation::ClassInfo;
using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;

ContentMember MemberNamed(const ClassInfo& info, std::string_view name) {
  for (const ContentMember& content : ContentOf(info)) {
    if (content.member->name == name) return content;
  }
  ADD_FAILURE() << info.name() << " has no " << name;
  return {};
}

// Tells a new document of what it visits.
class Copier : public ContentVisitor {
 public:
  explicit Copier(Object& copy) : restore_(copy) {}

  void OnObjectBegin(TextView name, Object& object) override {
    if (classes_.empty()) {
    } else if (ContentReader::IsCollection(*classes_.back())) {
      restore_.BeginMember();
    } else {
      restore_.Begin(MemberNamed(*classes_.back()->GetClassInfo(), automation::ToUtf8(name)));
    }
    classes_.push_back(&object);
  }
  void OnObjectEnd(Object&) override {
    classes_.pop_back();
    if (!classes_.empty()) restore_.End();
  }
  void OnValue(const Content& content) override {
    // Those that a row leaves out are 0.
    if (ContentReader::IsCollection(*classes_.back())) return;
    restore_.Value(MemberNamed(*classes_.back()->GetClassInfo(), content.name), content.value,
                   content.index);
  }
  void Finish() { restore_.Finish(); }

 private:
  Restore restore_;
  std::vector<Object*> classes_;
};

TEST(Restore, GivesAnEqualObject) {
  for (uint32_t seed = 1; seed <= 10; ++seed) {
    testing::RandomContent content(seed);
    const testing::TemporaryFolder folder;
    ASSERT_TRUE(testing::RandomDocument(content)->SaveAs(folder.Name("original.vn6")));
    const auto original = Make<vnDocument>();
    ASSERT_TRUE(original->Load(folder.Name("original.vn6"), u""));
    const auto copy = Make<vnDocument>();
    {
      testing::RecordingListener listener(*copy);
      Copier copier(*copy);
      Walk(*original, copier);
      copier.Finish();
      EXPECT_TRUE(listener.Take().empty());
    }
    EXPECT_TRUE(copy->ChangeEvents());
    for (const Difference& difference : Compare(*original, *copy)) {
      ADD_FAILURE() << seed << ' ' << automation::ToUtf8(DescribeDifference(difference));
    }
  }
}

TEST(Restore, StepsFilesAreTheDocumentsUnlessThatTellsItsOwn) {
  const ClassInfo& info = vnDocument::classInfo();
  const ClassInfo& step_info = vnStep::classInfo();
  for (const bool tells_its_own : {false, true}) {
    const auto document = Make<vnDocument>();
    Restore restore(*document);
    restore.Begin(MemberNamed(info, "Steps"));
    restore.BeginMember();
    restore.Value(MemberNamed(step_info, "Key"), Variant(u"k"));
    restore.Begin(MemberNamed(step_info, "Files"));
    restore.BeginMember();
    restore.Value(MemberNamed(vnFile::classInfo(), "FileName"), Variant(u"f"));
    for (int i = 0; i < 4; ++i) restore.End();
    if (tells_its_own) {
      restore.Begin(MemberNamed(info, "Files"));
      restore.End();
    }
    restore.Finish();
    EXPECT_EQ(document->Files()->Count(), tells_its_own ? 0 : 1);
    const Ref<vnStep> step = document->Steps()->Item(Variant(u"k"));
    EXPECT_EQ(step->StepIndex(), 1);
    EXPECT_EQ(step->Files()->Item(Variant(1))->FileName(), u"f");
  }
}

TEST(Restore, RaisesWhatAPutRaises) {
  const auto document = Make<vnDocument>();
  Restore restore(*document);
  EXPECT_THROW(restore.Value(MemberNamed(vnDocument::classInfo(), "PagesCount"), Variant(u"x")),
               automation::Error);
  EXPECT_THROW(restore.BeginMember(), automation::Error);
}

}  // namespace
}  // namespace vndoc6
