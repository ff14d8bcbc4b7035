// Long random sequences of what hosts do with whole documents, from inside event handlers too, held
// against the plain rules.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "automation/inside.h"
#include "automation/scoped_value.h"
#include "platform/keys.h"
#include "tests/endurance/soak.h"
#include "tests/hostile_text.h"
#include "tests/support/plain_document.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;
using testing::PlainContainer;
using testing::PlainDocument;
using testing::PlainLink;
using testing::PlainStep;

// What a handler may do to a document while an operation on it runs.
enum class Busy {
  kFree,     // anything
  kNeutral,  // what changes neither steps nor what the operation works on
  kClosed,   // nothing
};

class Sequence {
 public:
  Sequence(uint32_t seed, const testing::TemporaryFolder& folder)
      : random_(seed), folder_(folder) {}

  // Gives the first difference, in words; empty for none.
  std::string Run(int32_t operations);
  // Lets go of everything, in random order.
  void ReleaseAll();

 private:
  static constexpr size_t kMostDocuments = 4;
  static constexpr size_t kMostSteps = 20;
  static constexpr size_t kMostHeld = 40;
  static constexpr int kDeepest = 2;

  struct Subject : automation::EventSink {
    explicit Subject(Sequence& sequence) : sequence_(sequence) { document->Connect(this); }
    ~Subject() override { document->Disconnect(this); }
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;
    void OnEvent(const automation::EventInfo&, std::span<const Variant>) override {
      sequence_.Interfere();
    }

    Ref<vnDocument> document = Make<vnDocument>();
    PlainDocument plain;
    Busy busy = Busy::kFree;

   private:
    Sequence& sequence_;
  };
  using SubjectPtr = std::shared_ptr<Subject>;
  using Operation = void (Sequence::*)(Subject&);

  // What a host holds on to, and the document that it found there.
  struct Held {
    Ref<Object> object;
    vnDocument* document;
  };

  class Occupied {
   public:
    Occupied(Subject& subject, Busy busy) : occupied_(subject.busy, busy, Busy(subject.busy)) {}

   private:
    automation::ScopedValue<Busy> occupied_;
  };

  size_t Pick(size_t end) { return testing::Below(random_, end); }
  bool OneIn(size_t count) { return Pick(count) == 0; }
  Text AnyText() { return testing::HostileText(random_, 3); }
  template <class T>
  T* Any(std::vector<T>& list) {
    return list.empty() ? nullptr : &list[Pick(list.size())];
  }
  // Null when the other document is not free, or there is none.
  SubjectPtr OtherFree(const Subject& subject);
  static Ref<vnStep> Real(const Subject& subject, const PlainStep& step) {
    return subject.document->Steps()->ItemByStepKey(step.key);
  }

  void Fail(const std::string& what) {
    if (failure_.empty()) failure_ = what;
  }
  void Verify(Subject& subject);
  void Interfere();
  void OperateOnce();
  void OperateOnDocuments();

  void OpenDocument();
  void DropDocument();
  void SaveDocument(Subject& subject);
  void LoadDocument();

  // On documents that are free.
  void NewStep(Subject& subject);
  void RemoveStep(Subject& subject);
  void RemoveAllSteps(Subject& subject);
  void Renumber(Subject& subject);
  void CopyStep(Subject& subject);
  void DuplicateStep(Subject& subject);
  void MoveStep(Subject& subject);
  void NewTask(Subject& subject);
  void RemoveTask(Subject& subject);
  void NewCondition(Subject& subject);
  void AddDependancy(Subject& subject);
  void MoveLink(Subject& subject);
  void AddContainer(Subject& subject);
  void CopyContainer(Subject& subject);
  void RemoveContainer(Subject& subject);
  // On those that handlers may change, too.
  void PutLabel(Subject& subject);
  void PutDescription(Subject& subject);
  void MoveFigure(Subject& subject);
  void AddLink(Subject& subject);
  void RemoveLink(Subject& subject);
  void PutLinkEnds(Subject& subject);
  void PutEntry(Subject& subject);
  void RemoveEntry(Subject& subject);
  void Hold(Subject& subject);
  void LetGo(Subject& subject);

  static constexpr std::array kNeutral = {
      &Sequence::PutLabel, &Sequence::PutDescription, &Sequence::MoveFigure,
      &Sequence::AddLink,  &Sequence::RemoveLink,     &Sequence::PutLinkEnds,
      &Sequence::PutEntry, &Sequence::RemoveEntry,    &Sequence::Hold,
      &Sequence::LetGo,
  };
  static constexpr std::array kAny = {
      &Sequence::NewStep,       &Sequence::NewStep,         &Sequence::RemoveStep,
      &Sequence::Renumber,      &Sequence::Renumber,        &Sequence::CopyStep,
      &Sequence::DuplicateStep, &Sequence::MoveStep,        &Sequence::NewTask,
      &Sequence::NewTask,       &Sequence::RemoveTask,      &Sequence::NewCondition,
      &Sequence::AddDependancy, &Sequence::MoveLink,        &Sequence::AddContainer,
      &Sequence::CopyContainer, &Sequence::RemoveContainer,
  };

  testing::Random random_;
  const testing::TemporaryFolder& folder_;
  std::vector<SubjectPtr> subjects_;
  std::vector<Held> held_;
  std::array<std::optional<PlainDocument>, 3> saved_;
  int depth_ = 0;
  std::string failure_;
};

std::string Sequence::Run(int32_t operations) {
  for (int32_t i = 0; i < operations && failure_.empty(); ++i) {
    OperateOnce();
    if (!OneIn(8) || subjects_.empty()) continue;
    Verify(*SubjectPtr(subjects_[Pick(subjects_.size())]));
    if (!failure_.empty()) failure_ += " after operation " + std::to_string(i);
  }
  for (const SubjectPtr& subject : subjects_) Verify(*subject);
  return failure_;
}

void Sequence::ReleaseAll() {
  while (!subjects_.empty() || !held_.empty()) {
    if (OneIn(2) && !subjects_.empty()) {
      DropDocument();
    } else if (!held_.empty()) {
      held_.erase(held_.begin() + static_cast<std::ptrdiff_t>(Pick(held_.size())));
    }
  }
}

void Sequence::Verify(Subject& subject) {
  const Occupied closed(subject, Busy::kClosed);
  if (const std::string difference = subject.plain.DifferenceFrom(*subject.document);
      !difference.empty()) {
    Fail(difference);
  }
}

// Any event may find a host that does something of its own.
void Sequence::Interfere() {
  if (depth_ >= kDeepest || !OneIn(6)) return;
  OperateOnce();
}

void Sequence::OperateOnce() {
  const automation::ScopedValue<int> deeper(depth_, depth_ + 1, int(depth_));
  if (subjects_.empty() || OneIn(60)) return OperateOnDocuments();
  const SubjectPtr subject = subjects_[Pick(subjects_.size())];
  if (subject->busy == Busy::kClosed) return;
  const bool free = subject->busy == Busy::kFree;
  const Occupied neutral(*subject, Busy::kNeutral);
  if (!free || OneIn(3)) {
    (this->*kNeutral[Pick(kNeutral.size())])(*subject);
    return;
  }
  if (subject->plain.steps.size() >= kMostSteps) {
    OneIn(10) ? RemoveAllSteps(*subject) : RemoveStep(*subject);
  } else {
    (this->*kAny[Pick(kAny.size())])(*subject);
  }
}

Sequence::SubjectPtr Sequence::OtherFree(const Subject& subject) {
  if (subjects_.empty()) return nullptr;
  const SubjectPtr other = subjects_[Pick(subjects_.size())];
  return other.get() != &subject && other->busy == Busy::kFree ? other : nullptr;
}

// --- Documents ---

void Sequence::OperateOnDocuments() {
  const size_t choice = Pick(16);
  if (subjects_.empty() || choice < 3) {
    OpenDocument();
  } else if (choice < 7) {
    DropDocument();
  } else if (choice < 15) {
    LoadDocument();
  } else if (const SubjectPtr subject = subjects_[Pick(subjects_.size())];
             subject->busy == Busy::kFree && depth_ == 1) {
    SaveDocument(*subject);
  }
}

void Sequence::OpenDocument() {
  if (subjects_.size() < kMostDocuments) subjects_.push_back(std::make_shared<Subject>(*this));
}

void Sequence::DropDocument() {
  const auto dropped = subjects_.begin() + static_cast<std::ptrdiff_t>(Pick(subjects_.size()));
  // Lives on while it is being used further up.
  const SubjectPtr subject = *dropped;
  if (subject->busy == Busy::kFree) subjects_.erase(dropped);
}

void Sequence::SaveDocument(Subject& subject) {
  const Occupied closed(subject, Busy::kClosed);
  const size_t slot = Pick(saved_.size());
  // Who loads the file while it is being saved, from a handler, may find the one or the other.
  saved_[slot].reset();
  if (!subject.document->SaveAs(folder_.Name(std::to_string(slot)))) Fail("save");
  subject.plain.Prune();
  saved_[slot] = subject.plain.Loaded();
}

void Sequence::LoadDocument() {
  const size_t slot = Pick(saved_.size());
  if (!saved_[slot] || subjects_.size() >= kMostDocuments) return;
  const auto subject = std::make_shared<Subject>(*this);
  const Occupied closed(*subject, Busy::kClosed);
  subject->plain = *saved_[slot];
  subject->document->SetChangeEventsLoading(OneIn(2));
  if (!subject->document->Load(folder_.Name(std::to_string(slot)), u"")) Fail("load");
  // Handlers may have opened others meanwhile; one more does no harm.
  subjects_.push_back(subject);
}

// --- Steps ---

void Sequence::NewStep(Subject& subject) {
  const Ref<vnStep> step = subject.document->NewStep();
  PlainStep plain;
  plain.key = step->Key();
  subject.plain.AddStep(plain, 0);
}

void Sequence::RemoveStep(Subject& subject) {
  if (subject.plain.steps.empty()) return;
  const size_t at = Pick(subject.plain.steps.size());
  subject.document->Steps()->Remove(Variant(static_cast<int32_t>(at + 1)));
  subject.plain.RemoveStep(at);
}

void Sequence::RemoveAllSteps(Subject& subject) {
  subject.document->Steps()->RemoveAll();
  subject.plain.steps.clear();
  subject.plain.numbering.numbers.clear();
}

void Sequence::Renumber(Subject& subject) {
  if (subject.plain.steps.empty()) return;
  const size_t at = Pick(subject.plain.steps.size());
  if (subject.plain.steps[at].foreign) return;
  const auto number = static_cast<int32_t>(Pick(subject.plain.steps.size() + 5)) - 2;
  Real(subject, subject.plain.steps[at])->SetStepIndex(number);
  subject.plain.numbering.Put(at, number);
}

// From another document, or within one.
void Sequence::CopyStep(Subject& subject) {
  const SubjectPtr other = OtherFree(subject);
  Subject& from = other ? *other : subject;
  if (from.plain.steps.empty()) return;
  const size_t at = Pick(from.plain.steps.size());
  const Occupied closed(from, other ? Busy::kClosed : Busy::kNeutral);
  const Occupied target_closed(subject, Busy::kClosed);
  const Ref<vnStep> copy = subject.document->CopyStep(Real(from, from.plain.steps[at]).get());
  PlainStep plain = from.plain.steps[at];
  plain.key = copy->Key();
  plain.foreign = false;
  for (size_t i = 0; i < plain.order.tasks.size(); ++i) {
    plain.order.tasks[i].key = Inside::store(*copy->Tasks())[i].Key();
  }
  plain.order.CountAll();
  subject.plain.AddStep(plain, from.plain.numbering.numbers[at]);
}

// NewStep with the key of another step.
void Sequence::DuplicateStep(Subject& subject) {
  if (subject.plain.steps.empty()) return;
  const size_t at = Pick(subject.plain.steps.size());
  const Occupied closed(subject, Busy::kClosed);
  PlainStep& source = subject.plain.steps[at];
  const Ref<vnStep> duplicate = subject.document->NewStep(source.key);
  subject.plain.Prune(source);
  PlainStep plain = source;
  plain.key = duplicate->Key();
  plain.foreign = false;
  plain.order.CountNone();
  subject.plain.AddStep(plain, subject.plain.numbering.numbers[at]);
}

// Out of one document and into another, which it joins as the step of the first that it is, out of
// the numbering.
void Sequence::MoveStep(Subject& subject) {
  const SubjectPtr from = OtherFree(subject);
  if (!from || from->plain.steps.empty()) return;
  const size_t at = Pick(from->plain.steps.size());
  const PlainStep& chosen = from->plain.steps[at];
  const Ref<vnStep> step = Real(*from, chosen);
  if (!chosen.dependancies.empty() || subject.document->Steps()->ItemByStepKey(chosen.key)) return;
  const Occupied neutral(*from, Busy::kNeutral);
  from->document->Steps()->Remove(Variant(chosen.key));
  PlainStep moved = from->plain.steps[at];
  from->plain.RemoveStep(at);
  subject.document->Steps()->Add(step.get());
  moved.foreign = step->Document() != subject.document;
  subject.plain.AddStep(moved, -1);
}

void Sequence::PutLabel(Subject& subject) {
  PlainStep* const plain = Any(subject.plain.steps);
  const Ref<vnStep> step = plain != nullptr ? Real(subject, *plain) : nullptr;
  if (!step) return;
  plain->label = AnyText();
  step->SetLabel(Text(plain->label));
}

void Sequence::PutDescription(Subject& subject) {
  PlainStep* const plain = Any(subject.plain.steps);
  const Ref<vnStep> step = plain != nullptr ? Real(subject, *plain) : nullptr;
  if (!step) return;
  plain->description = AnyText();
  step->SetDescription(Text(plain->description));
}

void Sequence::MoveFigure(Subject& subject) {
  PlainStep* const plain = Any(subject.plain.steps);
  const Ref<vnStep> step = plain != nullptr ? Real(subject, *plain) : nullptr;
  if (!step) return;
  Ref<vnFigure> figure;
  {
    // A figure reports its font while it is read: what a handler put now would be read over.
    const Occupied closed(subject, Busy::kClosed);
    figure = step->Figure();
  }
  plain->left = static_cast<float>(Pick(1000));
  figure->SetLeft(plain->left);
}

// --- What steps hold ---

void Sequence::NewTask(Subject& subject) {
  PlainStep* const plain = Any(subject.plain.steps);
  if (plain == nullptr || plain->order.tasks.size() > 5) return;
  plain->order.New(Real(subject, *plain)->NewTask()->Key());
}

void Sequence::RemoveTask(Subject& subject) {
  PlainStep* const plain = Any(subject.plain.steps);
  if (plain == nullptr || plain->order.tasks.empty()) return;
  const Text key = Any(plain->order.tasks)->key;
  Real(subject, *plain)->RemoveTask(key);
  plain->order.Remove(key);
}

void Sequence::NewCondition(Subject& subject) {
  PlainStep* const plain = Any(subject.plain.steps);
  if (plain == nullptr) return;
  const Ref<vnStep> step = Real(subject, *plain);
  if (plain->conditions.size() > 3) {
    step->RemoveCondition(step->Conditions()->Item(Variant(1))->Key());
    plain->conditions.erase(plain->conditions.begin());
    return;
  }
  const Text name = AnyText();
  step->NewCondition(name, AnyText());
  plain->conditions.push_back(name);
}

void Sequence::AddDependancy(Subject& subject) {
  PlainStep* const plain = Any(subject.plain.steps);
  if (plain == nullptr || plain->foreign) return;
  const Text key = OneIn(4) ? u"gone" + AnyText() : Any(subject.plain.steps)->key;
  Real(subject, *plain)->Dependancies()->Add(key, Variant(u""));
  auto& keys = plain->dependancies;
  if (std::find(keys.begin(), keys.end(), key) == keys.end()) keys.push_back(key);
}

// --- Links, containers, the bag ---

void Sequence::AddLink(Subject& subject) {
  if (subject.plain.links.size() >= kMostSteps) return RemoveLink(subject);
  const PlainLink plain{platform::NewKey(), AnyText(), AnyText()};
  const auto link = Make<vnLink>();
  link->Load(u"", plain.key);
  link->SetOriginStepKey(plain.origin);
  link->SetDestinationStepKey(plain.destination);
  subject.plain.links.push_back(plain);
  subject.document->Links()->Add(link.get());
}

void Sequence::RemoveLink(Subject& subject) {
  auto& links = subject.plain.links;
  if (links.empty()) return;
  const size_t at = Pick(links.size());
  subject.document->Links()->Remove(Variant(links[at].key));
  links.erase(links.begin() + static_cast<std::ptrdiff_t>(at));
}

void Sequence::PutLinkEnds(Subject& subject) {
  PlainLink* const plain = Any(subject.plain.links);
  PlainStep* const step = Any(subject.plain.steps);
  if (plain == nullptr || step == nullptr) return;
  plain->destination = step->key;
  const Ref<vnLink> link = subject.document->Links()->Item(Variant(plain->key));
  link->SetDestinationStepKey(plain->destination);
  // The link's line reports.
  link->Line()->SetArrowDest(static_cast<int32_t>(Pick(9)));
}

void Sequence::MoveLink(Subject& subject) {
  const SubjectPtr from = OtherFree(subject);
  if (!from || from->plain.links.empty()) return;
  const size_t at = Pick(from->plain.links.size());
  const PlainLink plain = from->plain.links[at];
  const Ref<vnLink> link = from->document->Links()->Item(Variant(plain.key));
  if (subject.document->Links()->Item(Variant(plain.key))) return;
  from->document->Links()->Remove(Variant(plain.key));
  from->plain.links.erase(from->plain.links.begin() + static_cast<std::ptrdiff_t>(at));
  subject.plain.links.push_back(plain);
  subject.document->Links()->Add(link.get());
}

void Sequence::AddContainer(Subject& subject) {
  if (subject.plain.containers.size() > 5) return RemoveContainer(subject);
  const PlainContainer plain{AnyText() + platform::NewKey(), AnyText()};
  const auto container = Make<vnContainer>();
  container->SetKey(plain.key);
  container->SetLabel(plain.label);
  subject.plain.containers.push_back(plain);
  subject.document->ContainerCollection()->Add(container.get());
}

void Sequence::CopyContainer(Subject& subject) {
  PlainContainer* const plain = Any(subject.plain.containers);
  if (plain == nullptr || subject.plain.containers.size() > 5) return;
  const Ref<vnContainers> containers(subject.document->ContainerCollection());
  const Ref<vnContainer> copy =
      subject.document->CopyContainer(containers->Item(Variant(plain->key)).get());
  const Text label = plain->label;
  subject.plain.containers.push_back({copy->Key(), label});
}

void Sequence::RemoveContainer(Subject& subject) {
  auto& containers = subject.plain.containers;
  if (containers.empty()) return;
  const size_t at = Pick(containers.size());
  subject.document->ContainerCollection()->Remove(Variant(containers[at].key));
  containers.erase(containers.begin() + static_cast<std::ptrdiff_t>(at));
}

void Sequence::PutEntry(Subject& subject) {
  auto& bag = subject.plain.bag;
  const Text key = u"k" + automation::NumberText(static_cast<int32_t>(Pick(6)));
  const Text value = AnyText();
  subject.document->GetProperties()->Add(key, Variant(value));
  const auto found =
      std::find_if(bag.begin(), bag.end(), [&](const auto& entry) { return entry.first == key; });
  if (found != bag.end()) {
    found->second = value;
  } else {
    bag.emplace_back(key, value);
  }
}

void Sequence::RemoveEntry(Subject& subject) {
  auto& bag = subject.plain.bag;
  if (bag.empty()) return;
  const size_t at = Pick(bag.size());
  subject.document->GetProperties()->Remove(bag[at].first);
  bag.erase(bag.begin() + static_cast<std::ptrdiff_t>(at));
}

// --- References ---

void Sequence::Hold(Subject& subject) {
  if (held_.size() >= kMostHeld) return LetGo(subject);
  const Occupied closed(subject, Busy::kClosed);  // as in MoveFigure
  const Ref<vnDocument>& document = subject.document;
  Ref<Object> object = document;
  switch (Pick(6)) {
    case 0:
      object = document->Steps();
      break;
    case 1:
      if (PlainStep* plain = Any(subject.plain.steps)) object = Real(subject, *plain);
      break;
    case 2:
      if (PlainStep* plain = Any(subject.plain.steps)) {
        if (const Ref<vnStep> step = Real(subject, *plain)) object = step->Figure();
      }
      break;
    case 3:
      if (PlainStep* plain = Any(subject.plain.steps)) {
        if (const Ref<vnStep> step = Real(subject, *plain))
          object = step->Tasks()->Item(Variant(1));
      }
      break;
    case 4:
      object = document->GetProperties();
      break;
    default:
      object = document->Links();
  }
  if (!object) return;
  vnDocument* found = nullptr;
  if (object->FindMember(u"Document") != automation::kNoMember) {
    found = static_cast<vnDocument*>(automation::Get(*object, u"Document").ToObject().get());
  }
  held_.push_back({std::move(object), found});
}

// Whoever holds an object of a document holds the document.
void Sequence::LetGo(Subject& /*subject*/) {
  if (held_.empty()) return;
  const size_t at = Pick(held_.size());
  const Held held = held_[at];
  held_.erase(held_.begin() + static_cast<std::ptrdiff_t>(at));
  if (held.document == nullptr) return;
  if (automation::Get(*held.object, u"Document").ToObject().get() != held.document) {
    Fail("the document of " + std::string(held.object->TypeName()) + " is gone");
  }
}

TEST(Sequences, OfOperationsFollowThePlainRules) {
  const testing::TemporaryFolder folder;
  Sequence sequence(testing::Seed(), folder);
  EXPECT_EQ(sequence.Run(testing::Times(100000)), "");
  sequence.ReleaseAll();
}

}  // namespace
}  // namespace vndoc6
