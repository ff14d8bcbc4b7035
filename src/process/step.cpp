#include "process/step.h"

#include <algorithm>
#include <array>
#include <limits>

#include "automation/describe.h"
#include "automation/error.h"
#include "chart/figure.h"
#include "collections/file.h"
#include "collections/jump.h"
#include "common/bag_part.h"
#include "common/bag_reader.h"
#include "common/lazy.h"
#include "common/levelled_text.h"
#include "common/properties.h"
#include "common/utility.h"
#include "core/detail_id.h"
#include "core/document.h"
#include "fields/fields.h"
#include "process/condition.h"
#include "process/container.h"
#include "process/link.h"
#include "process/steps.h"
#include "process/task.h"
#include "process/task_order.h"
#include "titles/title_ref.h"

namespace vndoc6 {

using automation::Object;
using automation::Owned;
using automation::Ref;
using common::BagWriter;
using common::KeptText;
using common::Lazy;

// What a loaded step is not until somebody reads it.
struct vnStep::Content {
  Text label, description, container_key, instructions, form, duration, condition_expression;
  int32_t assign_type = 0;
  int32_t assign_to = 0;
  int32_t table = 0;
  int32_t due_date_type = 0;
  int32_t continue_style = 0;
  bool auto_complete = false;
  Lazy<vnTitleRefs> performed_by;
  Lazy<vnFiles> files;
  Lazy<vnJumps> jumps;
  Lazy<Object> fields;
  Lazy<vnFigure> figure;
  Lazy<vnConditions> conditions;
  Lazy<Properties> properties;
  Lazy<vnTasks> tasks;
  Lazy<Properties> attachments;
  Lazy<Properties> dependancies;
  Owned<vnLinks> links;
  Owned<vnContainer> container;
  TaskOrderIndex task_order;
};

namespace {

// Reported as step changes. The numbers are those of vndTop and vndWidth: hosts tell them from
// figure changes by knowing that a step has neither.
constexpr int32_t kDescriptionDetail = 2;
constexpr int32_t kContainerKeyDetail = 3;

// The entries of a step's text in the order in which they are written, with their type tags. "DP"
// stands before "CS" when there are dependencies. In every file: never change one.
struct EntryForm {
  std::string_view key;
  char tag;
};
constexpr std::array<EntryForm, 24> kEntries = {{
    {"PB", '"'},  {"D", '"'},  {"L", '"'},   {"SI", '0'},     {"K", '"'},  {"CK", '"'},
    {"INS", '"'}, {"AT", '0'}, {"ATo", '0'}, {"TBL", '0'},    {"F", '"'},  {"DDT", '0'},
    {"DUR", '"'}, {"AC", 'b'}, {"Fig", '"'}, {"FL", '"'},     {"J", '"'},  {"Fd", '"'},
    {"C", '"'},   {"P", '"'},  {"T", '"'},   {"Attach", '"'}, {"CE", '"'}, {"CS", '0'},
}};

void WriteBag(Properties& bag, BagWriter& writer) { bag.InternalWrite(writer); }

template <class T>
void WriteObject(T& object, BagWriter& writer) {
  object.InternalWrite(writer);
}

}  // namespace

vnStep::vnStep() = default;
vnStep::~vnStep() = default;

vnStep::Content& vnStep::content() {
  if (!content_) {
    auto content = std::make_unique<Content>();
    ReadContent(text_, *content);
    content_ = std::move(content);
    text_ = {};
  }
  return *content_;
}

void vnStep::ReportChange(int32_t detail_id) {
  if (vnDocument* document = InternalDocument()) document->InternalStepChange(*this, detail_id);
}

// --- Owners ---

Ref<vnContainer> vnStep::Container() const {
  // Hosts that ask have always got this error, whether there is a container or not.
  throw automation::Error(automation::kNotSupported);
}

void vnStep::SetContainer(vnContainer* poContainer) {
  content().container = Owned<vnContainer>(poContainer);
}

void vnStep::InternalSetDocument(vnDocument* document) {
  Member::InternalSetDocument(document);
  if (!content_) return;
  const auto hand_on = [document](auto* built) {
    if (built != nullptr) built->InternalSetDocument(document);
  };
  hand_on(content_->files.built());
  hand_on(content_->jumps.built());
  hand_on(content_->performed_by.built());
  hand_on(content_->figure.built());
  hand_on(content_->conditions.built());
  hand_on(content_->tasks.built());
  hand_on(content_->links.get());
}

vnSteps* vnStep::InternalStepsOwner() const { return owner_.get(); }
void vnStep::InternalSetStepsOwner(vnSteps* owner) { owner_ = owner; }

// --- Plain values ---

Text vnStep::Label() { return content().label; }
void vnStep::SetLabel(const Text& psLabel) {
  if (content().label == psLabel) return;
  content().label = psLabel;
  ReportChange(vndLabel);
}

Text vnStep::Description() { return content().description; }
void vnStep::SetDescription(const Text& psDescription) {
  if (content().description == psDescription) return;
  content().description = psDescription;
  ReportChange(kDescriptionDetail);
}

Text vnStep::ContainerKey() { return content().container_key; }
void vnStep::SetContainerKey(const Text& psContainerKey) {
  content().container_key = psContainerKey;
  // Reported on every put, equal or not: hosts redraw the group on it.
  ReportChange(kContainerKeyDetail);
}

Text vnStep::Instructions() { return content().instructions; }
void vnStep::SetInstructions(const Text& psInstructions) {
  content().instructions = psInstructions;
}
int32_t vnStep::AssignType() { return content().assign_type; }
void vnStep::SetAssignType(int32_t plAssignType) { content().assign_type = plAssignType; }
int32_t vnStep::AssignTo() { return content().assign_to; }
void vnStep::SetAssignTo(int32_t plAssignTo) { content().assign_to = plAssignTo; }
int32_t vnStep::Table() { return content().table; }
void vnStep::SetTable(int32_t plTable) { content().table = plTable; }
Text vnStep::Form() { return content().form; }
void vnStep::SetForm(const Text& psForm) { content().form = psForm; }
int32_t vnStep::DueDateType() { return content().due_date_type; }
void vnStep::SetDueDateType(int32_t plDueDateType) { content().due_date_type = plDueDateType; }
Text vnStep::Duration() { return content().duration; }
void vnStep::SetDuration(const Text& psDuration) { content().duration = psDuration; }
bool vnStep::AutoComplete() { return content().auto_complete; }
void vnStep::SetAutoComplete(bool pbAutoComplete) { content().auto_complete = pbAutoComplete; }
Text vnStep::ConditionExpression() { return content().condition_expression; }
void vnStep::SetConditionExpression(const Text& psConditionExpression) {
  content().condition_expression = psConditionExpression;
}
int32_t vnStep::ContinueStyle() { return content().continue_style; }
void vnStep::SetContinueStyle(int32_t plContinueStyle) {
  content().continue_style = plContinueStyle;
}

// --- The number ---

void vnStep::StoreStepIndex(int32_t step_index) {
  const int32_t previous = std::exchange(step_index_, step_index);
  if (vnSteps* owner = owner_.get()) owner->InternalNumberChanged(*this, previous);
}

void vnStep::InternalSetStepIndexQuietly(int32_t step_index) {
  if (step_index == step_index_) return;
  StoreStepIndex(step_index);
  ReportChange(vndStepIndex);
}

void vnStep::SetStepIndex(int32_t plStepIndex) {
  const Ref<vnStep> self(this);
  if (step_index_ == 0) {
    InternalSetStepIndexQuietly(plStepIndex);
  } else if (plStepIndex < 0) {
    TakeOutOfNumbering();
  } else if (plStepIndex > 0) {
    MoveTo(plStepIndex);
  }
}

void vnStep::TakeOutOfNumbering() {
  vnSteps* const owner = owner_.get();
  const int32_t current = step_index_;
  if (owner != nullptr && current >= 1 && owner->LastIndex() > current) {
    constexpr int32_t kHighest = std::numeric_limits<int32_t>::max();
    for (const Ref<vnStep>& step : owner->InternalStepsNumbered(current + 1, kHighest)) {
      if (step.get() != this) step->InternalSetStepIndexQuietly(step->StepIndex() - 1);
    }
  }
  InternalSetStepIndexQuietly(-1);
}

void vnStep::MoveTo(int32_t step_index) {
  vnSteps* const owner = owner_.get();
  if (owner == nullptr) {
    InternalSetStepIndexQuietly(step_index);
    return;
  }
  constexpr int32_t kHighest = std::numeric_limits<int32_t>::max();
  const int32_t current = step_index_;
  const int32_t last = owner->LastIndex();
  if (current < 1 && last == kHighest) throw automation::Error(automation::kOverflow);
  const int32_t target = std::min(step_index, current < 1 ? last + 1 : last);
  const int32_t other_end = current < 1 ? target : current;
  // A step that comes back from -1 moves the holder of its number down, not up, and so shares the
  // number below: hosts count on it.
  const int32_t move = target <= current ? 1 : -1;
  const auto [low, high] = std::minmax(target, other_end);
  for (const Ref<vnStep>& step : owner->InternalStepsNumbered(low, high)) {
    const int32_t number = step->StepIndex();
    if (number == current) continue;
    if (move > 0 && number == kHighest) throw automation::Error(automation::kOverflow);
    step->InternalSetStepIndexQuietly(number + move);
  }
  InternalSetStepIndexQuietly(target);
}

// --- Parts ---

template <class T>
Ref<T> vnStep::Part(Lazy<T>& part) {
  const auto make = [this] {
    auto object = automation::Make<T>();
    object->InternalSetDocument(InternalDocument());
    if constexpr (requires { object->SetStep(this); }) object->SetStep(this);
    return object;
  };
  const auto load = [](T& object, const KeptText& text) {
    if constexpr (requires { object.InternalLoad(text); }) {
      object.InternalLoad(text);
    } else {
      object.InternalLoad(text, Text());
    }
  };
  return part.Get(make, load);
}

Ref<vnFigure> vnStep::Figure() { return Part(content().figure); }
Ref<vnConditions> vnStep::Conditions() { return Part(content().conditions); }
void vnStep::SetConditions(vnConditions* poConditions) { content().conditions.Set(poConditions); }
Ref<vnTasks> vnStep::Tasks() { return Part(content().tasks); }
void vnStep::SetTasks(vnTasks* poTasks) { content().tasks.Set(poTasks); }
Ref<vnFiles> vnStep::Files() { return Part(content().files); }
Ref<vnJumps> vnStep::Jumps() { return Part(content().jumps); }
Ref<vnTitleRefs> vnStep::PerformedBy() { return Part(content().performed_by); }

Ref<vnLinks> vnStep::Links() {
  Content& parts = content();
  if (!parts.links) {
    auto links = automation::Make<vnLinks>();
    links->InternalSetDocument(InternalDocument());
    parts.links = Owned<vnLinks>(links.get());
  }
  return parts.links.get();
}

Ref<Properties> vnStep::GetProperties() { return common::BagPart(content().properties, this); }
void vnStep::SetProperties(Properties* poProperties) {
  common::SetBagPart(content().properties, poProperties, this);
}
Ref<Properties> vnStep::Attachments() { return common::BagPart(content().attachments, this); }
void vnStep::SetAttachments(Properties* poAttachments) {
  common::SetBagPart(content().attachments, poAttachments, this);
}
Ref<Properties> vnStep::Dependancies() { return common::BagPart(content().dependancies, this); }

Ref<Object> vnStep::Fields() {
  Lazy<Object>& values = content().fields;
  return values.Get([&values] { return fields::MakeFieldValues(values.text().ToText()); },
                    [](Object&, const KeptText&) {});
}
void vnStep::InternalSetFieldsObject(Object* fields) { content().fields.Set(fields); }

// --- Conditions, tasks, links ---

Ref<vnCondition> vnStep::NewCondition(const Text& psDisplayName, const Text& psCondition) {
  auto condition = automation::Make<vnCondition>();
  condition->InternalSetDocument(InternalDocument());
  condition->SetDisplayName(psDisplayName);
  condition->SetConditionTest(psCondition);
  Conditions()->Add(condition.get());
  return condition;
}

bool vnStep::RemoveCondition(const Text& psKey) {
  return Conditions()->InternalRemove(automation::Variant(psKey));
}

int32_t vnStep::InternalNextTaskOrder() {
  return static_cast<int32_t>(content().task_order.size()) + 1;
}

Ref<vnTask> vnStep::NewTask() {
  auto task = automation::Make<vnTask>();
  task->InternalSetDocument(InternalDocument());
  task->SetStep(this);
  task->SetTaskOrder(InternalNextTaskOrder());
  // The order index needs the key before the collection would make one.
  task->InternalSetKey(common::NewKey());
  content().task_order.Add(task->Key(), task->TaskOrder());
  Tasks()->Add(task.get());
  return task;
}

void vnStep::RemoveTask(const Text& psKey) {
  const Ref<vnTasks> tasks = Tasks();
  const Ref<vnTask> task = tasks->Item(automation::Variant(psKey));
  if (!task) return;
  const int32_t removed = task->TaskOrder();
  content().task_order.Remove(psKey);
  tasks->Remove(automation::Variant(psKey));
  for (const auto& [key, order] : content().task_order.CloseGap(removed)) {
    if (const Ref<vnTask> moved = tasks->Item(automation::Variant(key))) moved->SetTaskOrder(order);
  }
}

void vnStep::InternalReorderTask(const Text& key, int32_t order) {
  const Ref<vnTasks> tasks = Tasks();
  const Ref<vnTask> task = tasks->Item(automation::Variant(key));
  if (!task) return;
  const int32_t current = task->TaskOrder();
  const int32_t target = common::Limit(order, 1, tasks->Count());
  const int32_t move = target <= current ? 1 : -1;
  const auto [low, high] = std::minmax(target, current);
  for (size_t i = 0; i < tasks->InternalStore().size(); ++i) {
    vnTask& other = tasks->InternalStore()[i];
    const int32_t number = other.TaskOrder();
    if (&other != task.get() && number >= low && number <= high) other.SetTaskOrder(number + move);
  }
  task->SetTaskOrder(target);
  InternalRebuildTaskOrder();
}

void vnStep::InternalRebuildTaskOrder() {
  const Ref<vnTasks> tasks = Tasks();
  TaskOrderIndex rebuilt;
  for (size_t i = 0; i < tasks->InternalStore().size(); ++i) {
    const vnTask& task = tasks->InternalStore()[i];
    rebuilt.Add(task.Key(), task.TaskOrder());
  }
  content().task_order = std::move(rebuilt);
}

void vnStep::AddLink(vnLink* poLink) { Links()->Add(poLink); }

// --- Copies ---

namespace {

// Copies of a collection's members, under fresh keys.
template <class T, class List>
void CopyMembers(const Ref<List>& from, const Ref<List>& to) {
  for (const Ref<Object>& member : from->InternalStore().Snapshot()) {
    const auto copy = automation::Make<T>();
    copy->InternalCopyFrom(static_cast<T&>(*member));
    to->Add(copy.get());
  }
}

}  // namespace

void vnStep::InternalCopyFrom(vnStep& source) {
  Content& copy = content();
  const Content& plain = source.content();
  copy.label = plain.label;
  copy.description = plain.description;
  copy.container_key = plain.container_key;
  copy.instructions = plain.instructions;
  copy.form = plain.form;
  copy.duration = plain.duration;
  copy.condition_expression = plain.condition_expression;
  copy.assign_type = plain.assign_type;
  copy.assign_to = plain.assign_to;
  copy.table = plain.table;
  copy.due_date_type = plain.due_date_type;
  copy.continue_style = plain.continue_style;
  copy.auto_complete = plain.auto_complete;
  StoreStepIndex(source.step_index_);
  Figure()->InternalCopyFrom(*source.Figure());
  CopyMembers<vnTask>(source.Tasks(), Tasks());
  InternalRebuildTaskOrder();
  CopyMembers<vnFile>(source.Files(), Files());
  CopyMembers<vnJump>(source.Jumps(), Jumps());
  CopyMembers<vnCondition>(source.Conditions(), Conditions());
  InternalCopyTitlesFrom(source);
  copy.fields.Reset(KeptText(fields::TextOf(*source.Fields())));
  common::SetBagPart(copy.properties, source.GetProperties()->Clone().get(), this);
  common::SetBagPart(copy.attachments, source.Attachments()->Clone().get(), this);
  common::SetBagPart(copy.dependancies, source.Dependancies()->Clone().get(), this);
}

// References to titles have no identity of their own: their text is all there is to copy.
void vnStep::InternalCopyTitlesFrom(vnStep& source) {
  const Ref<vnTitleRefs> titles = source.PerformedBy();
  PerformedBy()->InternalLoad(
      KeptText(common::BagTextOf([&](BagWriter& writer) { titles->InternalWrite(writer); })));
}

// --- Text ---

Text vnStep::Save() {
  return common::BagTextOf([this](BagWriter& writer) { InternalWrite(writer); });
}

void vnStep::Load(const Text& psLoad, const Text& psKey) {
  InternalLoadFrom(KeptText(psLoad), psKey, false);
}

void vnStep::InternalSetKey(const Text& key) {
  key_ = key;
  if (vnSteps* owner = owner_.get()) owner->InternalKeyChanged();
}

void vnStep::InternalLoadFrom(const KeptText& text, const Text& key, bool check_key) {
  common::BagReader reader(text);
  // The order in which they are written.
  const int32_t step_index = reader.GetLong("SI");
  Text loaded_key = key.empty() ? reader.GetText("K") : key;
  if (key.empty() && check_key && InternalDocument() != nullptr &&
      InternalDocument()->InternalSteps().InternalStore().Find(TextView(loaded_key)) != nullptr) {
    loaded_key.clear();
  }
  if (loaded_key != key_) InternalSetKey(loaded_key);
  if (step_index != step_index_) StoreStepIndex(step_index);
  if (content_) {
    // Somebody reads this step: what was built goes, but for PerformedBy, which stays and is what
    // the next save writes.
    ReadContent(text, *content_);
  } else {
    text_ = text;
  }
}

void vnStep::ReadContent(const KeptText& text, Content& content) {
  common::BagReader reader(text);
  // A PerformedBy that was read survives, see InternalLoadFrom.
  if (content.performed_by.built() == nullptr) content.performed_by.Reset(reader.GetKept("PB"));
  content.description = reader.GetText("D");
  content.label = reader.GetText("L");
  content.container_key = reader.GetText("CK");
  content.instructions = reader.GetText("INS");
  content.assign_type = reader.GetLong("AT");
  content.assign_to = reader.GetLong("ATo");
  content.table = reader.GetLong("TBL");
  content.form = reader.GetText("F");
  content.due_date_type = reader.GetLong("DDT");
  content.duration = reader.GetText("DUR");
  content.auto_complete = reader.GetBoolean("AC");
  content.figure.Reset(reader.GetKept("Fig"));
  content.files.Reset(reader.GetKept("FL"));
  content.jumps.Reset(reader.GetKept("J"));
  content.fields.Reset(reader.GetKept("Fd"));
  content.conditions.Reset(reader.GetKept("C"));
  content.properties.Reset(reader.GetKept("P"));
  content.tasks.Reset(reader.GetKept("T"));
  content.attachments.Reset(reader.GetKept("Attach"));
  content.condition_expression = reader.GetText("CE");
  content.dependancies.Reset(reader.GetKept("DP"));
  content.continue_style = reader.GetLong("CS");
}

void vnStep::InternalWrite(BagWriter& writer) {
  if (!content_ && CopyUnread(writer)) return;
  WriteContent(writer, content());
}

// Copies the text of a step that nobody read, if that is what writing it would give: every entry
// in its place, no dependencies to look after, key and number as they were.
bool vnStep::CopyUnread(BagWriter& writer) const {
  common::BagScanner scanner(text_);
  common::BagEntry entry;
  for (const EntryForm& form : kEntries) {
    if (!scanner.Next(entry) || entry.key != form.key) return false;
    const bool boolean = entry.tag == 'T' || entry.tag == 'F';
    if (entry.tag != form.tag && !(form.tag == 'b' && boolean)) return false;
    if (form.key == "SI") {
      automation::Variant number;
      if (!scanner.ValueOf(entry, number) || number != automation::Variant(step_index_))
        return false;
    } else if (form.key == "K" && scanner.TextOf(entry).ToText() != key_) {
      return false;
    }
  }
  if (scanner.Next(entry) || scanner.faulty()) return false;
  common::AppendRelevelled(text_.raw(), text_.depth(), writer.depth(), writer.out());
  return true;
}

void vnStep::WriteContent(BagWriter& writer, Content& content) {
  content.performed_by.Save(writer, "PB", WriteObject<vnTitleRefs>);
  writer.Add("D", content.description);
  writer.Add("L", content.label);
  writer.Add("SI", step_index_);
  writer.Add("K", key_);
  writer.Add("CK", content.container_key);
  writer.Add("INS", content.instructions);
  writer.Add("AT", content.assign_type);
  writer.Add("ATo", content.assign_to);
  writer.Add("TBL", content.table);
  writer.Add("F", content.form);
  writer.Add("DDT", content.due_date_type);
  writer.Add("DUR", content.duration);
  writer.Add("AC", content.auto_complete);
  content.figure.Save(writer, "Fig", WriteObject<vnFigure>);
  content.files.Save(writer, "FL", WriteObject<vnFiles>);
  content.jumps.Save(writer, "J", WriteObject<vnJumps>);
  if (Object* values = content.fields.built()) {
    writer.Add("Fd", fields::TextOf(*values));
  } else {
    writer.Add("Fd", content.fields.text());
  }
  content.conditions.Save(writer, "C", WriteObject<vnConditions>);
  content.properties.Save(writer, "P", WriteBag);
  content.tasks.Save(writer, "T", WriteObject<vnTasks>);
  content.attachments.Save(writer, "Attach", WriteBag);
  writer.Add("CE", content.condition_expression);
  PruneDependencies(content);
  if (content.dependancies.built() != nullptr) {
    content.dependancies.Save(writer, "DP", WriteBag);
  }
  writer.Add("CS", content.continue_style);
}

// Takes out the dependencies on steps that are gone; when none is left, the bag too.
void vnStep::PruneDependencies(Content& content) {
  if (content.dependancies.built() == nullptr && content.dependancies.text().empty()) return;
  const Ref<Properties> bag = common::BagPart(content.dependancies, this);
  const vnDocument* const document = InternalDocument();
  for (int32_t i = bag->Count(); i >= 1 && document != nullptr; --i) {
    const Text key = bag->Key(i);
    if (document->InternalSteps().InternalStore().Find(TextView(key)) == nullptr) bag->Remove(key);
  }
  if (bag->Count() == 0) content.dependancies.Reset({});
}

const automation::ClassInfo& vnStep::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnStep>(
      "vnStep", "One step of the procedure.",
      {0x5C2E4B12, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x12}},
      {0x5C2E4B13, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x13}},
      {
          with_help(get<&vnStep::Container>("Container"), "Raises an error; use ContainerKey."),
          putref<&vnStep::SetContainer>("Container", "poContainer"),
          get<&vnStep::Document>("Document"),
          putref<&vnStep::SetDocument>("Document", "poDocument"),
          with_help(get<&vnStep::Figure>("Figure"), "The shape that draws the step."),
          get<&vnStep::Key>("Key"),
          with_help(get<&vnStep::Label>("Label"), "The short name shown in the figure."),
          put<&vnStep::SetLabel>("Label", "psLabel"),
          get<&vnStep::Description>("Description"),
          put<&vnStep::SetDescription>("Description", "psDescription"),
          with_help(get<&vnStep::ContainerKey>("ContainerKey"),
                    "The key of the container that the step belongs to."),
          put<&vnStep::SetContainerKey>("ContainerKey", "psContainerKey"),
          with_help(get<&vnStep::StepIndex>("StepIndex"),
                    "The step's number: 0 not numbered, -1 taken out."),
          put<&vnStep::SetStepIndex>("StepIndex", "plStepIndex"),
          get<&vnStep::Conditions>("Conditions"),
          putref<&vnStep::SetConditions>("Conditions", "poConditions"),
          get<&vnStep::GetProperties>("Properties"),
          putref<&vnStep::SetProperties>("Properties", "poProperties"),
          get<&vnStep::Tasks>("Tasks"),
          putref<&vnStep::SetTasks>("Tasks", "poTasks"),
          get<&vnStep::Files>("Files"),
          get<&vnStep::Jumps>("Jumps"),
          with_help(get<&vnStep::Links>("Links"), "A working list; not saved with the step."),
          with_help(get<&vnStep::PerformedBy>("PerformedBy"), "Who performs the step."),
          get<&vnStep::Fields>("Fields"),
          get<&vnStep::Instructions>("Instructions"),
          put<&vnStep::SetInstructions>("Instructions", "psInstructions"),
          get<&vnStep::AssignType>("AssignType"),
          put<&vnStep::SetAssignType>("AssignType", "plAssignType"),
          get<&vnStep::AssignTo>("AssignTo"),
          put<&vnStep::SetAssignTo>("AssignTo", "plAssignTo"),
          get<&vnStep::Table>("Table"),
          put<&vnStep::SetTable>("Table", "plTable"),
          get<&vnStep::Form>("Form"),
          put<&vnStep::SetForm>("Form", "psForm"),
          get<&vnStep::DueDateType>("DueDateType"),
          put<&vnStep::SetDueDateType>("DueDateType", "plDueDateType"),
          get<&vnStep::Duration>("Duration"),
          put<&vnStep::SetDuration>("Duration", "psDuration"),
          get<&vnStep::AutoComplete>("AutoComplete"),
          put<&vnStep::SetAutoComplete>("AutoComplete", "pbAutoComplete"),
          get<&vnStep::Attachments>("Attachments"),
          putref<&vnStep::SetAttachments>("Attachments", "poAttachments"),
          get<&vnStep::ConditionExpression>("ConditionExpression"),
          put<&vnStep::SetConditionExpression>("ConditionExpression", "psConditionExpression"),
          with_help(get<&vnStep::Dependancies>("Dependancies"),
                    "The steps this one depends on, by key."),
          with_help(method<&vnStep::Save>("Save"), "The step's serialised text."),
          with_help(method<&vnStep::Load>("Load", "psLoad", optional("psKey", u"")),
                    "Reads a serialised text."),
          method<&vnStep::NewCondition>("NewCondition", "psDisplayName", "psCondition"),
          method<&vnStep::RemoveCondition>("RemoveCondition", "psKey"),
          method<&vnStep::NewTask>("NewTask"),
          method<&vnStep::RemoveTask>("RemoveTask", "psKey"),
          method<&vnStep::AddLink>("AddLink", "poLink"),
          get<&vnStep::ContinueStyle>("ContinueStyle"),
          put<&vnStep::SetContinueStyle>("ContinueStyle", "plContinueStyle"),
      });
  return info;
}

}  // namespace vndoc6
