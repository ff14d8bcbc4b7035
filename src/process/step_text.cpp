// vnStep's text: reading it when somebody asks, writing it, and copies of a step.
#include "process/step.h"

#include <utility>

#include "bag/bag_part.h"
#include "bag/bag_reader.h"
#include "bag/unchanged_text.h"
#include "document/document.h"
#include "fields/fields.h"
#include "process/step_content.h"
#include "process/steps.h"

namespace vndoc6 {

using automation::Object;
using automation::Ref;
using bag::BagWriter;
using bag::KeptText;

namespace {

// The entries of a step's text in the order in which they are written. "DP" stands before "CS" when
// there are dependencies. In every file: never change one.
constexpr bag::EntryForm kEntries[] = {
    {"PB", '"'},  {"D", '"'},  {"L", '"'},   {"SI", '0', true}, {"K", '"', true}, {"CK", '"'},
    {"INS", '"'}, {"AT", '0'}, {"ATo", '0'}, {"TBL", '0'},      {"F", '"'},       {"DDT", '0'},
    {"DUR", '"'}, {"AC", 'b'}, {"Fig", '"'}, {"FL", '"'},       {"J", '"'},       {"Fd", '"'},
    {"C", '"'},   {"P", '"'},  {"T", '"'},   {"Attach", '"'},   {"CE", '"'},      {"CS", '0'},
};

void WriteBag(Properties& bag, BagWriter& writer) { bag.InternalWrite(writer); }

template <class T>
void WriteObject(T& object, BagWriter& writer) {
  object.InternalWrite(writer);
}

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

vnStep::Content& vnStep::content() {
  if (!content_) {
    auto content = std::make_unique<Content>();
    ReadContent(text_, *content);
    content_ = std::move(content);
    text_ = {};
  }
  return *content_;
}

Text vnStep::Save() {
  // A host's field object that gives its text may let go of this step.
  const Ref<vnStep> self(this);
  return bag::BagTextOf([this](BagWriter& writer) { InternalWrite(writer); });
}

void vnStep::Load(const Text& psLoad, const Text& psKey) {
  InternalLoadFrom(KeptText(psLoad), psKey, false);
}

void vnStep::InternalSetKey(Text key) {
  key_ = std::move(key);
  if (vnSteps* owner = owner_.get()) owner->InternalKeyChanged();
}

void vnStep::InternalLoadFrom(const KeptText& text, const Text& key, bool check_key) {
  bag::BagReader reader(text);
  // The order in which they are written.
  const int32_t step_index = reader.GetLong("SI");
  Text loaded_key = key.empty() ? reader.GetText("K") : key;
  if (key.empty() && check_key && InternalDocument() != nullptr &&
      InternalDocument()->InternalSteps().InternalStore().Find(TextView(loaded_key)) != nullptr) {
    loaded_key.clear();
  }
  if (loaded_key != key_) InternalSetKey(std::move(loaded_key));
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
  bag::BagReader reader(text);
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
  const auto is_same = [this](std::string_view key, const automation::Variant& value) {
    return value == (key == "SI" ? automation::Variant(step_index_) : automation::Variant(key_));
  };
  return bag::CopyIfUnchanged(text_, kEntries, writer, is_same);
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
  fields::Write(writer, "Fd", content.fields);
  content.conditions.Save(writer, "C", WriteObject<vnConditions>);
  content.properties.Save(writer, "P", WriteBag);
  content.tasks.Save(writer, "T", WriteObject<vnTasks>);
  content.attachments.Save(writer, "Attach", WriteBag);
  writer.Add("CE", content.condition_expression);
  if (PruneDependencies(content)) content.dependancies.Save(writer, "DP", WriteBag);
  writer.Add("CS", content.continue_style);
}

// Takes out the dependencies on steps that are gone, and says whether any is left. A bag that was
// empty before goes; one that this empties stays, for a host that holds it to add to.
bool vnStep::PruneDependencies(Content& content) {
  const Properties* const built = content.dependancies.built();
  if (built != nullptr && built->IsEmpty()) content.dependancies.Reset({});
  if (content.dependancies.built() == nullptr && content.dependancies.text().empty()) return false;
  const Ref<Properties> bag = bag::BagPart(content.dependancies, this);
  const vnDocument* const document = InternalDocument();
  for (int32_t i = bag->Count(); i >= 1 && document != nullptr; --i) {
    const Text key = bag->Key(i);
    if (document->InternalSteps().InternalStore().Find(TextView(key)) == nullptr) bag->Remove(key);
  }
  return !bag->IsEmpty();
}

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
  // References to titles have no identity of their own: their text is all there is to copy.
  const Ref<vnTitleRefs> titles = source.PerformedBy();
  copy.performed_by.Reset(
      KeptText(bag::BagTextOf([&](BagWriter& writer) { titles->InternalWrite(writer); })));
  copy.fields.Reset(KeptText(fields::TextOf(*source.Fields())));
  bag::SetBagPart(copy.properties, source.GetProperties()->Clone().get(), this);
  bag::SetBagPart(copy.attachments, source.Attachments()->Clone().get(), this);
  bag::SetBagPart(copy.dependancies, source.Dependancies()->Clone().get(), this);
}

void vnStep::InternalJoin(vnDocument& document) {
  InternalSetDocument(&document);
  Tasks()->InternalHandOnDocument();
  Conditions()->InternalHandOnDocument();
  Files()->InternalJoin(document);
  Jumps()->InternalJoin(document);
}

void vnStep::InternalLeave(vnDocument& document) {
  Files()->InternalLeave(document);
  Jumps()->InternalLeave(document);
}

}  // namespace vndoc6
