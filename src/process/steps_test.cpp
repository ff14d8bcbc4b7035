#include "vndoc6/process/steps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <random>

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "tests/support/acts_once.h"
#include "tests/support/plain_document.h"
#include "tests/support/recording_listener.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using Lines = std::vector<std::string>;

Ref<vnStep> KeyedStep(const Text& key, int32_t index = 0) {
  const auto step = Make<vnStep>();
  step->Load(u"SI=" + automation::NumberText(index) + u":", key);
  return step;
}

// A document with steps "a", "b", ... numbered from 1.
Ref<vnDocument> WithSteps(int count) {
  const auto document = Make<vnDocument>();
  for (int i = 0; i < count; ++i) {
    document->Steps()->Add(KeyedStep(Text(1, static_cast<char16_t>(u'a' + i))).get());
  }
  return document;
}

// The keys by number: "1a 2b".
std::string Numbering(vnDocument& document) {
  std::vector<std::pair<int32_t, std::string>> steps;
  for (int32_t i = 1; i <= document.Steps()->Count(); ++i) {
    const auto step = document.Steps()->Item(Variant(i));
    steps.emplace_back(step->StepIndex(), automation::ToUtf8(step->Key()));
  }
  std::stable_sort(steps.begin(), steps.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  std::string text;
  for (const auto& [number, key] : steps) {
    text += (text.empty() ? "" : " ") + std::to_string(number) + key;
  }
  return text;
}

TEST(Steps, NewStepsAreNumberedAndRemovalClosesTheGap) {
  const auto document = WithSteps(3);
  EXPECT_EQ(Numbering(*document), "1a 2b 3c");
  const Ref<vnStep> removed = document->Steps()->Item(Variant(2));
  document->Steps()->Remove(Variant(2));
  EXPECT_EQ(Numbering(*document), "1a 2c");
  EXPECT_EQ(document->Steps()->LastIndex(), 2);
  EXPECT_EQ(removed->StepIndex(), -1);
}

TEST(Steps, MovingAStepMovesThoseBetween) {
  const auto document = WithSteps(6);
  const auto move = [&](const char16_t* key, int32_t number) {
    document->Steps()->Item(Variant(key))->SetStepIndex(number);
    return Numbering(*document);
  };
  EXPECT_EQ(move(u"e", 2), "1a 2e 3b 4c 5d 6f");
  EXPECT_EQ(move(u"e", 5), "1a 2b 3c 4d 5e 6f");
  EXPECT_EQ(move(u"a", 9), "1b 2c 3d 4e 5f 6a");
  EXPECT_EQ(move(u"c", 0), "1b 2c 3d 4e 5f 6a");
  EXPECT_EQ(move(u"c", -5), "-1c 1b 2d 3e 4f 5a");
}

TEST(Steps, AStepThatComesBackMovesTheHolderOfItsNumberDown) {
  const auto document = WithSteps(4);
  const Ref<vnStep> step = document->Steps()->Item(Variant(u"b"));
  step->SetStepIndex(-1);
  ASSERT_EQ(Numbering(*document), "-1b 1a 2c 3d");
  step->SetStepIndex(2);
  EXPECT_EQ(Numbering(*document), "1a 1c 2b 3d");
  step->SetStepIndex(-1);
  step->SetStepIndex(99);
  // Capped at one above the highest, which nobody holds.
  EXPECT_EQ(Numbering(*document), "1a 1c 2d 3b");
}

TEST(Steps, EveryMovedStepIsReported) {
  const auto document = WithSteps(4);
  testing::RecordingListener events(*document);
  document->Steps()->Item(Variant(u"d"))->SetStepIndex(3);
  EXPECT_EQ(events.Take(), (Lines{"StepChange c 94", "StepChange d 94"}));
  document->Steps()->Item(Variant(u"a"))->SetStepIndex(1);
  EXPECT_EQ(events.Take(), Lines());
  document->Steps()->Remove(Variant(u"d"));
  EXPECT_EQ(events.Take(), (Lines{"StepChange c 94", "StepChange d 94", "StepRemoved d"}));
  document->SetChangeEvents(false);
  document->Steps()->Add(KeyedStep(u"x").get());
  EXPECT_EQ(events.Take(), Lines());
  EXPECT_EQ(document->Steps()->Count(), 4);
}

TEST(Steps, ATakenKeyIsRefusedAndATakenNumberKept) {
  const auto document = WithSteps(2);
  testing::RecordingListener events(*document);
  document->Steps()->Add(KeyedStep(u"A").get());
  document->Steps()->Add(nullptr);
  EXPECT_EQ(document->Steps()->Count(), 2);
  EXPECT_EQ(events.Take(), Lines());
  document->Steps()->Add(KeyedStep(u"x", 2).get());
  EXPECT_EQ(events.Take(), Lines{"StepAdded x"});
  EXPECT_EQ(Numbering(*document), "1a 2b 2x");
  EXPECT_EQ(document->Steps()->ItemByStepIndex(2)->Key(), u"b");
  document->Steps()->Remove(Variant(u"b"));
  // Closing the gap looks only above the number.
  EXPECT_EQ(Numbering(*document), "1a 2x");
}

TEST(Steps, LookUps) {
  const auto document = WithSteps(3);
  const Ref<vnSteps> steps = document->Steps();
  for (const Variant& nothing :
       {Variant(0), Variant(4), Variant(-1), Variant(u"z"), Variant(u"1"), Variant(),
        Variant(automation::Null()), Variant(1e300), Variant(Ref<automation::Object>(steps))}) {
    EXPECT_FALSE(steps->Item(nothing)) << nothing.TypeName();
  }
  EXPECT_EQ(steps->Item(Variant(u"B"))->Key(), u"b");
  EXPECT_EQ(steps->Item(Variant(1.6))->Key(), u"b");
  EXPECT_FALSE(steps->ItemByStepKey(u"B"));
  EXPECT_EQ(steps->ItemByStepKey(u"b")->StepIndex(), 2);
  EXPECT_FALSE(steps->ItemByStepIndex(0));
  steps->ItemByStepIndex(1)->SetStepIndex(-1);
  EXPECT_EQ(steps->ItemByStepIndex(-1)->Key(), u"a");
  EXPECT_EQ(Make<vnSteps>()->LastIndex(), 0);
}

TEST(Steps, AStepThatIsLoadedAgainIsFoundUnderItsNewKeyAndNumber) {
  const auto document = WithSteps(3);
  const Ref<vnSteps> steps = document->Steps();
  ASSERT_EQ(steps->LastIndex(), 3);
  steps->Item(Variant(2))->Load(u"SI=7:", u"again");
  EXPECT_EQ(steps->ItemByStepKey(u"again")->StepIndex(), 7);
  EXPECT_EQ(steps->ItemByStepIndex(7)->Key(), u"again");
  EXPECT_EQ(steps->LastIndex(), 7);
  EXPECT_FALSE(steps->ItemByStepKey(u"b"));
  // The collection still knows it under the key it was added with.
  EXPECT_EQ(steps->Item(Variant(u"b"))->Key(), u"again");
  // Added again under its new key it is there twice; it moves and is counted once.
  const Ref<vnStep> again = steps->ItemByStepKey(u"again");
  steps->Add(again.get());
  ASSERT_EQ(steps->Count(), 4);
  steps->Item(Variant(u"c"))->SetStepIndex(-1);
  EXPECT_EQ(again->StepIndex(), 6);
  steps->Remove(Variant(u"again"));
  steps->Remove(Variant(u"b"));
  EXPECT_EQ(Numbering(*document), "-1c 1a");
}

// What a handler does at the first report of a renumbering stands, and the rest closes up.
TEST(Steps, AHandlerMayTakeStepsAwayDuringARenumbering) {
  const auto remove = [](vnSteps& steps, const char16_t* key) { steps.Remove(Variant(key)); };
  struct Case {
    int32_t put;  // for "e" of a to e; 0 removes "a" instead
    std::function<void(vnSteps& steps, vnStep& c)> act;
    const char* numbering;
    int32_t number_of_c;
  };
  const Case cases[] = {
      {2, [](vnSteps&, vnStep& c) { c.SetStepIndex(-1); }, "-1c 1a 2e 3b 4d", -1},
      {0, [](vnSteps&, vnStep& c) { c.SetStepIndex(-1); }, "-1c 1b 2d 3e", -1},
      {2, [&](vnSteps& steps, vnStep&) { remove(steps, u"c"); }, "1a 2e 3b 4d", -1},
      {0, [&](vnSteps& steps, vnStep&) { remove(steps, u"c"); }, "1b 2d 3e", -1},
      {2, [](vnSteps&, vnStep& c) { c.Load(u"SI=-2147483648:", u"c"); }, "-2147483648c 1a 2e 3b 5d",
       std::numeric_limits<int32_t>::min()},
      {2, [](vnSteps& steps, vnStep&) { steps.RemoveAll(); }, "", 3},
      {2, [&](vnSteps& steps, vnStep&) { remove(steps, u"e"); }, "1a 3b 4c 5d", 4},
  };
  for (const Case& test : cases) {
    const auto document = WithSteps(5);
    const Ref<vnSteps> steps = document->Steps();
    const Ref<vnStep> c = steps->Item(Variant(u"c"));
    const Ref<vnStep> e = steps->Item(Variant(u"e"));
    const testing::ActsOnce handler(*document, "StepChange", [&] { test.act(*steps, *c); });
    if (test.put != 0) {
      e->SetStepIndex(test.put);
    } else {
      remove(*steps, u"a");
    }
    const auto line = &test - cases;
    EXPECT_TRUE(handler.acted()) << line;
    EXPECT_EQ(Numbering(*document), test.numbering) << line;
    EXPECT_EQ(c->StepIndex(), test.number_of_c) << line;
  }
}

TEST(Steps, TextRoundTripsAndNumbersStayAsTheyAre) {
  const auto text_of = [](vnDocument& document) {
    return bag::BagTextOf(
        [&](bag::BagWriter& writer) { Inside::Write(*document.Steps(), writer); });
  };
  const auto document = WithSteps(0);
  EXPECT_EQ(text_of(*document), u"");
  for (const char16_t* key : {u"one", u"t:w\"o=^", u"three"}) {
    document->Steps()->Add(KeyedStep(key, 3).get());
  }
  const auto loaded = Make<vnDocument>();
  Inside::Read(*loaded->Steps(), bag::KeptText(text_of(*document)));
  EXPECT_EQ(Numbering(*loaded), "3one 3t:w\"o=^ 3three");
  EXPECT_EQ(text_of(*loaded), text_of(*document));
}

TEST(Steps, NumberingFollowsThePlainRules) {
  std::mt19937 random(6);
  const auto pick = [&](int32_t below) {
    return static_cast<int32_t>(random() % static_cast<uint32_t>(below));
  };
  const auto document = Make<vnDocument>();
  const Ref<vnSteps> steps = document->Steps();
  testing::PlainNumbering plain;
  for (int operation = 0; operation < 6000; ++operation) {
    const int32_t count = steps->Count();
    const int32_t choice = pick(10);
    if (count == 0 || (choice < 3 && count < 40)) {
      document->NewStep();
      plain.Add();
    } else if (choice < 5) {
      const int32_t at = pick(count);
      steps->Remove(Variant(at + 1));
      plain.Remove(static_cast<size_t>(at));
    } else {
      const int32_t at = pick(count);
      const int32_t number = pick(count + 5) - 2;
      steps->Item(Variant(at + 1))->SetStepIndex(number);
      plain.Put(static_cast<size_t>(at), number);
    }
    ASSERT_EQ(steps->LastIndex(), plain.Highest()) << operation;
    for (size_t i = 0; i < plain.numbers.size(); ++i) {
      ASSERT_EQ(Inside::store(*steps)[i].StepIndex(), plain.numbers[i]) << operation;
    }
    const int32_t sought = pick(count + 2) - 1;
    const auto first = std::find(plain.numbers.begin(), plain.numbers.end(), sought);
    const Ref<vnStep> found = steps->ItemByStepIndex(sought);
    ASSERT_EQ(found.get(),
              first == plain.numbers.end()
                  ? nullptr
                  : &Inside::store(*steps)[static_cast<size_t>(first - plain.numbers.begin())]);
  }
}

}  // namespace
}  // namespace vndoc6
