#include "vndoc6/process/step.h"

#include <gtest/gtest.h>

#include <functional>

#include "automation/inside.h"
#include "tests/support/acts_once.h"
#include "tests/support/recording_listener.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using Lines = std::vector<std::string>;

TEST(Step, SavesEveryEntryInItsOrder) {
  const auto step = Make<vnStep>();
  EXPECT_EQ(
      step->Save(),
      u"PB=~64\"\":D=~64\"\":L=~64\"\":SI=0:K=~64\"\":CK=~64\"\":INS=~64\"\":AT=0:ATo=0:TBL=0:"
      u"F=~64\"\":DDT=0:DUR=~64\"\":AC=F:Fig=~64\"\":FL=~64\"\":J=~64\"\":Fd=~64\"\":C=~64\"\":"
      u"P=~64\"\":T=~64\"\":Attach=~64\"\":CE=~64\"\":CS=0:");
  // What is not read is copied; it must be what would be written.
  const auto unread = Make<vnStep>();
  unread->Load(step->Save());
  EXPECT_EQ(unread->Save(), step->Save());
}

TEST(Step, KeepsTheTextsOfPartsThatNobodyRead) {
  const Text text =
      u"PB=~64\"not a "
      u"bag\":D=~64\"d\":L=~64\"l\":SI=4:K=~64\"k\":CK=~64\"c\":INS=~64\"i\":AT=1:ATo=2:"
      u"TBL=3:F=~64\"f\":DDT=5:DUR=~64\"u\":AC=T:Fig=~64\"^a^A^j\":FL=~64\"x\":J=~64\"y\":Fd=~"
      u"64\"z\":"
      u"C=~64\"=\":P=~64\":\":T=~64\"^J\":Attach=~64\"?\":CE=~64\"e\":CS=6:";
  const auto step = Make<vnStep>();
  step->Load(text);
  EXPECT_EQ(step->Save(), text);
  step->SetLabel(u"other");
  step->SetLabel(u"l");
  EXPECT_EQ(step->Save(), text);
}

TEST(Step, WritesUnknownAndMisplacedEntriesInItsOwnOrder) {
  const auto step = Make<vnStep>();
  step->Load(
      u"CS=6:Z=1:L=~64\"l\":L=~64\"second\":AT=~64\"12\":DDT=~64\"twelve\":K=~64\"k\":broken");
  const auto canonical = Make<vnStep>();
  canonical->Load(step->Save());
  EXPECT_EQ(step->Label(), u"l");
  EXPECT_EQ(step->AssignType(), 12);
  EXPECT_EQ(step->DueDateType(), 0);
  EXPECT_EQ(step->ContinueStyle(), 6);
  EXPECT_EQ(canonical->Save(), step->Save());
  EXPECT_TRUE(step->Save().ends_with(u":CS=6:Z=1:"));
}

TEST(Step, LoadKeepsAGivenKeyAndReportsNothing) {
  const auto document = Make<vnDocument>();
  const Ref<vnStep> step = document->NewStep();
  step->SetLabel(u"before");
  testing::RecordingListener events(*document);
  step->Load(u"L=~64\"after\":SI=9:K=~64\"stored\":", u"given");
  EXPECT_EQ(events.Take(), Lines());
  EXPECT_EQ(step->Key(), u"given");
  EXPECT_EQ(step->Label(), u"after");
  EXPECT_EQ(step->StepIndex(), 9);
  step->Load(u"K=~64\"stored\":");
  EXPECT_EQ(step->Key(), u"stored");
}

TEST(Step, LoadDropsBuiltPartsButPerformedBy) {
  const auto document = Make<vnDocument>();
  const Ref<vnStep> step = document->NewStep();
  step->PerformedBy()->Add(Variant(u"Manager"));
  const Ref<vnTitleRefs> performed_by = step->PerformedBy();
  const Ref<vnFigure> figure = step->Figure();
  figure->SetTop(99);
  step->Load(u"L=~64\"x\":");
  EXPECT_EQ(step->PerformedBy(), performed_by);
  EXPECT_EQ(step->PerformedBy()->Count(), 1);
  EXPECT_NE(step->Figure(), figure);
  EXPECT_EQ(step->Figure()->Top(), 15);
}

TEST(Step, ItsBuiltPartsFollowItsDocument) {
  const auto document = Make<vnDocument>();
  const auto step = Make<vnStep>();
  const TextView names[] = {u"Files",      u"Jumps", u"PerformedBy", u"Figure",
                            u"Conditions", u"Tasks", u"Links"};
  std::vector<Variant> parts;
  for (const TextView name : names) parts.push_back(automation::Get(*step, name));
  step->SetDocument(document.get());
  for (const Variant& part : parts) {
    EXPECT_EQ(automation::Get(*part.ToObject(), u"Document"), Variant(document)) << part.TypeName();
  }
}

TEST(Step, ReportsWhatHostsCountOn) {
  const auto document = Make<vnDocument>();
  const Ref<vnStep> step = document->NewStep();
  step->Load(u"", u"k");
  testing::RecordingListener events(*document);
  step->SetLabel(u"a");
  step->SetLabel(u"a");
  step->SetDescription(u"b");
  step->SetDescription(u"b");
  step->SetContainerKey(u"c");
  step->SetContainerKey(u"c");
  step->SetInstructions(u"d");
  step->SetDuration(u"e");
  step->SetContinueStyle(1);
  EXPECT_EQ(events.Take(),
            (Lines{"StepChange k 31", "StepChange k 2", "StepChange k 3", "StepChange k 3"}));
}

TEST(Step, ContainerCanBeSetButNotRead) {
  const auto step = Make<vnStep>();
  automation::Put(*step, u"Container", {Variant(Ref<automation::Object>())});
  try {
    automation::Get(*step, u"container");
    FAIL();
  } catch (const automation::Error& error) {
    EXPECT_EQ(error.number(), 438);
  }
}

TEST(Step, DependenciesOnStepsThatAreGoneGoWithTheNextSave) {
  const auto document = Make<vnDocument>();
  const Ref<vnStep> first = document->NewStep();
  const Ref<vnStep> second = document->NewStep();
  const Ref<vnStep> third = document->NewStep();
  third->Dependancies()->Add(first->Key(), Variant(u"why"));
  third->Dependancies()->Add(second->Key(), Variant(1));
  third->Dependancies()->Add(u"never there", Variant(1));
  document->Steps()->Remove(Variant(first->Key()));
  EXPECT_NE(third->Save().find(u":DP=~64\""), Text::npos);
  EXPECT_EQ(third->Dependancies()->Count(), 1);
  EXPECT_EQ(third->Dependancies()->Key(1), second->Key());

  // The same for a step that nobody has read since it was loaded.
  const Text saved = third->Save();
  document->Steps()->Remove(Variant(second->Key()));
  third->Load(saved);
  EXPECT_EQ(third->Save().find(u"DP="), Text::npos);
  EXPECT_TRUE(third->Dependancies()->IsEmpty());

  // A host may add to the bag that a save emptied; one that was empty before the save is dropped.
  third->Load(saved);
  const Ref<Properties> bag = third->Dependancies();
  third->Save();
  bag->Add(third->Key(), Variant(1));
  EXPECT_NE(third->Save().find(u":DP=~64\""), Text::npos);
  bag->Remove(third->Key());
  third->Save();
  EXPECT_NE(third->Dependancies(), bag);
}

TEST(Step, TasksStayNumberedWithoutGaps) {
  const auto document = Make<vnDocument>();
  const Ref<vnStep> step = document->NewStep();
  const Ref<vnTask> first = step->NewTask();
  const Ref<vnTask> second = step->NewTask();
  const Ref<vnTask> third = step->NewTask();
  EXPECT_EQ(third->TaskOrder(), 3);
  step->RemoveTask(u"unknown");
  step->RemoveTask(first->Key());
  EXPECT_EQ(second->TaskOrder(), 1);
  EXPECT_EQ(third->TaskOrder(), 2);
  EXPECT_EQ(step->NewTask()->TaskOrder(), 3);

  // Loaded tasks are not counted.
  const Ref<vnStep> copy = document->NewStep(step->Key());
  EXPECT_EQ(copy->Tasks()->Count(), 3);
  EXPECT_EQ(copy->NewTask()->TaskOrder(), 1);
}

TEST(Step, ReordersAndRecountsTasks) {
  const auto step = Make<vnStep>();
  const Ref<vnTask> first = step->NewTask();
  const Ref<vnTask> second = step->NewTask();
  const Ref<vnTask> third = step->NewTask();
  Inside::ReorderTask(*step, third->Key(), 1);
  EXPECT_EQ(third->TaskOrder(), 1);
  EXPECT_EQ(first->TaskOrder(), 2);
  EXPECT_EQ(second->TaskOrder(), 3);
  const auto loaded = Make<vnStep>();
  loaded->Load(step->Save());
  Inside::RebuildTaskOrder(*loaded);
  EXPECT_EQ(loaded->NewTask()->TaskOrder(), 4);
}

TEST(Step, ConditionsAndLinks) {
  const auto document = Make<vnDocument>();
  const Ref<vnStep> step = document->NewStep();
  const Ref<vnCondition> condition = step->NewCondition(u"name", u"test");
  EXPECT_EQ(step->Conditions()->Item(Variant(condition->Key())), condition);
  EXPECT_TRUE(step->RemoveCondition(condition->Key()));
  EXPECT_FALSE(step->RemoveCondition(condition->Key()));
  step->AddLink(Make<vnLink>().get());
  EXPECT_EQ(step->Links()->Count(), 1);
  const auto loaded = Make<vnStep>();
  loaded->Load(step->Save());
  EXPECT_EQ(loaded->Links()->Count(), 0);
}

// A handler that hears of a task's removal may remove and make others: orders stay a run.
TEST(Step, TasksStayNumberedWhenAHandlerActs) {
  struct Case {
    size_t removed;
    std::function<void(vnStep& step, std::vector<Ref<vnTask>>& tasks)> act;
    std::vector<size_t> left;
  };
  const auto remove = [](vnStep& step, const Ref<vnTask>& task) { step.RemoveTask(task->Key()); };
  const Case cases[] = {
      {0, [&](vnStep& step, auto& tasks) { remove(step, tasks[1]); }, {2, 3}},
      {2, [&](vnStep& step, auto& tasks) { remove(step, tasks[0]); }, {1, 3}},
      {1, [&](vnStep& step, auto& tasks) { remove(step, tasks[1]); }, {0, 2, 3}},
      {1,
       [&](vnStep& step, auto& tasks) { step.Tasks()->Remove(Variant(tasks[1]->Key())); },
       {0, 2, 3}},
      {0, [&](vnStep& step, auto& tasks) { tasks.push_back(step.NewTask()); }, {1, 2, 3, 4}},
  };
  for (const Case& test : cases) {
    const auto document = Make<vnDocument>();
    const Ref<vnStep> step = document->NewStep();
    std::vector<Ref<vnTask>> tasks;
    for (int i = 0; i < 4; ++i) tasks.push_back(step->NewTask());
    const testing::ActsOnce handler(*document, "TaskChange", [&] { test.act(*step, tasks); });
    remove(*step, tasks[test.removed]);
    const auto line = &test - cases;
    EXPECT_TRUE(handler.acted()) << line;
    int32_t order = 0;
    for (const size_t left : test.left) EXPECT_EQ(tasks[left]->TaskOrder(), ++order) << line;
    EXPECT_EQ(step->Tasks()->Count(), order) << line;
    EXPECT_EQ(step->NewTask()->TaskOrder(), order + 1) << line;
  }

  // One that hears of the tasks being built may make one before.
  const auto document = Make<vnDocument>();
  const Ref<vnStep> source = document->NewStep();
  source->NewTask();
  const Ref<vnStep> step = document->NewStep(source->Key());
  Ref<vnTask> made;
  const testing::ActsOnce handler(*document, "TaskChange", [&] { made = step->NewTask(); });
  EXPECT_EQ(step->NewTask()->TaskOrder(), 2);
  EXPECT_EQ(made->TaskOrder(), 1);
}

// Tasks of another step do not hold this one: it does so itself while it runs.
TEST(Step, MayBeLetGoOfWhileItMakesAndRemovesTasks) {
  const auto document = Make<vnDocument>();
  for (const bool makes : {false, true}) {
    const Ref<vnTasks> tasks = document->NewStep()->Tasks();
    Ref<vnStep> step = document->NewStep();
    step->SetTasks(tasks.get());
    const Ref<vnTask> task = step->NewTask();
    const automation::Weak<vnStep> watched(step.get());
    bool there = false;
    const testing::ActsOnce handler(*document, "TaskChange", [&] {
      document->Steps()->Remove(Variant(step->Key()));
      step = nullptr;
      there = static_cast<bool>(watched);
    });
    vnStep& running = *step;
    if (makes) {
      running.NewTask();
    } else {
      running.RemoveTask(task->Key());
    }
    EXPECT_TRUE(there);
    EXPECT_FALSE(watched);
    EXPECT_EQ(tasks->Count(), makes ? 2 : 0);
  }
}

// A handler that reads the part whose building it is told of finds the same object.
TEST(Step, PartsReadWhileTheyAreBuiltAreTheSameObject) {
  struct Reader : DocumentListener {
    void StepChange(vnStep& step, int32_t) override {
      if (figure == nullptr) figure = step.Figure();
      same = same && figure == step.Figure();
    }
    Ref<vnFigure> figure;
    bool same = true;
  } reader;
  const auto document = Make<vnDocument>();
  const Ref<vnStep> step = document->NewStep();
  document->AddListener(&reader);
  EXPECT_EQ(step->Figure(), reader.figure);
  EXPECT_TRUE(reader.same);
  document->RemoveListener(&reader);
}

}  // namespace
}  // namespace vndoc6
