#include "vndoc6/process/condition.h"

#include <gtest/gtest.h>

#include "automation/inside.h"
#include "platform/keys.h"
#include "tests/support/acts_once.h"
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

TEST(Conditions, OneWhoseKeyIsTakenGetsTheDocumentAllTheSame) {
  const auto document = Make<vnDocument>();
  const auto conditions = Make<vnConditions>();
  Inside::TakeDocument(*conditions, document.get());
  conditions->Add(Keyed(u"k").get());
  const auto second = Keyed(u"k");
  conditions->Add(second.get());
  EXPECT_EQ(second->Document(), document);
}

TEST(Conditions, AHandlerMayLetGoOfTheStepThatMakesOne) {
  const auto document = Make<vnDocument>();
  Ref<vnStep> step = document->NewStep();
  const testing::ActsOnce handler(*document, "ConditionChange", [&] {
    document->Steps()->Remove(Variant(step->Key()));
    step = nullptr;
  });
  EXPECT_EQ(step->NewCondition(u"n", u"t")->DisplayName(), u"n");
  EXPECT_EQ(document->Steps()->Count(), 0);
}

TEST(Conditions, DamagedTextGivesWhatComesBeforeTheFault) {
  const auto conditions = Make<vnConditions>();
  Inside::Read(*conditions, Kept(R"(anything=~64"K^aa^A":number=5:same=~64"K^aA^A":C=~64"K^ab)"));
  // The entry that is no text is no condition; the one with a taken key and the cut-off one are
  // dropped.
  ASSERT_EQ(conditions->Count(), 1);
  EXPECT_EQ(conditions->Item(Variant(1))->Key(), u"a");
  EXPECT_TRUE(SavedText(*conditions).ends_with("number=5:"));
}

}  // namespace
}  // namespace vndoc6
