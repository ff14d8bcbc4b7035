// vnStep's text: reading it when somebody asks, writing it, and copies of a step.
#include "vndoc6/process/step.h"

#include <utility>

#include "automation/inside.h"
#include "bag/bag_part.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/collection_text.h"
#include "core/scope.h"
#include "fields/fields.h"
#include "process/step_content.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {

using automation::Object;
using automation::Owned;
using automation::Ref;
using bag::BagWriter;
using bag::KeptText;

namespace {

// Copies of a collection's members, under fresh keys.
template <class T, class List>
void CopyMembers(const Ref<List>& from, const Ref<List>& to) {
  for (const Ref<Object>& member : Inside::store(*from).Snapshot()) {
    const auto copy = automation::Make<T>();
    Inside::CopyFrom(*copy, static_cast<T&>(*member));
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

std::function<void()> vnStep::RememberUnread() {
  if (content_) return schema::RememberUnreadParts<Schema>(*content_);
  return [this, text = text_] {
    if (!content_ || !schema::HoldsNoPart<Schema>(*content_)) return;
    // Goes when the step is unread already: a host's object may look at it.
    const std::unique_ptr<Content> read = std::move(content_);
    text_ = text;
  };
}

Text vnStep::Save() {
  // A host's field object that gives its text may let go of this step.
  const Ref<vnStep> self(this);
  return bag::BagTextOf([this](BagWriter& writer) { Write(writer); });
}

void vnStep::Load(const Text& psLoad, const Text& psKey) {
  ReadFrom(KeptText(psLoad), psKey, false);
}

void vnStep::StoreKey(Text key) {
  key_ = std::move(key);
  if (vnSteps* owner = owner_.get()) Inside::KeyChanged(*owner);
}

void vnStep::ReadFrom(const KeptText& text, const Text& key, bool check_key) {
  bag::BagReader reader(text);
  // The order in which they are written.
  const int32_t step_index = reader.GetLong("SI");
  Text loaded_key = key.empty() ? reader.GetText("K") : key;
  if (key.empty() && check_key && document_scope() != nullptr &&
      Inside::store(document_scope()->Steps()).Find(TextView(loaded_key)) != nullptr) {
    loaded_key.clear();
  }
  if (loaded_key != key_) StoreKey(std::move(loaded_key));
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
  // A PerformedBy that was read survives, see ReadFrom.
  const Owned<vnTitleRefs> performed_by(content.performed_by.built());
  schema::ReadEntries<Schema, schema::AtOnce::kReadElsewhere>(reader, *this, content);
  if (performed_by) content.performed_by.Set(performed_by.get());
}

bag::UnknownEntries& vnStep::unknown_entries() { return Inside::unknown_entries(content()); }

// The text of a step that nobody read is copied, unless there are dependencies to look after.
void vnStep::Write(BagWriter& writer) {
  if (!content_ && schema::CopyUnread<Schema>(text_, writer, *this)) return;
  PruneDependencies(content());
  schema::WriteEntries<Schema>(writer, *this, content());
}

// Takes out the dependencies on steps that are gone. A bag that was empty before goes; one that
// this empties stays, for a host that holds it to add to.
void vnStep::PruneDependencies(Content& content) {
  const Properties* const built = content.dependancies.built();
  if (built != nullptr && built->IsEmpty()) content.dependancies.Reset({});
  if (content.dependancies.built() == nullptr && content.dependancies.text().empty()) return;
  const Ref<Properties> bag = bag::BagPart(content.dependancies, this);
  Scope* const scope = document_scope();
  for (int32_t i = bag->Count(); i >= 1 && scope != nullptr; --i) {
    const Text key = bag->Key(i);
    if (Inside::store(scope->Steps()).Find(TextView(key)) == nullptr) bag->Remove(key);
  }
}

void vnStep::CopyFrom(vnStep& source) {
  Content& copy = content();
  const Content& plain = source.content();
  schema::CopyValues<Schema>(static_cast<const Values&>(plain), static_cast<Values&>(copy));
  StoreStepIndex(source.step_index_);
  Inside::CopyFrom(*Figure(), *source.Figure());
  CopyMembers<vnTask>(source.Tasks(), Tasks());
  RebuildTaskOrder();
  CopyMembers<vnFile>(source.Files(), Files());
  CopyMembers<vnJump>(source.Jumps(), Jumps());
  CopyMembers<vnCondition>(source.Conditions(), Conditions());
  // References to titles have no identity of their own: their values are all there is to copy.
  const Ref<vnTitleRefs> titles = source.PerformedBy();
  copy.performed_by.Reset(
      KeptText(bag::BagTextOf([&](BagWriter& writer) { Inside::WriteValues(*titles, writer); })));
  copy.fields.Reset(KeptText(fields::TextOf(*source.Fields())));
  bag::SetBagPart(copy.properties, source.GetProperties()->Clone().get(), this);
  bag::SetBagPart(copy.attachments, source.Attachments()->Clone().get(), this);
  bag::SetBagPart(copy.dependancies, source.Dependancies()->Clone().get(), this);
}

void vnStep::Join(vnDocument& document) {
  TakeDocument(&document);
  Inside::HandOnDocument(*Tasks());
  Inside::HandOnDocument(*Conditions());
  Inside::Join(*Files(), document);
  Inside::Join(*Jumps(), document);
}

void vnStep::Leave(vnDocument& document) {
  Inside::Leave(*Files(), document);
  Inside::Leave(*Jumps(), document);
}

}  // namespace vndoc6
