#include "vndoc6/process/task.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "automation/inside.h"
#include "process/task_order.h"
#include "tests/support/acts_once.h"
#include "tests/support/plain_document.h"
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

Ref<vnTask> Keyed(const Text& key) {
  const auto task = Make<vnTask>();
  Inside::StoreKey(*task, key);
  return task;
}

TEST(Task, LoadsWhatIsMissingOrNotOfItsKindAsInANewTask) {
  const auto task = Make<vnTask>();
  task->Load(u"TT=~64\"three\":MT=~64\"7\":K=~64\"stored\":", u"given");
  EXPECT_EQ(SavedText(*task), R"(K=~64"given":N=~64"":D=~64"":TT=0:MT=7:TO=0:TD=~64"":)");
}

TEST(Task, ReportsTypeModuleAndDataOnEveryPut) {
  const auto document = Make<vnDocument>();
  testing::RecordingListener listener(*document);
  const auto task = Keyed(u"k");
  task->SetTaskType(1);
  task->SetDocument(document.get());
  task->SetTaskType(1);
  task->SetTaskType(1);
  task->SetModuleType(2);
  task->SetTaskData(u"data");
  task->SetName(u"name");
  task->SetDescription(u"description");
  task->SetTaskOrder(5);
  EXPECT_EQ(listener.Take(),
            (Lines{"TaskChange k 90", "TaskChange k 90", "TaskChange k 91", "TaskChange k 92"}));
}

TEST(Tasks, AddGivesTheStepUnlessTheKeyIsTaken) {
  const auto document = Make<vnDocument>();
  const Ref<vnStep> step = document->NewStep();
  const Ref<vnTasks> tasks = step->Tasks();
  const auto task = Keyed(u"k");
  tasks->Add(task.get());
  EXPECT_EQ(task->Step(), step);
  const auto taken = Keyed(u"K");
  tasks->Add(taken.get());
  EXPECT_FALSE(taken->Step());
}

TEST(Tasks, RemovalIsReportedWhileTheTaskIsStillThere) {
  for (const bool empty_it : {false, true}) {
    const auto document = Make<vnDocument>();
    const Ref<vnTasks> tasks = document->NewStep()->Tasks();
    for (const Text key : {u"a", u"b"}) tasks->Add(Keyed(key).get());
    int32_t count = -1;
    const testing::ActsOnce handler(*document, "TaskChange", [&] {
      count = tasks->Count();
      if (empty_it) tasks->RemoveAll();
    });
    tasks->Remove(Variant(1));
    EXPECT_EQ(count, 2);
    EXPECT_EQ(tasks->Count(), empty_it ? 0 : 1);
  }
}

TEST(Tasks, LoadedTasksAreNotCountedByNewTask) {
  const auto document = Make<vnDocument>();
  const Ref<vnStep> step = document->NewStep();
  step->NewTask();
  step->NewTask();
  const Text saved = step->Save();
  step->Load(saved);
  EXPECT_EQ(step->Tasks()->Count(), 2);
  const auto loaded = Make<vnStep>();
  loaded->Load(saved);
  EXPECT_EQ(loaded->Tasks()->Count(), 2);
  EXPECT_EQ(loaded->NewTask()->TaskOrder(), 1);
}

TEST(TaskOrderIndex, ClosesTheGapForOrdersAboveIt) {
  TaskOrderIndex index;
  index.Add(u"a", 1);
  index.Add(u"A", 2);
  index.Add(u"b", 4);
  index.Add(u"b", 3);
  ASSERT_EQ(index.size(), 3U);
  index.Remove(u"a");
  index.Remove(u"unknown");
  const auto above = [&index](int32_t order) {
    auto entries = index.Above(order);
    std::sort(entries.begin(), entries.end());
    return entries;
  };
  using Entries = std::vector<std::pair<Text, int32_t>>;
  EXPECT_EQ(above(1), (Entries{{u"A", 2}, {u"b", 3}}));
  index.CloseGap(1);
  EXPECT_EQ(above(0), (Entries{{u"A", 1}, {u"b", 2}}));
  EXPECT_EQ(above(2), Entries());
}

TEST(Tasks, OrderFollowsThePlainRules) {
  std::mt19937 random(34);
  const auto below = [&](size_t end) { return random() % end; };
  const auto document = Make<vnDocument>();
  const Ref<vnStep> step = document->NewStep();
  const Ref<vnTasks> tasks = step->Tasks();
  testing::PlainOrder plain;
  for (int operation = 0; operation < 5000; ++operation) {
    const size_t count = plain.tasks.size();
    const size_t choice = count == 0 ? 0 : count > 30 ? 3 : below(8);
    const size_t at = count == 0 ? 0 : below(count);
    if (choice < 3) {
      plain.New(step->NewTask()->Key());
    } else if (choice < 5) {
      Text key = plain.tasks[at].key;
      if (below(5) == 0) key = automation::AsciiLower(key);
      if (below(8) == 0) key += u"?";
      step->RemoveTask(key);
      plain.Remove(key);
    } else if (choice == 5) {
      const auto order = static_cast<int32_t>(below(40)) - 5;
      tasks->Item(Variant(plain.tasks[at].key))->SetTaskOrder(order);
      plain.tasks[at].order = order;
    } else if (choice == 6) {
      const Ref<vnTask> task = Keyed(u"h" + automation::NumberText(operation));
      tasks->Add(task.get());
      plain.tasks.push_back({task->Key(), 0});
    } else {
      tasks->Remove(Variant(static_cast<int32_t>(at + 1)));
      plain.tasks.erase(plain.tasks.begin() + static_cast<std::ptrdiff_t>(at));
    }
    ASSERT_EQ(tasks->Count(), static_cast<int32_t>(plain.tasks.size())) << operation;
    for (size_t i = 0; i < plain.tasks.size(); ++i) {
      ASSERT_EQ(Inside::store(*tasks)[i].Key(), plain.tasks[i].key) << operation;
      ASSERT_EQ(Inside::store(*tasks)[i].TaskOrder(), plain.tasks[i].order) << operation;
    }
  }
}

}  // namespace
}  // namespace vndoc6
