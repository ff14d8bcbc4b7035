#include "vndoc6/process/link.h"

#include <gtest/gtest.h>

#include "automation/inside.h"
#include "tests/support/recording_listener.h"
#include "tests/support/saved_text.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/condition.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using testing::Kept;
using testing::SavedText;
using Lines = std::vector<std::string>;

constexpr std::string_view kSaved = R"(K=~64"k":TT=~64"tip":T=~64"yes":OSK=~64"from":DSK=~64"to":)"
                                    R"(L=~64"no ^j line":C=~64"Cx^aK^bx^B^A":CE=~64"x > 1":)";

Ref<vnLink> Keyed(const Text& key) {
  const auto link = Make<vnLink>();
  Inside::StoreKey(*link, key);
  return link;
}

TEST(Link, SavesWhatItLoadedAndTheTextsNobodyReadUnchanged) {
  const auto link = Make<vnLink>();
  Inside::Read(*link, Kept(kSaved), Text());
  EXPECT_EQ(SavedText(*link), kSaved);
  // Once read, they are written as the objects have it.
  ASSERT_EQ(link->Conditions()->Count(), 1);
  EXPECT_EQ(link->Conditions()->Item(Variant(1))->Key(), u"x");
  EXPECT_NE(SavedText(*link), kSaved);
}

TEST(Link, WritesATextOfAnotherFormAnewAlsoWhenNobodyReadIt) {
  constexpr std::string_view kOthers[] = {
      R"(K=~64"k":T=~64"t":)",  // entries missing
      R"(T=~64"t":K=~64"k":TT=~64"":OSK=~64"":DSK=~64"":L=~64"":C=~64"":CE=~64"":)",  // other order
      R"(K=~64"k":TT=~64"":T=~64"t":OSK=~64"":DSK=~64"":L=~64"":C=~64"":CE=~64"":C=1:)",
      R"(K=~64"k":TT=~64"":T=~64"t":OSK=~64"":DSK=~64"":L=~64"":C=~64"":CE=~64"":damage)",
      R"(K=~64"k":TT=e:T=~64"t":OSK=~64"":DSK=~64"":L=~64"":C=~64"":CE=~64"":)",
  };
  for (const std::string_view other : kOthers) {
    const auto link = Make<vnLink>();
    Inside::Read(*link, Kept(other), Text());
    EXPECT_EQ(SavedText(*link),
              R"(K=~64"k":TT=~64"":T=~64"t":OSK=~64"":DSK=~64"":L=~64"":C=~64"":CE=~64"":)");
  }
  const auto keyed = Make<vnLink>();
  Inside::Read(*keyed, Kept(kSaved), u"given");
  EXPECT_EQ(SavedText(*keyed).substr(0, 15), R"(K=~64"given":TT)");
  EXPECT_EQ(keyed->Tooltip(), u"tip");
}

TEST(Link, LoadTakesTheKeyGivenAndDropsWhatWasBuilt) {
  const auto link = Make<vnLink>();
  const Ref<vnLine> line = link->Line();
  const Ref<vnConditions> conditions = link->Conditions();
  EXPECT_EQ(link->Line(), line);
  link->Load(automation::FromUtf8(kSaved), u"given");
  EXPECT_EQ(link->Key(), u"given");
  EXPECT_NE(link->Line(), line);
  EXPECT_NE(link->Conditions(), conditions);
  EXPECT_EQ(link->Conditions()->Count(), 1);
}

TEST(Link, PutObjectsReplaceTheTexts) {
  const auto link = Make<vnLink>();
  Inside::Read(*link, Kept(kSaved), Text());
  const auto conditions = Make<vnConditions>();
  link->SetConditions(conditions.get());
  EXPECT_EQ(link->Conditions(), conditions);
  link->SetConditions(nullptr);
  EXPECT_EQ(link->Conditions()->Count(), 0);
}

TEST(Link, NewConditionReportsItsTestAndThenItself) {
  const auto document = Make<vnDocument>();
  const auto link = Keyed(u"k");
  document->Links()->Add(link.get());
  testing::RecordingListener listener(*document);
  const auto condition = link->NewCondition(u"name", u"x > 1");
  EXPECT_EQ(condition->Link(), link);
  EXPECT_EQ(condition->Document(), document);
  EXPECT_EQ(condition->DisplayName(), u"name");
  const Text key = condition->Key();
  EXPECT_EQ(link->Conditions()->Item(Variant(key)), condition);
  EXPECT_FALSE(link->RemoveCondition(u"unknown"));
  EXPECT_TRUE(link->RemoveCondition(key));
  EXPECT_FALSE(link->RemoveCondition(key));
  const std::string name = automation::ToUtf8(key);
  EXPECT_EQ(listener.Take(), (Lines{"ConditionChange  88", "ConditionChange " + name + " 1",
                                    "ConditionChange " + name + " 2"}));
}

TEST(Link, ItsPartsFollowItsDocumentAndKeepItAlive) {
  Ref<vnLine> line;
  {
    const auto link = Make<vnLink>();
    line = link->Line();
    const auto document = Make<vnDocument>();
    document->Links()->Add(link.get());
    EXPECT_EQ(line->Document(), document);
    EXPECT_EQ(link->Conditions()->Document(), document);
  }
  // Nobody but the line's holder is left.
  ASSERT_TRUE(line->Document());
  EXPECT_EQ(line->Document()->Links()->Count(), 1);
}

TEST(Links, AWorkingListWithoutADocumentLeavesALinkItsOwn) {
  const auto document = Make<vnDocument>();
  const auto link = Keyed(u"k");
  document->Links()->Add(link.get());
  Make<vnLinks>()->Add(link.get());
  EXPECT_EQ(link->Document(), document);
}

}  // namespace
}  // namespace vndoc6
