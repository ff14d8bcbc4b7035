#include "vndoc6/process/condition.h"

#include <gtest/gtest.h>

#include "automation/inside.h"
#include "platform/keys.h"
#include "tests/support/recording_listener.h"
#include "tests/support/saved_text.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using testing::Kept;
using testing::SavedText;
using Lines = std::vector<std::string>;

Ref<vnCondition> Keyed(const Text& key) {
  const auto condition = Make<vnCondition>();
  Inside::StoreKey(*condition, key);
  return condition;
}

TEST(Condition, LoadsTheKeyThatIsGiven) {
  const auto loaded = Make<vnCondition>();
  loaded->Load(u"CT=5:FM=T:K=~64\"stored\":", u"given");
  EXPECT_EQ(loaded->Key(), u"given");
  EXPECT_EQ(loaded->DisplayName(), u"");
}

TEST(Condition, TestAndMessageReportTheTestOnEveryPut) {
  const auto document = Make<vnDocument>();
  testing::RecordingListener listener(*document);
  const auto condition = Keyed(u"k");
  condition->SetFailMessage(u"no document, no event");
  condition->SetDocument(document.get());
  condition->SetDisplayName(u"name");
  condition->SetConditionTest(u"x");
  condition->SetConditionTest(u"x");
  condition->SetFailMessage(u"m");
  EXPECT_EQ(listener.Take(),
            (Lines{"ConditionChange k 88", "ConditionChange k 88", "ConditionChange k 88"}));
}

TEST(Conditions, AddReportsOneAndRemoveTwo) {
  const auto document = Make<vnDocument>();
  testing::RecordingListener listener(*document);
  const auto conditions = Make<vnConditions>();
  Inside::TakeDocument(*conditions, document.get());
  conditions->Add(Keyed(u"k").get());
  conditions->Remove(Variant(u"other"));
  conditions->Remove(Variant(2));
  EXPECT_FALSE(Inside::RemoveMember(*conditions, Variant(u"other")));
  EXPECT_TRUE(Inside::RemoveMember(*conditions, Variant(u"K")));
  EXPECT_EQ(listener.Take(), (Lines{"ConditionChange k 1", "ConditionChange k 2"}));

  conditions->Add(nullptr);
  const auto keyless = Make<vnCondition>();
  conditions->Add(keyless.get());
  EXPECT_FALSE(keyless->Key().empty());
  EXPECT_EQ(conditions->Item(Variant(keyless->Key())), keyless);
}

TEST(Conditions, ATakenKeyInAnyLetterCaseIsNotAddedButGetsTheDocument) {
  const auto document = Make<vnDocument>();
  const auto conditions = Make<vnConditions>();
  Inside::TakeDocument(*conditions, document.get());
  const auto first = Keyed(u"straße");
  conditions->Add(first.get());
  testing::RecordingListener listener(*document);
  const auto second = Keyed(u"STRAßE");
  conditions->Add(second.get());
  EXPECT_EQ(conditions->Count(), 1);
  EXPECT_EQ(conditions->Item(Variant(1)), first);
  EXPECT_EQ(second->Document(), document);
  EXPECT_EQ(listener.Take(), Lines{});
}

TEST(Conditions, AreSavedByKeyInOrder) {
  const auto conditions = Make<vnConditions>();
  EXPECT_EQ(SavedText(*conditions), "");
  conditions->Add(Keyed(u"b").get());
  conditions->Add(Keyed(u"a").get());
  EXPECT_EQ(SavedText(*conditions),
            R"(Cb=~64"K^ab^ADN^a^ACT^a^AFM^a^A":Ca=~64"K^aa^ADN^a^ACT^a^AFM^a^A":)");
}

// Takes a step out of its document and lets go of it at the first word of a condition.
class StepRemover : public DocumentListener {
 public:
  explicit StepRemover(Ref<vnStep>& step) : step_(step) {}
  void ConditionChange(vnCondition& eoCondition, int32_t) override {
    if (!step_) return;
    eoCondition.Document()->Steps()->Remove(Variant(step_->Key()));
    step_ = nullptr;
  }

 private:
  Ref<vnStep>& step_;
};

TEST(Conditions, AHandlerMayLetGoOfTheStepThatMakesOne) {
  const size_t live = automation::Object::LiveCount();
  {
    const auto document = Make<vnDocument>();
    Ref<vnStep> step = document->NewStep();
    StepRemover remover(step);
    document->AddListener(&remover);
    EXPECT_EQ(step->NewCondition(u"n", u"t")->DisplayName(), u"n");
    EXPECT_EQ(document->Steps()->Count(), 0);
    document->RemoveListener(&remover);
  }
  EXPECT_EQ(automation::Object::LiveCount(), live);
}

TEST(Conditions, AnyKeySurvivesSavingAndLoading) {
  const auto conditions = Make<vnConditions>();
  for (const Text& key : testing::kHostileKeys) conditions->Add(Keyed(key).get());
  ASSERT_EQ(conditions->Count(), static_cast<int32_t>(std::size(testing::kHostileKeys)));

  const auto loaded = Make<vnConditions>();
  Inside::Read(*loaded, Kept(SavedText(*conditions)));
  ASSERT_EQ(loaded->Count(), conditions->Count());
  for (const Text& key : testing::kHostileKeys) {
    const auto condition = loaded->Item(Variant(key));
    ASSERT_TRUE(condition);
    EXPECT_EQ(condition->Key(), key);
  }
  EXPECT_EQ(SavedText(*loaded), SavedText(*conditions));
}

TEST(Conditions, DamagedTextGivesWhatComesBeforeTheFault) {
  const auto conditions = Make<vnConditions>();
  Inside::Read(*conditions, Kept(R"(anything=~64"K^aa^A":number=5:same=~64"K^aA^A":C=~64"K^ab)"));
  // The entry that is no text makes a condition without a key, which gets a fresh one; the one
  // with a taken key and the cut-off one are dropped.
  ASSERT_EQ(conditions->Count(), 2);
  EXPECT_EQ(conditions->Item(Variant(1))->Key(), u"a");
  EXPECT_EQ(conditions->Item(Variant(2))->Key().size(), platform::NewKey().size());
}

}  // namespace
}  // namespace vndoc6
