#include "vndoc6/titles/title_ref.h"

#include <gtest/gtest.h>

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "tests/support/saved_text.h"
#include "tests/support/scripted_object.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/document/document.h"
#include "vndoc6/titles/titles.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;
using testing::SavedText;

Text BagText(const Text& ref, const Text& name) {
  return bag::BagTextOf([&](bag::BagWriter& writer) {
    writer.Add("R", ref);
    writer.Add("DN", name);
  });
}

// A document whose handler succeeds and leaves adding titles to the test.
class TitleRefs : public ::testing::Test {
 protected:
  TitleRefs()
      : factory_(u"Test.Titles", [] {
          const auto ignore = [](auto) { return Variant(0); };
          return testing::MakeScriptedObject(
              "Handler",
              {{u"RequiresDirect", ignore}, {u"Document", ignore}, {u"LoadTitles", ignore}});
        }) {}
  void UseHandler() {
    document_->GetProperties()->SetValue(u"Titles Handler", Variant(u"Test.Titles"));
    titles_->Reset();
    ASSERT_TRUE(titles_->HandlerAvailable());
    titles_->AddTitle(1, u"mgr", u"Manager");
    titles_->AddTitle(2, u"dir", u"Director");
  }

  testing::RegisteredFactory factory_;
  Ref<vnDocument> document_ = Make<vnDocument>();
  Ref<vnTitles> titles_ = document_->Titles();
  Ref<vnTitleRefs> references_ = titles_->TitleRefsObj();
};

TEST_F(TitleRefs, WithoutAHandlerHoldOneFreeText) {
  const Ref<vnTitleRef> first = references_->Add(Variant(u"Manager"));
  EXPECT_EQ(references_->Add(Variant(u"Director")), first);
  EXPECT_EQ(references_->Count(), 1);
  EXPECT_EQ(first->DisplayName(), u"Director");
  EXPECT_EQ(first->Ref(), u"");
  first->SetRef(u"mgr");
  EXPECT_EQ(first->Ref(), u"");
  EXPECT_EQ(references_->Add(Variant(5))->DisplayName(), u"5");
  EXPECT_EQ(references_->Add(Variant(document_)), nullptr);
  EXPECT_EQ(references_->Add(Variant(automation::Null())), nullptr);
  EXPECT_EQ(references_->Add(Variant(automation::Opaque())), nullptr);
  EXPECT_EQ(references_->Count(), 1);
}

TEST_F(TitleRefs, WithAHandlerReferToTitles) {
  UseHandler();
  const Ref<vnTitleRef> manager = references_->Add(Variant(u"mgr"));
  EXPECT_EQ(references_->Add(Variant(u"MGR")), manager);
  EXPECT_EQ(references_->Add(Variant(u"dir"))->Document(), document_);
  EXPECT_EQ(references_->Count(), 2);
  EXPECT_EQ(manager->DisplayNameCache(), u"Manager");
  manager->SetDisplayName(u"Boss");
  EXPECT_EQ(manager->DisplayName(), u"Manager");
  manager->SetRef(u"nobody");
  EXPECT_EQ(manager->Ref(), u"mgr");
  manager->SetRef(u"dir");
  EXPECT_EQ(manager->DisplayNameCache(), u"Director");

  // One reference without a title fits in; another has no room.
  const Ref<vnTitleRef> empty = references_->Add(Variant(u"nobody"));
  EXPECT_EQ(empty->Ref(), u"");
  EXPECT_NE(references_->Add(Variant(u"no one")), empty);
  EXPECT_EQ(references_->Count(), 3);
}

TEST_F(TitleRefs, OfVanishedTitlesReadAsADot) {
  UseHandler();
  const Ref<vnTitleRef> manager = references_->Add(Variant(u"mgr"));
  titles_->Item(Variant(u"mgr"))->SetDisplayName(u"Head");
  EXPECT_EQ(manager->DisplayName(), u"Head");
  EXPECT_EQ(manager->DisplayNameCache(), u"Manager");
  titles_->Remove(Variant(u"mgr"));
  EXPECT_EQ(manager->DisplayName(), u".");
  EXPECT_EQ(manager->DisplayNameCache(), u"Manager");
  document_->GetProperties()->Remove(u"Titles Handler");
  titles_->Reset();
  EXPECT_EQ(manager->DisplayName(), u"Manager");
}

TEST_F(TitleRefs, AreSavedAsTwoTexts) {
  const Ref<vnTitleRef> reference = references_->Add(Variant(u"a \"name\""));
  EXPECT_EQ(SavedText(*reference), "R=~64\"\":DN=~64\"a ^jname^j\":");
  const auto loaded = Make<vnTitleRef>();
  Inside::Read(*loaded, testing::Kept(SavedText(*reference)));
  EXPECT_EQ(loaded->DisplayName(), u"a \"name\"");
  reference->Clear();
  EXPECT_EQ(SavedText(*reference), "R=~64\"\":DN=~64\"\":");
}

TEST_F(TitleRefs, AreLoadedWithoutLookingAtTheTitles) {
  const Text three = bag::BagTextOf([](bag::BagWriter& writer) {
    writer.Add("TR1", BagText(u"gone", u"Gone"));
    writer.Add("TR2", BagText(u"GONE", u"Twice"));
    writer.Add("TR3", BagText(u"mgr", u"Old name"));
  });
  Inside::Read(*references_, bag::KeptText(three));
  ASSERT_EQ(references_->Count(), 1);
  EXPECT_EQ(references_->Item(Variant(u"mgr"))->DisplayName(), u"Old name");

  UseHandler();
  const Ref<vnTitleRefs> listed = titles_->TitleRefsObj();
  Inside::Read(*listed, bag::KeptText(three));
  ASSERT_EQ(listed->Count(), 2);
  EXPECT_EQ(listed->Item(Variant(1))->Document(), document_);
  EXPECT_EQ(listed->Item(Variant(2))->DisplayNameCache(), u"Old name");
  EXPECT_EQ(SavedText(*listed),
            "TR1=~64\"R^agone^ADN^aGone^A\":TR2=~64\"R^amgr^ADN^aOld name^A\":");
  listed->RemoveAll();
  EXPECT_EQ(SavedText(*listed), "");
}

}  // namespace
}  // namespace vndoc6
