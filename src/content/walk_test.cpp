#include "vndoc6/content/walk.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/recording_listener.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;
using Lines = std::vector<std::string>;

TEST(Walk, TellsEveryValueOnceInPublishedOrder) {
  struct Recorder : ContentVisitor {
    Lines lines;
    void OnValue(const Content& content) override {
      if (content.name == "Name" || content.name == "Key") lines.emplace_back(content.name);
    }
    void OnObjectBegin(TextView name, automation::Object& object) override {
      lines.push_back(automation::ToUtf8(name) + ":" + std::string(object.TypeName()));
    }
    void OnObjectEnd(automation::Object&) override { lines.emplace_back("end"); }
    void OnMembersBegin(automation::Object&, size_t count) override {
      lines.push_back(std::to_string(count) + "[");
    }
    void OnMembersEnd(automation::Object&) override { lines.emplace_back("]"); }
  } recorder;
  const auto tasks = Make<vnTasks>();
  const auto task = Make<vnTask>();
  task->Load(u"", u"k");
  tasks->Add(task.get());
  Walk(*tasks, recorder);
  EXPECT_EQ(recorder.lines,
            (Lines{":vnTasks", "1[", "k:vnTask", "Key", "Name", "end", "]", "end"}));
}

// Of a step and a link that nobody has read.
class PassingReadTest : public ::testing::Test {
 protected:
  PassingReadTest() {
    Make<vnStep>()->Save();  // what is made once and stays
    const auto made = Make<vnStep>();
    made->NewTask()->SetName(u"task");
    made->NewCondition(u"condition", u"test");
    step_->Load(made->Save(), u"s");
    document_->Steps()->Add(step_.get());
    link_->Load(Make<vnLink>()->Save(), u"l");
    document_->Links()->Add(link_.get());
  }
  void ReadAll() {
    step_->Label();
    step_->Figure()->Font();
    step_->Tasks()->Item(Variant(1))->Name();
    step_->Conditions();
    link_->Line()->Font();
    link_->Conditions();
  }

  Ref<vnDocument> document_ = Make<vnDocument>();
  Ref<vnStep> step_ = Make<vnStep>();
  Ref<vnLink> link_ = Make<vnLink>();
};

TEST_F(PassingReadTest, LeavesNothingBuiltAndReportsNothing) {
  testing::RecordingListener listener(*document_);
  for (const bool is_read : {false, true}) {
    // Of what was read in part, the rest is unread again.
    if (is_read) link_->SetText(step_->Label());
    const size_t before = Object::LiveCount();
    const Text saved = step_->Save() + link_->Save();
    {
      const PassingRead reading_step(*step_);
      const PassingRead reading_link(*link_);
      ReadAll();
      EXPECT_GT(Object::LiveCount(), before + 4);
      const PassingRead again(*step_);
      ReadAll();
    }
    EXPECT_EQ(Object::LiveCount(), before) << is_read;
    EXPECT_EQ(listener.Take(), Lines{});
    EXPECT_TRUE(document_->ChangeEvents());
    EXPECT_EQ(step_->Save() + link_->Save(), saved);
  }
}

TEST_F(PassingReadTest, WhatIsHeldStays) {
  Ref<vnFigure> figure;
  {
    const PassingRead reading(*step_);
    figure = step_->Figure();
  }
  figure->SetLeft(99);
  EXPECT_EQ(step_->Figure(), figure);
  Ref<vnTasks> tasks;
  {
    const PassingRead reading(*step_);
    tasks = step_->Tasks();
  }
  EXPECT_EQ(step_->Tasks(), tasks);
}

TEST_F(PassingReadTest, IsHowAWalkReads) {
  document_->Links();
  struct Nothing : ContentVisitor {
  } visitor;
  Walk(*document_, visitor);
  const size_t before = Object::LiveCount();
  Walk(*document_, visitor);
  EXPECT_EQ(Object::LiveCount(), before);
  ReadAll();
  EXPECT_GT(Object::LiveCount(), before + 4);
}

}  // namespace
}  // namespace vndoc6
