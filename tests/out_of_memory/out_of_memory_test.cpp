// Lets each allocation in turn fail: what was asked for is then done wholly or not at all, the next
// attempt works, and nothing leaks.
#include <gtest/gtest.h>

#include <new>
#include <ostream>

#include "platform/file_calls.h"
#include "tests/endurance/numbered_document.h"
#include "tests/endurance/soak.h"
#include "tests/out_of_memory/shortage.h"
#include "tests/support/recording_listener.h"
#include "tests/support/saved_text.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/enumerator.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/content/compare.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/item.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/templates/template_library.h"
#include "vndoc6/titles/title_ref.h"
#include "vndoc6/titles/titles.h"

namespace vndoc6::testing {
namespace {

using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;

// Does `act(subject)` on a fresh `prepare()` for every allocation that it makes, once with that one
// failing and once with all from there on, and calls `check(subject, thrown)` after each. `stride`
// leaves allocations out where there are many.
template <class Prepare, class Act, class Check>
void FailEachAllocation(Prepare prepare, Act act, Check check, size_t stride = 1) {
  // What is built once for the whole program is built here.
  for (int i = 0; i < 2; ++i) {
    auto subject = prepare();
    act(*subject);
    check(*subject, false);
  }
  const size_t objects = Object::LiveCount();
  const size_t blocks = LiveBlocks();
  for (const bool lasting : {false, true}) {
    bool came = true;
    for (size_t first = 1; came; first += stride) {
      {
        auto subject = prepare();
        bool thrown = false;
        {
          const Shortage shortage(first, lasting);
          try {
            act(*subject);
          } catch (const std::bad_alloc&) {
            thrown = true;
          }
          came = shortage.came();
        }
        check(*subject, thrown);
      }
      ASSERT_EQ(Object::LiveCount(), objects) << "allocation " << first;
      ASSERT_EQ(LiveBlocks(), blocks) << "allocation " << first;
      ASSERT_FALSE(::testing::Test::HasFailure()) << "allocation " << first << " of " << lasting;
    }
  }
}

// An edit, as hosts make it.
struct Edit {
  const char* name;
  void (*make)(vnDocument& document);
};
std::ostream& operator<<(std::ostream& out, const Edit& edit) { return out << edit.name; }

Ref<vnStep> FirstStep(vnDocument& document) { return document.Steps()->Item(Variant(1)); }
const Text kLong(100, u'x');

const Edit kEdits[] = {
    {"SetLabel", [](vnDocument& d) { FirstStep(d)->SetLabel(kLong); }},
    {"SetTitle", [](vnDocument& d) { d.Details()->SetTitle(kLong); }},
    {"LateBoundPut",
     [](vnDocument& d) { automation::Put(*FirstStep(d), u"Description", {Variant(kLong)}); }},
    {"NewStep", [](vnDocument& d) { d.NewStep(); }},
    {"NewStepFromText", [](vnDocument& d) { d.NewStep({}, FirstStep(d)->Save()); }},
    {"CopyStep", [](vnDocument& d) { d.CopyStep(FirstStep(d).get()); }},
    {"RemoveFirstStep", [](vnDocument& d) { d.Steps()->Remove(Variant(1)); }},
    {"RemoveLastStep", [](vnDocument& d) { d.Steps()->Remove(Variant(d.Steps()->Count())); }},
    {"RemoveAllSteps", [](vnDocument& d) { d.Steps()->RemoveAll(); }},
    {"MoveStep", [](vnDocument& d) { FirstStep(d)->SetStepIndex(5); }},
    {"NewTask", [](vnDocument& d) { FirstStep(d)->NewTask(); }},
    {"RemoveTask",
     [](vnDocument& d) {
       const Ref<vnStep> step = FirstStep(d);
       step->RemoveTask(step->Tasks()->Item(Variant(1))->Key());
     }},
    {"NewCondition", [](vnDocument& d) { FirstStep(d)->NewCondition(u"name", kLong); }},
    {"AddLink", [](vnDocument& d) { d.Links()->Add(Make<vnLink>().get()); }},
    {"RemoveLink", [](vnDocument& d) { d.Links()->Remove(Variant(1)); }},
    {"AddProperty", [](vnDocument& d) { d.GetProperties()->Add(kLong, Variant(kLong)); }},
    {"ChangeProperty", [](vnDocument& d) { d.GetProperties()->Add(u"p3", Variant(kLong)); }},
    {"RemoveProperty", [](vnDocument& d) { d.GetProperties()->Remove(u"p3"); }},
    {"AddFile", [](vnDocument& d) { FirstStep(d)->Files()->Add(Make<vnFile>().get()); }},
    {"AddJump", [](vnDocument& d) { FirstStep(d)->Jumps()->Add(Make<vnJump>().get()); }},
    {"SetFigureText",
     [](vnDocument& d) { automation::Put(*FirstStep(d)->Figure(), u"Left", {Variant(7)}); }},
    {"AddContainer",
     [](vnDocument& d) {
       static_cast<vnContainers&>(*d.Containers().ToObject()).Add(Make<vnContainer>().get());
     }},
    {"AddAttachment", [](vnDocument& d) { d.Attachments()->Add(kLong, Variant(kLong)); }},
    {"AddRevision", [](vnDocument& d) { d.RevisionHistory()->Add(Make<vnRevision>().get()); }},
};

// The document's text without its keys: each save makes some of them anew.
std::string ContentOf(vnDocument& document) {
  std::string text = SavedText(document);
  for (size_t key = text.find('{'); key != text.npos; key = text.find('{', key + 1)) {
    text.erase(key + 1, text.find('}', key) - key);
  }
  return text;
}

// Enough members for every index to exist, and for that of the links to grow with the next one.
Ref<vnDocument> DocumentToEdit() {
  auto document = Make<vnDocument>();
  for (int i = 0; i < 12; ++i) {
    const Ref<vnStep> step = document->NewStep();
    step->SetLabel(u"step");
    step->Figure();
    for (int link = 0; link < 2; ++link) document->Links()->Add(Make<vnLink>().get());
    document->GetProperties()->Add(u"p" + automation::NumberText(i), Variant(i));
  }
  for (int i = 0; i < 20; ++i) {
    document->GetProperties()->Add(u"q" + automation::NumberText(i), Variant(i));
  }
  for (int i = 0; i < 3; ++i) FirstStep(*document)->NewTask();
  FirstStep(*document)->Files()->Add(Make<vnFile>().get());
  FirstStep(*document)->Jumps()->Add(Make<vnJump>().get());
  return document;
}

// Every look-up agrees with the order of the collection.
void ExpectConsistent(vnDocument& document) {
  vnSteps& steps = *document.Steps();
  for (int32_t i = 1; i <= steps.Count(); ++i) {
    const Ref<vnStep> step = steps.Item(Variant(i));
    EXPECT_EQ(steps.Item(Variant(step->Key())), step);
    EXPECT_EQ(steps.ItemByStepKey(step->Key()), step);
    // Copies bear the number of what they were copied from.
    const Ref<vnStep> bearer = steps.ItemByStepIndex(step->StepIndex());
    ASSERT_TRUE(bearer);
    EXPECT_EQ(bearer->StepIndex(), step->StepIndex());
  }
  if (const Ref<vnStep> step = FirstStep(document)) {
    const Ref<vnTasks> tasks = step->Tasks();
    for (int32_t i = 1; i <= tasks->Count(); ++i) {
      EXPECT_EQ(tasks->Item(Variant(i))->TaskOrder(), i);
    }
  }
  const Ref<vnLinks> links = document.Links();
  for (int32_t i = 1; i <= links->Count(); ++i) {
    const Ref<vnLink> link = links->Item(Variant(i));
    EXPECT_EQ(links->Item(Variant(link->Key())), link);
  }
  const Ref<Properties> bag = document.GetProperties();
  for (int32_t i = 1; i <= bag->Count(); ++i) {
    const Ref<Property> entry = bag->Item(Variant(i));
    EXPECT_EQ(bag->Item(Variant(entry->Key())), entry);
  }
}

class OutOfMemory : public ::testing::TestWithParam<Edit> {};

INSTANTIATE_TEST_SUITE_P(Edits, OutOfMemory, ::testing::ValuesIn(kEdits),
                         [](const auto& test) { return test.param.name; });

TEST_P(OutOfMemory, AnEditIsMadeOrNot) {
  struct Subject {
    Ref<vnDocument> document = DocumentToEdit();
    std::string before = ContentOf(*document);
  };
  FailEachAllocation([] { return std::make_unique<Subject>(); },
                     [](Subject& subject) { GetParam().make(*subject.document); },
                     [](Subject& subject, bool thrown) {
                       if (thrown) {
                         EXPECT_EQ(ContentOf(*subject.document), subject.before);
                         ExpectConsistent(*subject.document);
                         GetParam().make(*subject.document);
                       }
                       EXPECT_NE(ContentOf(*subject.document), subject.before);
                       ExpectConsistent(*subject.document);
                     });
}

// Listens like a script, and changes what it hears of.
TEST_P(OutOfMemory, WithListenersNothingIsTornAndTheNextAttemptWorks) {
  struct Changer : DocumentListener {
    void StepAdded(vnStep& step) override { step.SetLabel(kLong); }
    void StepChange(vnStep& step, int32_t) override { step.SetInstructions(kLong + kLong); }
  };
  struct Subject {
    Ref<vnDocument> document = DocumentToEdit();
    RecordingListener listener{*document};
    Changer changer;
    Subject() { document->AddListener(&changer); }
    ~Subject() { document->RemoveListener(&changer); }
  };
  FailEachAllocation([] { return std::make_unique<Subject>(); },
                     [](Subject& subject) { GetParam().make(*subject.document); },
                     [](Subject& subject, bool thrown) {
                       ExpectConsistent(*subject.document);
                       if (thrown) GetParam().make(*subject.document);
                       ExpectConsistent(*subject.document);
                       EXPECT_FALSE(SavedText(*subject.document).empty());
                     });
}

// A sink that was not connected is told nothing, and one that left is told nothing more.
TEST(OutOfMemorySinks, ASinkIsConnectedOrNot) {
  struct Counter : automation::EventSink {
    int heard = 0;
    void OnEvent(const automation::EventInfo&, std::span<const Variant>) override { ++heard; }
  };
  struct Subject {
    Ref<vnDocument> document = Make<vnDocument>();
    Counter sink;
  };
  const auto connect = [](Subject& subject) { subject.document->Connect(&subject.sink); };
  FailEachAllocation([] { return std::make_unique<Subject>(); }, connect,
                     [&](Subject& subject, bool thrown) {
                       Counter& sink = subject.sink;
                       subject.document->NewStep();
                       EXPECT_EQ(sink.heard > 0, !thrown);
                       if (thrown) connect(subject);
                       subject.document->NewStep();
                       EXPECT_GT(std::exchange(sink.heard, 0), 0);
                       subject.document->Disconnect(&sink);
                       subject.document->NewStep();
                       EXPECT_EQ(sink.heard, 0);
                     });
}

class OutOfMemoryFiles : public ::testing::Test {
 protected:
  // A flush costs milliseconds, and needs no memory.
  OutOfMemoryFiles() {
    platform::file_calls().fsync = [](int) { return 0; };
  }

  TemporaryFolder folder_;
  Text name_ = folder_.Name("process.vn6");
};

TEST_F(OutOfMemoryFiles, ALoadCanBeRepeated) {
  NumberedDocument(1)->SaveAs(name_);
  FailEachAllocation([] { return std::make_unique<Ref<vnDocument>>(Make<vnDocument>()); },
                     [this](Ref<vnDocument>& document) { document->Load(name_, u""); },
                     [this](Ref<vnDocument>& document, bool thrown) {
                       if (thrown) {
                         EXPECT_EQ(document->FileName(), u"");
                         EXPECT_EQ(document->Steps()->Count(), 0);
                         EXPECT_TRUE(document->Load(name_, u""));
                       }
                       EXPECT_EQ(NumberOf(*document), 1);
                       EXPECT_TRUE(document->ChangeEvents());
                     });
}

TEST_F(OutOfMemoryFiles, ASaveCanBeRepeatedAndTheFileIsWhole) {
  FailEachAllocation(
      [this] {
        auto document = std::make_unique<Ref<vnDocument>>(NumberedDocument(1));
        (*document)->SaveAs(name_);
        SetNumber(**document, 2);
        return document;
      },
      [](Ref<vnDocument>& document) { document->Save(); },
      [this](Ref<vnDocument>& document, bool thrown) {
        EXPECT_EQ(NumberOf(*document), 2);
        if (thrown) {
          // Memory may have run out behind the last step, too.
          const std::optional<int32_t> number = NumberInFile(name_);
          EXPECT_TRUE(number == 1 || number == 2);
          EXPECT_TRUE(document->Save());
        }
        EXPECT_EQ(NumberInFile(name_), 2);
        EXPECT_EQ(document->TempSaveTest(name_), 0);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1);
      });
}

// A document with everything in it, as far as memory goes: what was not read yet comes later.
TEST_F(OutOfMemoryFiles, ReadingCanBeRepeated) {
  NumberedDocument(1)->SaveAs(name_);
  // As a load brings it.
  const auto load = [this] {
    auto document = std::make_unique<Ref<vnDocument>>(Make<vnDocument>());
    (*document)->Load(name_, u"");
    return document;
  };
  const Ref<vnDocument> expected = *load();
  FailEachAllocation(
      load, [&](Ref<vnDocument>& document) { Compare(*expected, *document); },
      [&](Ref<vnDocument>& document, bool) {
        EXPECT_TRUE(Compare(*expected, *document, {.ignore_identity = true}).empty());
      },
      Times(1) > 1 ? 1 : 61);
}

}  // namespace
}  // namespace vndoc6::testing
