#include "vndoc6/process/steps.h"

#include <limits>
#include <new>
#include <unordered_set>

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "collections/collection_text.h"
#include "core/scope.h"
#include "platform/keys.h"
#include "process/step_numbers.h"
#include "schema/rows.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;

namespace {

constexpr MemberEntries kStepEntries{"T"};

}  // namespace

vnSteps::vnSteps() = default;
vnSteps::~vnSteps() = default;

// The change itself needs no memory and must not fail half-way: without memory the numbers are
// gathered anew when somebody asks for them.
template <class Update>
void vnSteps::UpdateNumbers(Update update) {
  try {
    update();
  } catch (const std::bad_alloc&) {
    numbers_.reset();
  }
}

void vnSteps::Add(vnStep* poStep) {
  if (poStep == nullptr) return;
  // A host's handler may let go of the step, or of all of this, while it is told.
  const Ref<vnStep> step(poStep);
  const Ref<vnSteps> self(this);
  if (step->Key().empty()) Inside::StoreKey(*step, platform::NewKey());
  if (Inside::steps_owner(*step) == nullptr) Inside::StoreStepsOwner(*step, this);
  if (Inside::document(*step) == nullptr && document() != nullptr) {
    step->SetDocument(document());
  }
  if (store_.Find(TextView(step->Key())) != nullptr) return;
  if (step->StepIndex() == 0) {
    const int32_t last = LastIndex();
    // There is no number left: like every fault in here this ends quietly.
    if (last == std::numeric_limits<int32_t>::max()) return;
    step->SetStepIndex(last + 1);
  }
  if (!store_.Add(step->Key(), *step)) return;
  if (Inside::steps_owner(*step) != this) untracked_ = true;
  if (numbers_) UpdateNumbers([&] { numbers_->Add(step->StepIndex(), *step); });
  if (Scope* scope = document_scope()) scope->Report<&DocumentListener::StepAdded>(*step);
}

void vnSteps::Remove(const Variant& pvRef) {
  const Ref<vnStep> step(store_.Find(pvRef));
  if (!step) return;
  const Ref<vnSteps> self(this);
  step->SetStepIndex(-1);
  // The renumbering ran handlers: positions may have moved, so the step itself is looked for.
  if (!store_.RemoveMember(*step)) return;
  ++removals_;
  if (numbers_) numbers_->Remove(step->StepIndex(), *step);
  if (Scope* scope = document_scope()) scope->Report<&DocumentListener::StepRemoved>(*step);
}

void vnSteps::RemoveAll() {
  numbers_.reset();
  ++removals_;
  Collection::RemoveAll();
}

const StepNumbers& vnSteps::Numbers() const {
  if (!numbers_ || untracked_) {
    auto numbers = std::make_unique<StepNumbers>();
    for (size_t i = 0; i < store_.size(); ++i) numbers->Add(store_[i].StepIndex(), store_[i]);
    numbers_ = std::move(numbers);
  }
  return *numbers_;
}

int32_t vnSteps::LastIndex() const { return Numbers().Highest(); }

Ref<vnStep> vnSteps::ItemByStepIndex(int32_t plStepIndex) const {
  const uint32_t count = Numbers().Count(plStepIndex);
  if (count == 0) return nullptr;
  if (vnStep* only = Numbers().Only(plStepIndex)) return only;
  for (size_t i = 0; i < store_.size(); ++i) {
    if (store_[i].StepIndex() == plStepIndex) return &store_[i];
  }
  return nullptr;
}

Ref<vnStep> vnSteps::ItemByStepKey(const Text& psKey) const {
  if (untracked_) {
    for (size_t i = 0; i < store_.size(); ++i) {
      if (store_[i].Key() == psKey) return &store_[i];
    }
    return nullptr;
  }
  vnStep* const step = store_.Find(TextView(psKey));
  return step != nullptr && step->Key() == psKey ? step : nullptr;
}

void vnSteps::NumberChanged(vnStep& step, int32_t previous) {
  if (!numbers_) return;
  UpdateNumbers([&] {
    if (store_.Find(TextView(step.Key())) != &step) return;
    numbers_->Remove(previous, step);
    numbers_->Add(step.StepIndex(), step);
  });
}

void vnSteps::KeyChanged() { untracked_ = true; }

// In the order of the collection, each once: a step that was given another key may be in it twice.
std::vector<Ref<vnStep>> vnSteps::StepsNumbered(int32_t low, int32_t high) const {
  std::vector<Ref<vnStep>> steps;
  std::unordered_set<const vnStep*> seen;
  for (size_t i = 0; i < store_.size(); ++i) {
    const int32_t number = store_[i].StepIndex();
    if (number < low || number > high) continue;
    if (!untracked_ || seen.insert(&store_[i]).second) steps.emplace_back(&store_[i]);
  }
  return steps;
}

bool vnSteps::Holds(const vnStep& step) const {
  if (store_.Find(TextView(step.Key())) == &step) return true;
  return untracked_ && store_.Contains(step);
}

bool vnSteps::ShiftNumbers(int32_t low, int32_t high, int32_t by, const vnStep& mover) {
  // Whatever needs memory comes before the first change, as long as no handler takes steps out.
  const std::vector<Ref<vnStep>> steps = StepsNumbered(low, high);
  const int32_t number_of_mover = mover.StepIndex();
  const bool held = Holds(mover);
  const uint32_t removals = removals_;
  const auto is_gone = [&](const vnStep& step) { return removals_ != removals && !Holds(step); };
  for (const Ref<vnStep>& step : steps) {
    // Asked anew for each: the report of an earlier one may have changed this one.
    const int32_t number = step->StepIndex();
    if (number < low || number > high || number == number_of_mover) continue;
    if (step.get() == &mover || is_gone(*step)) continue;
    Inside::StoreOwnStepIndex(*step, number + by);
  }
  return !held || !is_gone(mover);
}

void vnSteps::Write(bag::BagWriter& writer) { WriteText(writer, kStepEntries); }

void vnSteps::Read(const bag::KeptText& text) {
  ReadMembers(text, kStepEntries, [this](vnStep* step) { Add(step); });
}

const automation::ClassInfo& vnSteps::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnSteps>(
      "vnSteps", "The steps of a document.",
      {0x5C2E4B10, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x10}},
      {0x5C2E4B11, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x11}},
      std::tuple{
          property<&vnSteps::Document>("Document").not_content("leads back to the root"),
          property<&vnSteps::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnSteps::Count>("Count").not_content("the members themselves are read"),
          property<&vnSteps::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&vnSteps::Add>("Add", "poStep"),
          method<&vnSteps::Remove>("Remove", "pvRef"),
          method<&vnSteps::RemoveAll>("RemoveAll"),
          property<&vnSteps::LastIndex>("LastIndex").not_content("follows from the steps"),
          property<&vnSteps::ItemByStepIndex>("ItemByStepIndex", "plStepIndex"),
          property<&vnSteps::ItemByStepKey>("ItemByStepKey", "psKey"),
      });
  return info;
}

}  // namespace vndoc6
