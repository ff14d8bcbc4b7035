#include "vndoc6/process/step.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "automation/inside.h"
#include "bag/bag_part.h"
#include "bag/row_text.h"
#include "core/part.h"
#include "core/scope.h"
#include "fields/fields.h"
#include "platform/keys.h"
#include "process/step_content.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {

using automation::Object;
using automation::Owned;
using automation::Ref;

vnStep::vnStep() = default;
vnStep::~vnStep() = default;

void vnStep::ReportChange(int32_t detail_id) {
  if (Scope* scope = document_scope())
    scope->Report<&DocumentListener::StepChange>(*this, detail_id);
}

// --- Owners ---

Ref<vnContainer> vnStep::Container() const {
  // Hosts that ask have always got this error, whether there is a container or not.
  throw automation::Error(automation::kNotSupported);
}

void vnStep::SetContainer(vnContainer* poContainer) {
  content().container = Owned<vnContainer>(poContainer);
}

void vnStep::TakeDocument(vnDocument* document) {
  Member::TakeDocument(document);
  if (!content_) return;
  schema::ForEachPart<Schema>(*content_, [document](auto& part) {
    if constexpr (requires { Inside::TakeDocument(*part.built(), document); }) {
      if (part.built() != nullptr) Inside::TakeDocument(*part.built(), document);
    }
  });
  if (content_->links) Inside::TakeDocument(*content_->links, document);
}

vnSteps* vnStep::steps_owner() const { return owner_.get(); }
void vnStep::StoreStepsOwner(vnSteps* owner) { owner_ = owner; }

// --- Plain values ---

vnStep::Values& vnStep::values() { return content(); }

template <class T>
void vnStep::Put(T Values::*member, const T& value) {
  if (const int32_t detail_id = schema::Store<Schema>(values(), member, value)) {
    ReportChange(detail_id);
  }
}
template void vnStep::Put(bool Values::*, const bool&);
template void vnStep::Put(int32_t Values::*, const int32_t&);
template void vnStep::Put(Text Values::*, const Text&);

// --- Parts ---

Ref<vnFigure> vnStep::Figure() { return ReadPart(content().figure, *this); }
Ref<vnConditions> vnStep::Conditions() { return ReadPart(content().conditions, *this); }
void vnStep::SetConditions(vnConditions* poConditions) { content().conditions.Set(poConditions); }
Ref<vnTasks> vnStep::Tasks() { return ReadPart(content().tasks, *this); }
void vnStep::SetTasks(vnTasks* poTasks) { content().tasks.Set(poTasks); }
Ref<vnFiles> vnStep::Files() { return ReadPart(content().files, *this); }
Ref<vnJumps> vnStep::Jumps() { return ReadPart(content().jumps, *this); }
Ref<vnTitleRefs> vnStep::PerformedBy() { return ReadPart(content().performed_by, *this); }

Ref<vnLinks> vnStep::Links() {
  Content& parts = content();
  if (!parts.links) parts.links = Owned<vnLinks>(MakePart<vnLinks>(*this).get());
  return parts.links.get();
}

Ref<Properties> vnStep::GetProperties() { return bag::BagPart(content().properties, this); }
void vnStep::SetProperties(Properties* poProperties) {
  bag::SetBagPart(content().properties, poProperties, this);
}
Ref<Properties> vnStep::Attachments() { return bag::BagPart(content().attachments, this); }
void vnStep::SetAttachments(Properties* poAttachments) {
  bag::SetBagPart(content().attachments, poAttachments, this);
}
Ref<Properties> vnStep::Dependancies() { return bag::BagPart(content().dependancies, this); }

Ref<Object> vnStep::Fields() {
  return fields::Read(*this, content().fields, &fields::MakeFieldValues);
}
void vnStep::StoreFields(Object* fields) { content().fields.Set(fields); }

// --- Conditions, tasks, links ---

Ref<vnCondition> vnStep::NewCondition(const Text& psDisplayName, const Text& psCondition) {
  // The test is reported before the condition is in its place; a handler may let go of this step.
  const Ref<vnStep> self(this);
  auto condition = automation::Make<vnCondition>();
  Inside::TakeDocument(*condition, document());
  condition->SetDisplayName(psDisplayName);
  condition->SetConditionTest(psCondition);
  Conditions()->Add(condition.get());
  return condition;
}

bool vnStep::RemoveCondition(const Text& psKey) {
  return Inside::RemoveMember(*Conditions(), automation::Variant(psKey));
}

int32_t vnStep::NextTaskOrder() { return static_cast<int32_t>(content().task_order.size()) + 1; }

Ref<vnTask> vnStep::NewTask() {
  // A handler that is told may let go of this step.
  const Ref<vnStep> self(this);
  // The tasks come before the order: a handler that hears of their building may make another.
  const Ref<vnTasks> tasks = Tasks();
  auto task = automation::Make<vnTask>();
  Inside::TakeDocument(*task, document());
  task->SetStep(this);
  task->SetTaskOrder(NextTaskOrder());
  // The order index needs the key before the collection would make one.
  Inside::StoreKey(*task, platform::NewKey());
  content().task_order.Add(task->Key(), task->TaskOrder());
  try {
    tasks->Add(task.get());
  } catch (const std::bad_alloc&) {
    if (!Inside::store(*tasks).Contains(*task)) content().task_order.Remove(task->Key());
    throw;
  }
  return task;
}

void vnStep::RemoveTask(const Text& psKey) {
  const Ref<vnStep> self(this);
  const Ref<vnTasks> tasks = Tasks();
  const Ref<vnTask> task = tasks->Item(automation::Variant(psKey));
  if (!task) return;
  Inside::ReportRemoval(*tasks, *task);
  // A handler may have made tasks, or removed others or this one: what counts is what there is now.
  TaskOrderIndex& index = content().task_order;
  const int32_t removed = task->TaskOrder();
  // Whatever needs memory comes before the first change.
  std::vector<std::pair<Ref<vnTask>, int32_t>> moved;
  for (const auto& [key, order] : index.Above(removed)) {
    if (vnTask* other = Inside::store(*tasks).Find(TextView(key))) {
      if (other != task.get()) moved.emplace_back(other, order - 1);
    }
  }
  const bool counted = index.Remove(psKey);
  if (!Inside::TakeOut(*tasks, *task) && !counted) return;
  index.CloseGap(removed);
  for (const auto& [other, order] : moved) other->SetTaskOrder(order);
}

void vnStep::ReorderTask(const Text& key, int32_t order) {
  const Ref<vnTasks> tasks = Tasks();
  const Ref<vnTask> task = tasks->Item(automation::Variant(key));
  if (!task) return;
  const int32_t current = task->TaskOrder();
  const int32_t target = std::clamp(order, 1, tasks->Count());
  const int32_t move = target <= current ? 1 : -1;
  const auto [low, high] = std::minmax(target, current);
  for (size_t i = 0; i < Inside::store(*tasks).size(); ++i) {
    vnTask& other = Inside::store(*tasks)[i];
    const int32_t number = other.TaskOrder();
    if (&other != task.get() && number >= low && number <= high) other.SetTaskOrder(number + move);
  }
  task->SetTaskOrder(target);
  RebuildTaskOrder();
}

void vnStep::RebuildTaskOrder() {
  const Ref<vnTasks> tasks = Tasks();
  TaskOrderIndex rebuilt;
  for (size_t i = 0; i < Inside::store(*tasks).size(); ++i) {
    const vnTask& task = Inside::store(*tasks)[i];
    rebuilt.Add(task.Key(), task.TaskOrder());
  }
  content().task_order = std::move(rebuilt);
}

void vnStep::AddLink(vnLink* poLink) { Links()->Add(poLink); }

}  // namespace vndoc6
