#include "vndoc6/document/document.h"

#include <gtest/gtest.h>

#include <optional>

#include "tests/support/acts_once.h"
#include "tests/support/recording_listener.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/details/details.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc6 {
namespace {

using automation::Error;
using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;
using Lines = std::vector<std::string>;

template <class Call>
std::string ErrorOf(Call&& call) {
  try {
    call();
  } catch (const Error& error) {
    return std::to_string(error.number()) + " " + automation::ToUtf8(error.description()) + " " +
           automation::ToUtf8(error.source());
  }
  return "none";
}

TEST(Document, StartsAsHostsExpect) {
  const auto document = Make<vnDocument>();
  EXPECT_TRUE(document->ChangeEvents());
  EXPECT_FALSE(document->ChangeEventsLoading());
  EXPECT_TRUE(document->AllowWrite());
  EXPECT_EQ(document->DocumentVersion(), 1.2f);
  EXPECT_EQ(document->FileVersion(), Variant(0));
  EXPECT_EQ(document->IR(), 1);
  EXPECT_EQ(document->IR(), 1);
  EXPECT_EQ(document->GUID(), u"");
  EXPECT_EQ(document->ExtensionCount(), 0);
  EXPECT_EQ(document->Attachments(), document->Attachments());
  EXPECT_TRUE(document->Attachments()->IsEmpty());
  EXPECT_EQ(document->Chart(), document->Chart());
  EXPECT_EQ(automation::Get(*document, u"Containers").TypeName(), "vnContainers");
}

TEST(Document, OneFieldUnderTwoNamesSaysWhatItIs) {
  const auto document = Make<vnDocument>();
  const std::pair<int32_t, bool> cases[] = {{0, false}, {1, false}, {2, true}, {3, true}};
  for (const auto& [type, workflow] : cases) {
    automation::Put(*document, u"DocType", {Variant(type)});
    EXPECT_EQ(automation::Get(*document, u"DocumentType"), Variant(type));
    EXPECT_EQ(document->IsWFProcess(), workflow);
  }
}

TEST(Document, IdentityIsReadOnlyUntilItIsUnlocked) {
  const auto document = Make<vnDocument>();
  EXPECT_EQ(ErrorOf([&] { document->SetIR(7); }),
            "2199 Can't assign to read-only property. vnDocument.IR");
  EXPECT_EQ(ErrorOf([&] { document->SetGUID(u"x"); }),
            "2199 Can't assign to read-only property. vnDocument.GUID");
  EXPECT_EQ(ErrorOf([&] { document->SetFieldDefsSteps(u"", u""); }),
            "2198 Can't use method in current state. vnDocument.FieldDefsSteps");
  document->GetProperties()->Add(u"AllowGUIDAssign", Variant(1));
  EXPECT_NE(ErrorOf([&] { document->SetGUID(u"x"); }), "none");
  document->GetProperties()->Add(u"AllowGUIDAssign", Variant(true));
  document->SetGUID(u"x");
  EXPECT_EQ(document->GUID(), u"x");
  document->SetProperties(nullptr);
  EXPECT_NE(ErrorOf([&] { document->SetGUID(u"y"); }), "none");
}

TEST(Document, NewStepCopiesAStepOrAText) {
  const auto document = Make<vnDocument>();
  const Ref<vnStep> source = document->NewStep();
  source->SetLabel(u"source");
  source->Figure()->SetTop(77);
  const Ref<vnStep> copy = document->NewStep(source->Key(), u"L=~64\"ignored\":");
  EXPECT_EQ(copy->Label(), u"source");
  EXPECT_EQ(copy->Figure()->Top(), 77);
  EXPECT_NE(copy->Key(), source->Key());
  EXPECT_EQ(copy->StepIndex(), 1);
  const Ref<vnStep> loaded = document->NewStep(u"unknown", u"L=~64\"text\":K=~64\"own\":");
  EXPECT_EQ(loaded->Label(), u"text");
  EXPECT_EQ(loaded->Key(), u"own");
  EXPECT_EQ(document->Steps()->Count(), 3);
}

TEST(Document, CopiesOfStepsAndContainersAreTheirOwn) {
  const auto other = Make<vnDocument>();
  const Ref<vnStep> source = other->NewStep();
  source->SetLabel(u"source");
  source->SetStepIndex(1);
  source->Figure()->Font()->SetBold(true);
  source->NewTask()->SetName(u"task");
  const auto file = Make<vnFile>();
  file->SetFileName(u"f");
  source->Files()->Add(file.get());

  source->Jumps()->Add(Make<vnJump>().get());
  source->NewCondition(u"name", u"test");

  const auto document = Make<vnDocument>();
  testing::RecordingListener events(*document);
  bool whole = false;
  const testing::ActsOnce handler(*document, "StepAdded", [&] {
    const Ref<vnStep> copy = document->Steps()->Item(Variant(1));
    const auto is_in = [&](const auto& member) { return member->Document() == document; };
    whole = is_in(copy->Figure()) && is_in(copy->Tasks()->Item(Variant(1))) &&
            is_in(copy->Conditions()->Item(Variant(1))) && is_in(copy->PerformedBy()) &&
            is_in(copy->Jumps()) && document->Files()->Item(Variant(1))->Step() == copy &&
            document->Jumps()->Item(Variant(1)) == copy->Jumps()->Item(Variant(1));
  });
  const Ref<vnStep> copy = document->CopyStep(source.get());
  EXPECT_TRUE(whole);
  EXPECT_EQ(events.Take(), (Lines{"StepAdded " + automation::ToUtf8(copy->Key())}));
  copy->Jumps()->Item(Variant(1))->SetFileName(u"heard of");
  EXPECT_EQ(events.Take().size(), 1U);
  EXPECT_EQ(copy->Document(), document);
  EXPECT_EQ(copy->Label(), u"source");
  EXPECT_NE(copy->Figure()->Font(), source->Figure()->Font());
  EXPECT_TRUE(copy->Figure()->Font()->Bold());
  EXPECT_EQ(copy->Tasks()->Item(Variant(1))->Name(), u"task");
  EXPECT_NE(copy->Tasks()->Item(Variant(1))->Key(), source->Tasks()->Item(Variant(1))->Key());
  EXPECT_EQ(copy->Files()->Item(Variant(1))->FileName(), u"f");
  EXPECT_EQ(document->Files()->Count(), 1);
  EXPECT_EQ(copy->NewTask()->TaskOrder(), 2);
  EXPECT_EQ(ErrorOf([&] { document->CopyStep(nullptr); }).substr(0, 3), "91 ");

  const auto container = Make<vnContainer>();
  container->SetLabel(u"group");
  container->Figure()->SetWidth(5);
  events.Take();
  const Ref<vnContainer> copied = document->CopyContainer(container.get());
  EXPECT_EQ(events.Take(), (Lines{"ContainerAdded " + automation::ToUtf8(copied->Key())}));
  EXPECT_EQ(copied->Figure()->Document(), document);
  EXPECT_EQ(copied->Label(), u"group");
  EXPECT_EQ(copied->Figure()->Width(), 5);
  EXPECT_EQ(document->ContainerCollection()->Count(), 1);
}

TEST(Document, AnAbsentObjectThatIsUsedGivesError91) {
  const auto document = Make<vnDocument>();
  const std::string error = "91 Object variable not set. ";
  EXPECT_EQ(ErrorOf([&] { document->Steps()->Item(Variant(99))->Label(); }), error);
  EXPECT_EQ(ErrorOf([&] { automation::Get(*document->Chart()->Picture(), u"Width"); }), error);
  EXPECT_EQ(ErrorOf([] { automation::Weak<vnStep>()->Key(); }), error);
}

TEST(Document, AnyReferenceKeepsItAliveAndTheLastOneTakesAllWithIt) {
  Ref<automation::Font> font;
  Ref<vnFigure> figure;
  Ref<vnTask> task;
  {
    const auto document = Make<vnDocument>();
    const Ref<vnStep> step = document->NewStep();
    task = step->NewTask();
    figure = step->Figure();
    document->Steps()->Remove(Variant(1));
  }
  // The step is in no collection any more; its parts keep it, and it its document.
  EXPECT_EQ(task->Document()->Steps()->Count(), 0);
  EXPECT_EQ(figure->Step()->Key(), task->Step()->Key());
  font = figure->Font();
  figure = nullptr;
  task = nullptr;
  font->SetBold(true);
}

// What an object lets go of may take a reference to it on the way.
class HeldWhileItGoes : public Object {
 public:
  explicit HeldWhileItGoes(int& gone) : gone_(gone) {}
  ~HeldWhileItGoes() override {
    if (++gone_ > 1) return;
    const Ref<Object> taken(this);
  }

 private:
  int& gone_;
};

TEST(Document, AnObjectGoesOnce) {
  int gone = 0;
  Make<HeldWhileItGoes>(gone);
  EXPECT_EQ(gone, 1);
}

TEST(Document, HandlersMayDoAnything) {
  struct Dropper : DocumentListener {
    void StepAdded(vnStep&) override {
      document->RemoveListener(this);
      document = nullptr;
    }
    Ref<vnDocument> document;
  };
  Dropper dropper;
  dropper.document = Make<vnDocument>();
  dropper.document->AddListener(&dropper);
  {
    // The only other reference goes while the event runs.
    const Ref<vnStep> step = dropper.document->NewStep();
    EXPECT_EQ(step->StepIndex(), 1);
    EXPECT_TRUE(step->Document());
  }
}

TEST(Document, ListenersThatLeaveOrJoinDuringAnEventDisturbNobody) {
  struct Listener : DocumentListener {
    void StepAdded(vnStep& step) override {
      ++calls;
      if (leaves != nullptr) step.Document()->RemoveListener(leaves);
      if (joins != nullptr) step.Document()->AddListener(joins);
    }
    DocumentListener* leaves = nullptr;
    DocumentListener* joins = nullptr;
    int calls = 0;
  } first, second, third;
  const auto document = Make<vnDocument>();
  document->AddListener(&first);
  document->AddListener(&second);
  first.leaves = &second;
  first.joins = &third;
  document->NewStep();
  EXPECT_EQ(first.calls, 1);
  EXPECT_EQ(second.calls, 0);
  EXPECT_EQ(third.calls, 0);
  first.joins = nullptr;
  document->NewStep();
  EXPECT_EQ(third.calls, 1);
}

TEST(Document, LateBoundCallsFollowTheRules) {
  const auto document = Make<vnDocument>();
  document->NewStep()->SetLabel(u"first");
  const auto steps = automation::Get(*document, u"STEPS", {Variant(1)});
  EXPECT_EQ(automation::Get(*steps.ToObject(), u"label"), Variant(u"first"));
  EXPECT_EQ(ErrorOf([&] { automation::Get(*document, u"Nonsense"); }).substr(0, 3), "438");
  EXPECT_EQ(ErrorOf([&] { automation::Call(*document, u"SaveAs"); }).substr(0, 3), "449");
  EXPECT_EQ(ErrorOf([&] { automation::Get(*document, u"IR", {Variant(1)}); }).substr(0, 3), "450");
  EXPECT_EQ(ErrorOf([&] { automation::Put(*document, u"FileName", {Variant(u"x")}); }).substr(0, 3),
            "438");
  EXPECT_EQ(
      ErrorOf([&] { automation::Put(*document, u"PagesCount", {Variant(u"x")}); }).substr(0, 3),
      "13 ");
  EXPECT_EQ(
      ErrorOf([&] { automation::Put(*document, u"PagesCount", {Variant(1e10)}); }).substr(0, 2),
      "6 ");
  automation::Put(*document, u"PagesCount", {Variant(u"12")});
  EXPECT_EQ(document->PagesCount(), 12);
  EXPECT_EQ(automation::Call(*document, u"NewStep", {Variant(automation::kMissing)}).TypeName(),
            "vnStep");
  // A put's new value is its last argument, also where another has a name.
  const auto line = Make<vnLine>();
  const Variant value(7);
  const auto put_named = [&](int32_t parameter) {
    const automation::NamedArgument index{parameter, Variant(2)};
    line->InvokeMember(line->FindMember(u"ExtraPointX"), automation::CallKind::kPut,
                       {{&value, 1}, {&index, 1}});
  };
  put_named(0);
  EXPECT_EQ(line->ExtraPointX(2), 7);
  EXPECT_EQ(ErrorOf([&] { put_named(1); }).substr(0, 3), "449");
  EXPECT_EQ(ErrorOf([&] { put_named(2); }).substr(0, 3), "448");
  int visited = 0;
  const auto enumerator = automation::Enumerate(*document->Steps());
  for (Ref<Object> member; enumerator->Next(member); ++visited) {
    // A snapshot: changes while it is walked don't reach it.
    document->Steps()->RemoveAll();
  }
  EXPECT_EQ(visited, 2);
}

}  // namespace
}  // namespace vndoc6
