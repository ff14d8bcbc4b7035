#include "vndoc6/details/revision.h"

#include <gtest/gtest.h>

#include "automation/inside.h"
#include "tests/support/recording_listener.h"
#include "tests/support/saved_text.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/details/details.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {
namespace {

using automation::Date;
using automation::Make;
using automation::Ref;
using automation::Variant;
using testing::Kept;
using testing::SavedText;

Ref<vnRevision> Revision(int32_t ir) {
  Ref<vnRevision> revision = Make<vnRevision>();
  Inside::StoreIR(*revision, ir);
  return revision;
}

TEST(Revisions, ComeFromTheDetailsAndRaiseIR) {
  const auto document = Make<vnDocument>();
  document->Details()->SetRevision(1.5f);
  testing::RecordingListener events(*document);
  const int32_t first_ir = document->IR();
  for (const char16_t* reason : {u"first", u"second", u"third"}) {
    document->Details()->NewRevision(reason);
  }
  EXPECT_EQ(document->Details()->Revision(), 1.5f);
  EXPECT_EQ(document->IR(), first_ir + 3);
  const Ref<vnRevisions> history = document->RevisionHistory();
  ASSERT_EQ(history->Count(), 3);
  for (int32_t position = 1; position <= 3; ++position) {
    const int32_t ir = first_ir + position - 1;
    const Ref<vnRevision> revision = history->Item(Variant(position));
    EXPECT_EQ(revision, history->Item(Variant(automation::NumberText(ir))));
    EXPECT_EQ(revision->IR(), ir);
    EXPECT_EQ(revision->Revision(), 1.5f);
    EXPECT_EQ(revision->RevisionDate(), automation::services().today());
    EXPECT_EQ(revision->Document(), document);
  }
  EXPECT_EQ(history->Item(Variant(3))->Reason(), u"third");
  history->Remove(Variant(automation::NumberText(first_ir)));
  history->Remove(Variant(9));
  Make<vnDetails>()->NewRevision(u"nowhere");
  EXPECT_EQ(history->Count(), 2);
  EXPECT_EQ(events.Take(), std::vector<std::string>{"StepFileChange Nothing 2 0"});
}

TEST(Revisions, WithOneIRAreNotAddedTwice) {
  const auto document = Make<vnDocument>();
  const Ref<vnRevisions> history = document->RevisionHistory();
  const Ref<vnRevision> first = Revision(4);
  const Ref<vnRevision> second = Revision(4);
  history->Add(first.get());
  history->Add(second.get());
  history->Add(nullptr);
  EXPECT_EQ(history->Count(), 1);
  EXPECT_EQ(history->Item(Variant(1)), first);
  EXPECT_EQ(second->Document(), nullptr);
}

TEST(Revisions, AreImportedOnlyDuringAConversion) {
  const auto document = Make<vnDocument>();
  for (const Ref<vnRevisions>& history : {document->RevisionHistory(), Make<vnRevisions>()}) {
    try {
      history->AddImport(1, u"why", 2, Date{45000});
      FAIL();
    } catch (const automation::Error& error) {
      EXPECT_EQ(error.number(), 2198);
      EXPECT_EQ(error.description(), u"Can't use method in current state.");
      EXPECT_EQ(error.source(), u"vnRevisions.AddImport");
    }
    EXPECT_EQ(history->Count(), 0);
  }
}

TEST(Revisions, AreSavedByPosition) {
  const auto history = Make<vnRevisions>();
  EXPECT_EQ(SavedText(*history), "");
  const Ref<vnRevision> revision = Revision(12);
  Inside::StoreRevisionDate(*revision, Date{45000.5});
  Inside::StoreRevision(*revision, 1.2f);
  Inside::StoreReason(*revision, u"because");
  history->Add(revision.get());
  history->Add(Revision(3).get());
  const std::string text = SavedText(*history);
  EXPECT_EQ(text,
            "F1=~64\"D=t45000.5:R=s1.2:IR=12:Rs^abecause^A\":F2=~64\"D=t0:R=s0:IR=3:Rs^a^A\":");
  const auto loaded = Make<vnRevisions>();
  Inside::Read(*loaded, Kept(text));
  EXPECT_EQ(SavedText(*loaded), text);
  Inside::Read(*loaded, bag::KeptText());
  EXPECT_EQ(loaded->Count(), 2);
}

TEST(Revisions, ThatCannotBeReadAreSkipped) {
  const auto history = Make<vnRevisions>();
  Inside::Read(*history, Kept("F1=~64\"R=s1:IR=1:Rs^ano date^A\":"
                              "F2=~64\"D=t1:IR=2:\":"
                              "F3=~64\"D=t1:R=s1:\":"
                              "F4=~64\"D^asome day^AR=s1:IR=4:\":"
                              "F5=~64\"D=t1:R=s1:IR=d3e9:\":"
                              "F6=~64\"D=t1:R=s1:IR=6:Rs=n:\":"
                              "F7=~64\"\":"
                              "F8=7:"
                              // An entry's key says nothing, also one that was there.
                              "F1=~64\"D=45000:R^a1.5^AIR^a9^A\":"));
  ASSERT_EQ(history->Count(), 1);
  const Ref<vnRevision> revision = history->Item(Variant(u"9"));
  EXPECT_EQ(revision->RevisionDate(), Date{45000});
  EXPECT_EQ(revision->Revision(), 1.5f);
  EXPECT_EQ(revision->Reason(), u"");
}

}  // namespace
}  // namespace vndoc6
